#pragma once

#include <string_view>

#include <sql.h>
#include <sqlext.h>

#include "data/value.h"

namespace korvel::data::odbc {

/// Characters of the longest varchar; what may be longer is a text.
constexpr std::size_t kLongestVarchar = 8000;

/// A value as another type, as the server converts it: a fraction is cut towards zero in a whole number and rounded
/// to four decimals in an amount, and Null or a blank text reads as 0 or 1900-01-01.
/// Each throws Error(Failure::Conversion) that names `column` but never the value.
std::int64_t ToInteger(const Value& value, std::string_view column);
Currency ToMoney(const Value& value, std::string_view column);
/// As ToMoney, of a text as a driver gives it.
Currency ReadMoney(std::string_view text, std::string_view column);
DateTime ToDate(const Value& value, std::string_view column);

/// A moment in the driver's form, and back to the nearest millisecond.
SQL_TIMESTAMP_STRUCT ToStamp(const DateTime& date);
DateTime FromStamp(const SQL_TIMESTAMP_STRUCT& stamp);

}  // namespace korvel::data::odbc
