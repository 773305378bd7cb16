#pragma once

#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>

#include "data/connection.h"
#include "demo/source_schema.h"

namespace korvel::demo {

/// Sends rows to one table, in batches. Belongs inside a transaction; rows count as written after Finish
/// alone.
class TableWriter {
 public:
  TableWriter(data::Connection& connection, const databases::TableDefinition& table)
      : batch_(connection.OpenBatch(table.name, ColumnNames(table))) {}

  /// Some columns alone; the others stay NULL.
  TableWriter(data::Connection& connection, const databases::TableDefinition& table,
              std::span<const std::string_view> columns)
      : batch_(connection.OpenBatch(table.name, columns)) {}

  /// The values of the columns, in their order.
  void Add(std::initializer_list<data::Parameter> row) { batch_->Add({row.begin(), row.size()}); }
  void Finish() { batch_->Finish(); }

 private:
  std::unique_ptr<data::BatchInsert> batch_;
};

}  // namespace korvel::demo
