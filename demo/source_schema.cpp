#include "demo/source_schema.h"

namespace korvel::demo {

std::vector<std::string_view> ColumnNames(const databases::TableDefinition& table) {
  std::vector<std::string_view> names;
  for (const databases::ColumnDefinition& column : table.columns) names.push_back(column.name);
  return names;
}

}  // namespace korvel::demo
