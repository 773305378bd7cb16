#pragma once

#include <memory>
#include <vector>

#include "data/odbc/column.h"
#include "data/recordset.h"

namespace korvel::data::odbc {

/// Reads the results of a running statement in blocks of rows. Where a result has long texts, its rows are read one
/// at a time, and the columns from the first long one on are asked for in order, which is what every driver allows.
class OdbcCursor final : public Cursor {
 public:
  explicit OdbcCursor(std::unique_ptr<Statement> statement);

  std::span<const Field> Fields() const override { return fields_; }
  bool Next() override;
  bool NextRowSet() override;
  std::optional<std::int64_t> Changed() const override { return statement_->RowsChanged(); }

  bool IsNull(std::size_t column) const override { return columns_[column].IsNull(row_); }
  std::string_view Text(std::size_t column) const override { return columns_[column].Text(row_); }
  std::int64_t Integer(std::size_t column) const override { return columns_[column].Integer(row_); }
  Currency Money(std::size_t column) const override { return columns_[column].Money(row_); }
  DateTime Date(std::size_t column) const override { return columns_[column].Date(row_); }
  Value Get(std::size_t column) const override { return columns_[column].Get(row_); }

 private:
  void Prepare();
  std::size_t BlockRows() const;
  bool FetchBlock();
  void CheckBlock() const;

  // What the driver writes into stands before the statement, so that it outlives it.
  std::vector<Field> fields_;
  std::vector<Column> columns_;
  std::vector<SQLUSMALLINT> status_;
  SQLULEN fetched_ = 0;
  std::size_t bound_ = 0;  // columns before the first long one
  std::size_t row_ = 0;
  std::unique_ptr<Statement> statement_;
};

}  // namespace korvel::data::odbc
