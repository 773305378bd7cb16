#include "databases/schema.h"

#include <fmt/format.h>

namespace korvel::databases {

std::string CreateTableStatement(const TableDefinition& table) {
  std::string columns = "NumRegisto numeric (18,0) identity (1,1) not null";
  for (const ColumnDefinition& column : table.columns) {
    if (column.added != table.created) continue;
    columns +=
        fmt::format(", [{}] {} NULL", column.name, column.firstType.empty() ? column.type : column.firstType);
  }
  if (!table.primaryKey.empty()) {
    columns += fmt::format(", CONSTRAINT [{}] PRIMARY KEY CLUSTERED ( [NumRegisto] ) ON [PRIMARY]",
                           table.primaryKey);
  }
  return fmt::format("CREATE TABLE [dbo].[{}] ( {} ) ON [PRIMARY]", table.name, columns);
}

}  // namespace korvel::databases
