#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "data/value.h"

namespace korvel::data {

/// What a driver gives for a running statement. Columns count from 0; a Null reads as "", 0 or 1900-01-01.
class Cursor {
 public:
  virtual ~Cursor() = default;

  /// Columns of the current row set; empty for a statement that brings no rows.
  virtual std::span<const Field> Fields() const = 0;
  /// Goes to the next row; false behind the last.
  virtual bool Next() = 0;
  /// Goes to the next row set of a batch; false behind the last.
  virtual bool NextRowSet() = 0;
  /// Rows that the current statement of a batch has changed; nothing where the server does not tell.
  virtual std::optional<std::int64_t> Changed() const = 0;

  virtual bool IsNull(std::size_t column) const = 0;
  /// The value as the server converts it to text; the view lives until the next call of Next or NextRowSet,
  /// or the next Text call on the same column.
  virtual std::string_view Text(std::size_t column) const = 0;
  virtual std::int64_t Integer(std::size_t column) const = 0;
  virtual Currency Money(std::size_t column) const = 0;
  virtual DateTime Date(std::size_t column) const = 0;
  virtual Value Get(std::size_t column) const = 0;
};

/// The rows of a query, read once, forward. Stands on the first row, if there is one, when it is made.
/// Column names compare without regard to case. Its connection serves nothing else until it is dropped.
class Recordset {
 public:
  /// `lease` marks the connection as reading for as long as this recordset lives.
  Recordset(std::unique_ptr<Cursor> cursor, std::shared_ptr<void> lease);

  bool Eof() const { return eof_; }
  void MoveNext() { eof_ = !cursor_->Next(); }
  /// Goes to the next row set that has columns; false when there is none.
  bool NextRecordset();
  /// Rows changed by the statements without rows that were passed over on the way here: the last one's count.
  std::int64_t Changed() const { return changed_; }

  std::span<const Field> Fields() const { return cursor_->Fields(); }
  /// Throws Error for a column that the result does not have.
  std::size_t IndexOf(std::string_view column) const;
  bool Has(std::string_view column) const;

  bool IsNull(std::size_t column) const { return cursor_->IsNull(column); }
  std::string_view Text(std::size_t column) const { return cursor_->Text(column); }
  std::int64_t Integer(std::size_t column) const { return cursor_->Integer(column); }
  Currency Money(std::size_t column) const { return cursor_->Money(column); }
  DateTime Date(std::size_t column) const { return cursor_->Date(column); }
  Value Get(std::size_t column) const { return cursor_->Get(column); }

  bool IsNull(std::string_view column) const { return IsNull(IndexOf(column)); }
  std::string_view Text(std::string_view column) const { return Text(IndexOf(column)); }
  std::int64_t Integer(std::string_view column) const { return Integer(IndexOf(column)); }
  Currency Money(std::string_view column) const { return Money(IndexOf(column)); }
  DateTime Date(std::string_view column) const { return Date(IndexOf(column)); }
  Value Get(std::string_view column) const { return Get(IndexOf(column)); }

 private:
  bool SkipToRows();

  std::shared_ptr<void> lease_;
  std::unique_ptr<Cursor> cursor_;
  bool eof_ = true;
  std::int64_t changed_ = 0;
};

}  // namespace korvel::data
