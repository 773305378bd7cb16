#pragma once

#include <memory>
#include <string>
#include <vector>

#include "data/embedded/execution.h"
#include "data/recordset.h"

struct sqlite3_stmt;

namespace korvel::data::embedded {

/// Reads the row sets of a batch straight from the store.
class BatchCursor : public Cursor {
 public:
  /// Runs the batch up to its first row set.
  explicit BatchCursor(std::unique_ptr<Execution> execution);

  std::span<const Field> Fields() const override;
  bool Next() override { return execution_->Rows() != nullptr && execution_->Step(); }
  bool NextRowSet() override;
  std::optional<std::int64_t> Changed() const override { return execution_->Changed(); }

  bool IsNull(std::size_t column) const override;
  std::string_view Text(std::size_t column) const override;
  std::int64_t Integer(std::size_t column) const override;
  Currency Money(std::size_t column) const override;
  DateTime Date(std::size_t column) const override;
  Value Get(std::size_t column) const override;

 private:
  Stored Read(std::size_t column) const;
  /// A number or date as text.
  std::string_view Written(std::size_t column) const;
  /// The value as another type.
  Stored As(std::size_t column, const ColumnType& type) const;
  const ColumnType& TypeOf(std::size_t column) const;

  std::unique_ptr<Execution> execution_;
  sqlite3_stmt* statement_ = nullptr;
  const ColumnType* types_ = nullptr;
  mutable std::vector<std::string> texts_;  // writings of numbers and dates, one a column
};

}  // namespace korvel::data::embedded
