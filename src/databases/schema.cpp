#include "databases/schema.h"

#include <fmt/format.h>

namespace korvel::databases {

namespace {

std::string Constraint(std::string_view name, std::string_view kind, std::string_view fields) {
  return fmt::format("CONSTRAINT [{}] {} ( {} ) ON [PRIMARY]", name, kind, fields);
}

}  // namespace

std::string CreateTableStatement(const TableDefinition& table) {
  std::string columns = "NumRegisto numeric (18,0) identity (1,1) not null";
  for (const ColumnDefinition& column : table.columns) {
    if (column.added != table.created) continue;
    columns +=
        fmt::format(", [{}] {} NULL", column.name, column.firstType.empty() ? column.type : column.firstType);
  }
  if (!table.primaryKey.empty()) {
    columns += ", " + Constraint(table.primaryKey, "PRIMARY KEY CLUSTERED", "[NumRegisto]");
  }
  for (const KeyDefinition& key : table.keys) columns += ", " + Constraint(key.name, key.kind, key.fields);
  return fmt::format("CREATE TABLE [dbo].[{}] ( {} ) ON [PRIMARY]", table.name, columns);
}

std::string AddKeyStatement(const TableDefinition& table, const KeyDefinition& key) {
  return fmt::format("ALTER TABLE [dbo].[{}] ADD {}", table.name, Constraint(key.name, key.kind, key.fields));
}

}  // namespace korvel::databases
