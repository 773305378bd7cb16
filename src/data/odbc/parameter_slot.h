#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "data/odbc/statement.h"
#include "data/value.h"

namespace korvel::data::odbc {

/// A bound value's storage, and how it is told to the driver. It must keep its place until the statement has run.
struct ParameterSlot {
  std::variant<Null, std::int64_t, double, SQL_TIMESTAMP_STRUCT, std::string, std::string_view> value;
  SQLSMALLINT cType = SQL_C_CHAR;
  SQLSMALLINT sqlType = SQL_VARCHAR;
  SQLULEN size = 1;
  SQLSMALLINT digits = 0;
  SQLLEN length = SQL_NULL_DATA;

  /// A slot that only goes to the server; it refers to a parameter's text.
  static ParameterSlot Of(const Parameter& parameter);
  /// A slot that comes back changed: text has room for the longest varchar, and Null comes back as text.
  static ParameterSlot ForOutput(const Value& value);

  /// `number` counts from 1, `direction` is SQL_PARAM_INPUT or another.
  void Bind(const Statement& statement, SQLUSMALLINT number, SQLSMALLINT direction);
  /// What the server has put into a slot for output. Throws Error(Failure::Truncation) where it did not fit.
  Value Read() const;

 private:
  SQLPOINTER Data();
  SQLLEN Capacity() const;
};

}  // namespace korvel::data::odbc
