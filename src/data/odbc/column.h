#pragma once

#include <string>
#include <vector>

#include "data/odbc/statement.h"
#include "data/value.h"

namespace korvel::data::odbc {

/// The values of one column for a block of rows, filled by the driver, read as any type that they convert to.
/// Rows count from 0. A value that does not convert, or that the driver had to cut, throws Error.
class Column {
 public:
  explicit Column(const Field& field);

  /// Long texts have no bound, so they can only be loaded, row by row.
  bool IsLong() const;
  /// Bytes that one row takes in a block.
  std::size_t RowBytes() const { return width_ + sizeof(SQLLEN); }

  void Reserve(std::size_t rows);
  /// Lets each fetch fill the block. `number` counts from 1.
  void Bind(const Statement& statement, SQLUSMALLINT number);
  /// Takes the value of the statement's current row into row 0.
  void Load(const Statement& statement, SQLUSMALLINT number);

  bool IsNull(std::size_t row) const { return lengths_[row] == SQL_NULL_DATA; }
  /// The view lives until the next fetch, or the next Text call on this column.
  std::string_view Text(std::size_t row) const;
  std::int64_t Integer(std::size_t row) const;
  Currency Money(std::size_t row) const;
  DateTime Date(std::size_t row) const;
  Value Get(std::size_t row) const;

 private:
  /// How the driver hands the values over.
  SQLSMALLINT CType() const;
  template <typename T>
  T Raw(std::size_t row) const;
  std::string_view RawText(std::size_t row) const;
  void LoadLong(const Statement& statement, SQLUSMALLINT number);

  Field field_;
  std::size_t width_;
  std::vector<char> data_;
  std::vector<SQLLEN> lengths_;
  mutable std::string converted_;
};

}  // namespace korvel::data::odbc
