#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "databases/schema.h"

namespace korvel::demo {

/// A table of a source product, as far as the extraction reads it; `NumRegisto` is not listed.
constexpr databases::TableDefinition SourceTable(std::string_view name,
                                                 std::span<const databases::ColumnDefinition> columns) {
  databases::TableDefinition table;
  table.name = name;
  table.columns = columns;
  return table;
}

/// Names of the table's columns in their order, for a batch of rows.
std::vector<std::string_view> ColumnNames(const databases::TableDefinition& table);

}  // namespace korvel::demo
