#pragma once

#include <cstdint>

#include "data/date_time.h"
#include "support/tds/wire.h"

namespace korvel::tds {

/// Dates as the protocol counts them. A datetime takes 8 bytes (days since 1900 and three-hundredths of a second), a
/// smalldatetime 4 (days and minutes). Numbers that are no date of the calendar throw WireError.
data::DateTime ReadMoment(WireReader& in, std::size_t width);
void WriteMoment(WireWriter& out, const data::DateTime& date, std::size_t width);

/// A time of day in units of 10 to the power of minus `scale` seconds, as `width` bytes, and a day since 0001-01-01 in
/// three bytes; either may be left out with a width of 0 or `withDay` false.
data::DateTime ReadNewMoment(WireReader& in, std::size_t timeWidth, int scale, bool withDay);

}  // namespace korvel::tds
