#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <sql.h>
#include <sqlucode.h>

namespace korvel::data::odbc {

/// UTF-8 as the driver manager's wide functions take it, with a zero behind it, and back. What is said before a
/// connection stands has to go this way: the narrow functions take it for the code page of the process.
std::vector<SQLWCHAR> ToWide(std::string_view utf8);
std::string FromWide(const SQLWCHAR* text);

}  // namespace korvel::data::odbc
