#include "toolkit/statements.h"

#include "toolkit/numbers.h"

namespace korvel::toolkit {
namespace {

/// Without doubling of inner quotes, deliberately: see the header.
std::string Between(std::string_view text) {
  return "'" + std::string(text) + "'";
}

struct ValueWriter {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(bool value) const { return value ? "-1" : "0"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(data::Currency value) const { return CurToSQL(value); }
  std::string operator()(const data::DateTime& value) const { return Between(value.FullText()); }
  std::string operator()(std::string_view value) const { return Between(value); }
};

std::string Write(const StatementValue& value) {
  return std::visit(ValueWriter{}, value);
}

}  // namespace

std::string InsertSQL(std::string_view tabela, std::span<const std::string_view> campos,
                      std::span<const StatementValue> valores) {
  std::string names;
  for (const std::string_view campo : campos) names.append(names.empty() ? "" : ",").append(campo);
  std::string values;
  for (const StatementValue& valor : valores) {
    const std::string written = Write(valor);
    if (written.empty()) continue;
    values += (values.empty() ? "" : ", ") + written + " ";
  }
  return "INSERT INTO " + std::string(tabela) + " (" + names + ") VALUES (" + values + ")";
}

std::string UpdateSQL(std::string_view tabela, std::span<const std::string_view> campos,
                      std::span<const StatementValue> valores, std::string_view where) {
  std::string sets;
  for (std::size_t i = 0; i < campos.size(); ++i) {
    if (i > 0) sets += ",";
    sets.append(campos[i]).append("=");
    if (i < valores.size()) sets += Write(valores[i]);
  }
  return "UPDATE " + std::string(tabela) + " SET " + sets + std::string(where);
}

}  // namespace korvel::toolkit
