#include "session/records.h"

#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "data/editable_recordset.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::session {
namespace {

constexpr std::string_view kIdentity = "NumRegisto";

/// What a NULL of that type becomes in a statement; empty for dates, which stay NULL.
std::string_view FillerOf(data::Type type) {
  switch (type) {
    case data::Type::SmallDateTime:
    case data::Type::DateTime:
      return {};
    case data::Type::Varchar:
    case data::Type::Text:
      return "''";
    default:
      return "0";
  }
}

using Row = std::vector<std::pair<std::string, data::Value>>;

Row CopyOf(const data::Recordset& rows, std::string_view keyField, const data::Value& newKey) {
  Row row;
  const auto fields = rows.Fields();
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (toolkit::SameIgnoringCase(fields[i].name, kIdentity)) continue;
    row.emplace_back(fields[i].name,
                     toolkit::SameIgnoringCase(fields[i].name, keyField) ? newKey : rows.Get(i));
  }
  return row;
}

std::vector<Row> CopiesOf(data::Connection& source, std::string_view table, std::string_view keyField,
                          const data::Value& newKey, std::string_view where) {
  std::vector<Row> copies;
  for (data::Recordset rows = source.Query(fmt::format("Select * from {} {}", table, where)); !rows.Eof();
       rows.MoveNext()) {
    copies.push_back(CopyOf(rows, keyField, newKey));
  }
  return copies;
}

}  // namespace

bool RunSQL(data::Connection& connection, std::string_view statement) {
  try {
    connection.Execute(statement);
    return true;
  } catch (const data::Error&) {
    return false;  // asked for: the result alone tells
  }
}

data::Value Executa_SQL_var(const Context& context, std::string_view statement, OwnDatabase database) {
  ConnectionPtr connection;
  const bool config = database == OwnDatabase::Config;
  if (!OpenSessionDatabase(context, connection, config ? kConfigDatabase : context.session.gBaseDados)) {
    context.dialogs.Message(toolkit::Icon::Critical, fmt::format("{}\n{}", context.session.gErroNumero,
                                                                 context.session.gErroDescricao));
    return {};
  }
  const data::Recordset rows = connection->Query(statement);
  return rows.Eof() ? data::Value() : rows.Get(0);
}

void Limpa_NULOS(data::Connection& connection, std::string_view table) {
  std::string fills;
  std::string nulls;
  {
    const data::Recordset rows =
        connection.Query(fmt::format("Select top 1 * from {} where NumRegisto>0 ", table));
    for (const data::Field& field : rows.Fields()) {
      const std::string_view filler = FillerOf(field.type);
      if (filler.empty() || toolkit::SameIgnoringCase(field.name, kIdentity)) continue;
      fills +=
          fmt::format("{}[{}]=isnull([{}],{})", fills.empty() ? "" : ",", field.name, field.name, filler);
      nulls += fmt::format("{}[{}] is null", nulls.empty() ? "" : " or ", field.name);
    }
  }
  if (fills.empty()) return;
  connection.Execute(fmt::format("Update {} set {} where NumRegisto>0 and ({})", table, fills, nulls));
}

std::int64_t Duplica_Registo(data::Connection& source, data::Connection& target, std::string_view table,
                             std::string_view keyField, const data::Value& newKey, std::string_view where) {
  std::int64_t key = 0;
  for (Row& row : CopiesOf(source, table, keyField, newKey, where)) {
    auto copy = data::EditableRecordset::AddNew(target, table);
    for (auto& [column, value] : row) copy.Set(column, std::move(value));
    key = copy.Update();
  }
  return key;
}

}  // namespace korvel::session
