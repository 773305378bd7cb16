#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>

#include "databases/names.h"
#include "databases/structure.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

struct Column {
  std::string name;
  std::string type;
  std::string length;  // bytes
  std::string precision;
  std::string scale;
  bool nullable = true;
};

/// What the server tells of a table, from several sets of rows. Names of columns in lower case.
struct Description {
  std::vector<Column> columns;
  std::string identity;
  std::string seed;
  std::string increment;
  std::string rowGuid;
  std::map<std::string, std::string> defaults;
  std::string primaryKey;  // its columns, apart by commas
};

constexpr std::array<std::string_view, 6> kWithLength{"binary",   "char",      "nchar",
                                                      "nvarchar", "varbinary", "varchar"};
constexpr std::array<std::string_view, 2> kWithPrecision{"decimal", "numeric"};

template <std::size_t N>
bool OneOf(const std::array<std::string_view, N>& types, std::string_view type) {
  return std::ranges::find(types, type) != types.end();
}

std::string Trimmed(const data::Recordset& rows, std::string_view column) {
  return std::string(toolkit::Trim(rows.Text(column)));
}

void ReadColumns(data::Recordset& rows, Description& table) {
  for (; !rows.Eof(); rows.MoveNext()) {
    table.columns.push_back({Trimmed(rows, "Column_name"), toolkit::Lower(Trimmed(rows, "Type")),
                             Trimmed(rows, "Length"), Trimmed(rows, "Prec"), Trimmed(rows, "Scale"),
                             !toolkit::SameIgnoringCase(Trimmed(rows, "Nullable"), "no")});
  }
}

void ReadIdentity(data::Recordset& rows, Description& table) {
  // Without an identity the server tells so in words, and Seed is NULL.
  if (rows.Eof() || rows.IsNull("Seed")) return;
  table.identity = toolkit::Lower(Trimmed(rows, "Identity"));
  table.seed = Trimmed(rows, "Seed");
  table.increment = Trimmed(rows, "Increment");
}

void ReadConstraint(const std::string& type, const std::string& keys, Description& table) {
  constexpr std::string_view kDefault = "default on column ";
  const std::string kind = toolkit::Lower(type);
  if (kind.starts_with(kDefault)) table.defaults[kind.substr(kDefault.size())] = keys;
  if (kind.starts_with("primary key")) table.primaryKey = keys;
}

void ReadConstraints(data::Recordset& rows, Description& table) {
  for (; !rows.Eof(); rows.MoveNext()) {
    ReadConstraint(Trimmed(rows, "Constraint_Type"), Trimmed(rows, "Constraint_keys"), table);
  }
}

Description Describe(data::Connection& connection, std::string_view name) {
  Description table;
  auto rows = connection.Query("sp_help " + AsArgument(name));
  do {
    if (rows.Has("Column_name") && rows.Has("Nullable")) {
      ReadColumns(rows, table);
    } else if (rows.Has("Identity") && rows.Has("Seed")) {
      ReadIdentity(rows, table);
    } else if (rows.Has("RowGuidCol")) {
      if (!rows.Eof()) table.rowGuid = toolkit::Lower(Trimmed(rows, "RowGuidCol"));
    } else if (rows.Has("Constraint_Type")) {
      ReadConstraints(rows, table);
    }
  } while (rows.NextRecordset());
  return table;
}

/// In characters where the server counts two bytes for each; -1 stands for no limit.
std::string LengthOf(const Column& column) {
  if (column.length == "-1") return "max";
  if (!column.type.starts_with('n')) return column.length;
  return std::to_string(std::stoi(column.length) / 2);
}

std::string TypeOf(const Column& column, const Description& table) {
  std::string type = fmt::format("[{}]", column.type);
  if (OneOf(kWithLength, column.type)) type += fmt::format(" ({})", LengthOf(column));
  if (OneOf(kWithPrecision, column.type)) type += fmt::format(" ({},{})", column.precision, column.scale);
  const std::string name = toolkit::Lower(column.name);
  if (name == table.identity) type += fmt::format(" IDENTITY ({},{})", table.seed, table.increment);
  if (column.type == "uniqueidentifier" && name == table.rowGuid) type += " ROWGUIDCOL";
  return type;
}

std::string ColumnText(std::string_view tableName, const Column& column, const Description& table) {
  std::string text =
      fmt::format("[{}] {}{}", column.name, TypeOf(column, table), column.nullable ? " NULL" : " NOT NULL");
  if (const auto found = table.defaults.find(toolkit::Lower(column.name)); found != table.defaults.end()) {
    text += fmt::format(" CONSTRAINT DF_{}_{} DEFAULT ({}) ", tableName, column.name, found->second);
  }
  return text;
}

/// "a, b" as "[a],[b]".
std::string BracketedNames(std::string_view names) {
  std::string list;
  for (const std::string& name : toolkit::StripString(names, ",")) {
    list += fmt::format("{}[{}]", list.empty() ? "" : ",", name);
  }
  return list;
}

}  // namespace

std::vector<std::string> TableStatements(data::Connection& connection, std::string_view table) {
  const Description description = Describe(connection, table);
  std::string columns;
  for (const Column& column : description.columns) {
    columns += (columns.empty() ? "" : ", ") + ColumnText(table, column, description);
  }
  std::vector<std::string> statements{
      fmt::format("CREATE TABLE [dbo].[{}] ( {} )  ON [PRIMARY]", table, columns)};
  if (!description.primaryKey.empty()) {
    statements.push_back(fmt::format(
        "ALTER TABLE [dbo].[{0}] WITH NOCHECK ADD CONSTRAINT [PK_{0}] PRIMARY KEY  NONCLUSTERED ( "
        "{1} )  ON [PRIMARY]",
        table, BracketedNames(description.primaryKey)));
  }
  return statements;
}

}  // namespace korvel::databases
