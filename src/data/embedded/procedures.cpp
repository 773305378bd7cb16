#include "data/embedded/procedures.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/text_functions.h"

namespace korvel::data::embedded {
namespace {

constexpr ColumnType kName = Varchar(128);
constexpr ColumnType kRemarks = Varchar(254);
constexpr ColumnType kSmall{Type::SmallInt};
constexpr std::size_t kMostParameters = 6;

/// Arguments by the procedure's own parameters; what was not given or is NULL is nothing.
using Arguments = std::array<std::optional<std::string>, kMostParameters>;

struct Site {
  const ServerView& view;
  const Arguments& arguments;

  /// Whether a name passes an argument that may hold wildcards.
  bool Passes(std::size_t argument, std::string_view name) const {
    return !arguments[argument] || Like(name, *arguments[argument], 0);
  }
};

using Body = std::optional<RowTable> (*)(const Site&);

struct Procedure {
  std::string_view name;
  std::array<std::string_view, kMostParameters> parameters;
  std::size_t required;
  Body body;
};

std::optional<RowTable> Tables(const Site& site) {
  RowTable table{{{"TABLE_QUALIFIER", kName},
                  {"TABLE_OWNER", kName},
                  {"TABLE_NAME", kName},
                  {"TABLE_TYPE", Varchar(32)},
                  {"REMARKS", kRemarks}},
                 {}};
  for (const bool views : {false, true}) {
    const std::string kind = views ? "VIEW" : "TABLE";
    const bool asked =
        !site.arguments[3] || LowerName(*site.arguments[3]).find(LowerName(kind)) != std::string::npos;
    for (const auto& [lower, object] : site.view.catalogue.Objects()) {
      if (!asked || object.view != views || !site.Passes(0, object.name) || !site.Passes(1, "dbo")) continue;
      table.rows.push_back({std::string(site.view.database), "dbo", object.name, kind, Null{}});
    }
  }
  return table;
}

struct TypeFacts {
  std::int64_t odbcNumber;
  std::int64_t length;
};

/// ODBC's number of a type and its length in bytes.
TypeFacts FactsOf(const ColumnType& type) {
  switch (type.base) {
    case Type::Bit:
      return {-7, 1};
    case Type::SmallInt:
      return {5, 2};
    case Type::Int:
      return {4, 4};
    case Type::BigInt:
      return {-5, 8};
    case Type::Numeric:
      return {2, type.precision + 2};
    case Type::Float:
      return {6, 8};
    case Type::Money:
      return {3, 21};
    case Type::SmallDateTime:
      return {11, 16};
    case Type::DateTime:
      return {11, 16};
    case Type::Varchar:
      return {12, type.length};
    default:
      return {-1, 2147483647};
  }
}

OwnedStored TextOrNull(const std::string& text) {
  return text.empty() ? OwnedStored(Null{}) : OwnedStored(text);
}

std::vector<OwnedStored> ColumnRow(const Site& site, const Object& object, const Column& column) {
  const TypeFacts facts = FactsOf(column.type);
  const std::int64_t precision = IsExact(column.type) ? PrecisionOf(column.type) : facts.length;
  const std::string typeName =
      std::string(TypeName(column.type.base)) + (column.identity ? "() identity" : "");
  return {std::string(site.view.database),
          "dbo",
          object.name,
          column.name,
          facts.odbcNumber,
          typeName,
          precision,
          facts.length,
          IsExact(column.type) ? OwnedStored(std::int64_t{ScaleOf(column.type)}) : OwnedStored(Null{}),
          std::int64_t{column.nullable},
          Null{},
          TextOrNull(column.defaultText),
          std::int64_t{column.ordinal},
          std::string(column.nullable ? "YES" : "NO")};
}

std::optional<RowTable> Columns(const Site& site) {
  RowTable table{{{"TABLE_QUALIFIER", kName},
                  {"TABLE_OWNER", kName},
                  {"TABLE_NAME", kName},
                  {"COLUMN_NAME", kName},
                  {"DATA_TYPE", kSmall},
                  {"TYPE_NAME", kName},
                  {"PRECISION", kInt},
                  {"LENGTH", kInt},
                  {"SCALE", kSmall},
                  {"NULLABLE", kSmall},
                  {"REMARKS", kRemarks},
                  {"COLUMN_DEF", Varchar(4000)},
                  {"ORDINAL_POSITION", kInt},
                  {"IS_NULLABLE", kRemarks}},
                 {}};
  for (const auto& [lower, object] : site.view.catalogue.Objects()) {
    if (!site.Passes(0, object.name) || !site.Passes(1, "dbo")) continue;
    for (const Column& column : object.columns) {
      if (site.Passes(3, column.name)) table.rows.push_back(ColumnRow(site, object, column));
    }
  }
  return table;
}

std::optional<RowTable> Indexes(const Site& site) {
  RowTable table{{{"TABLE_CAT", kName},
                  {"TABLE_SCHEM", kName},
                  {"TABLE_NAME", kName},
                  {"NON_UNIQUE", kSmall},
                  {"INDEX_QUALIFIER", kName},
                  {"INDEX_NAME", kName},
                  {"TYPE", kSmall},
                  {"ORDINAL_POSITION", kInt},
                  {"COLUMN_NAME", kName},
                  {"ASC_OR_DESC", Varchar(1)}},
                 {}};
  for (const auto& [lower, object] : site.view.catalogue.Objects()) {
    if (!site.Passes(0, object.name)) continue;
    for (const KeyDefinition& key : object.keys) {
      if (!site.Passes(1, key.name)) continue;
      std::int64_t place = 0;
      for (const std::string& column : key.columns) {
        table.rows.push_back({std::string(site.view.database), "dbo", object.name, std::int64_t{!key.unique},
                              object.name, key.name, std::int64_t{key.clustered ? 1 : 3}, ++place, column,
                              "A"});
      }
    }
  }
  return table;
}

std::optional<RowTable> SetCompatibility(const Site& site) {
  if (!site.view.server.FindDatabase(*site.arguments[0])) {
    throw Failed(Code::NoDatabase, "A base de dados '" + *site.arguments[0] + "' não existe");
  }
  return std::nullopt;
}

/// The server has none of the options that can be set; taking them keeps upgrades running.
std::optional<RowTable> Configure(const Site&) {
  return std::nullopt;
}

std::optional<RowTable> Version(const Site& site) {
  RowTable table{
      {{"Index", kSmall}, {"Name", kName}, {"Internal_Value", kInt}, {"Character_Value", Varchar(255)}}, {}};
  struct Line {
    const char* name;
    std::string_view value;
  };
  constexpr Line kLines[] = {{"ProductName", "Korvel"}, {"ProductVersion", kProductVersion}};
  std::int64_t number = 0;
  for (const Line& line : kLines) {
    ++number;
    if (site.Passes(0, line.name)) table.rows.push_back({number, line.name, Null{}, std::string(line.value)});
  }
  return table;
}

constexpr Procedure kProcedures[] = {
    {"sp_tables", {"@table_name", "@table_owner", "@table_qualifier", "@table_type"}, 0, Tables},
    {"sp_columns",
     {"@table_name", "@table_owner", "@table_qualifier", "@column_name", "@odbcver"},
     1,
     Columns},
    {"sp_indexes", {"@table_name", "@index_name"}, 1, Indexes},
    {"sp_dbcmptlevel", {"@dbname", "@new_cmptlevel"}, 1, SetCompatibility},
    {"sp_configure", {"@configname", "@configvalue"}, 0, Configure},
    {"xp_msver", {"@optname"}, 0, Version},
};

OwnedStored Constant(const Expr& expr, Parameters parameters) {
  if (expr.kind == ExprKind::Null) return Null{};
  if (expr.kind != ExprKind::Parameter) return expr.text;
  const auto index = static_cast<std::size_t>(expr.number);
  if (index >= parameters.size()) throw Failed(Code::ProcedureArguments, "Falta o valor de um parâmetro");
  return ToText(ToValue(FromParameter(parameters[index]), ParameterType(parameters[index]).value_or(kInt)));
}

Arguments BindArguments(const Procedure& procedure, const Call& call, Parameters parameters) {
  Arguments bound;
  std::size_t next = 0;
  for (const Argument& argument : call.arguments) {
    std::size_t place = next++;
    if (!argument.name.empty()) {
      const auto found = std::find(procedure.parameters.begin(), procedure.parameters.end(), argument.name);
      place = static_cast<std::size_t>(found - procedure.parameters.begin());
    }
    if (place >= kMostParameters || procedure.parameters[place].empty()) {
      throw Failed(Code::ProcedureArguments,
                   fmt::format("O procedimento '{}' não tem o argumento {}", procedure.name,
                               argument.name.empty() ? "dado" : argument.name));
    }
    const OwnedStored value = Constant(*argument.value, parameters);
    if (const auto* text = std::get_if<std::string>(&value)) bound[place] = *text;
  }
  for (std::size_t i = 0; i < procedure.required; ++i) {
    if (bound[i]) continue;
    throw Failed(Code::ProcedureArguments, fmt::format("O procedimento '{}' espera o parâmetro '{}'",
                                                       procedure.name, procedure.parameters[i]));
  }
  return bound;
}

}  // namespace

std::optional<RowTable> RunProcedure(const Call& call, const ServerView& view, Parameters parameters) {
  const auto* found =
      std::find_if(std::begin(kProcedures), std::end(kProcedures),
                   [&](const Procedure& procedure) { return SameName(procedure.name, call.procedure.name); });
  if (found == std::end(kProcedures)) {
    throw Failed(Code::NoProcedure, "O procedimento '" + call.procedure.name + "' não existe neste servidor");
  }
  const Arguments arguments = BindArguments(*found, call, parameters);
  return found->body({view, arguments});
}

}  // namespace korvel::data::embedded
