#pragma once

#include <variant>
#include <vector>

#include "data/odbc/statement.h"

namespace korvel::data::odbc {

/// Parameter values in the form that the driver reads. They must live until the statement has run.
class BoundParameters {
 public:
  explicit BoundParameters(Parameters parameters);
  void Bind(const Statement& statement);

 private:
  /// A value's storage, and how it is told to the driver.
  struct Slot {
    std::variant<Null, std::int64_t, double, SQL_TIMESTAMP_STRUCT, std::string, std::string_view> value;
    SQLSMALLINT cType = SQL_C_CHAR;
    SQLSMALLINT sqlType = SQL_VARCHAR;
    SQLULEN size = 1;
    SQLSMALLINT digits = 0;
    SQLLEN length = SQL_NULL_DATA;

    SQLPOINTER Data();
  };
  static Slot MakeSlot(const Parameter& parameter);

  std::vector<Slot> slots_;
};

}  // namespace korvel::data::odbc
