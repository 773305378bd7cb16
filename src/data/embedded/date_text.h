#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/date_time.h"

namespace korvel::data::embedded {

/// Reads the writings of dates that the server takes whatever its language: ISO forms, "dd-mm-yyyy" and "dd/mm/yyyy"
/// with an optional time. Blank text is 1900-01-01.
std::optional<DateTime> DateFromText(std::string_view text);

/// A date in a style of convert(), such as 103 for "dd/mm/yyyy"; nothing for a style that this server does not have.
std::optional<std::string> DateInStyle(const DateTime& moment, int style);

}  // namespace korvel::data::embedded
