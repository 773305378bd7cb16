#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace korvel::data {

/// A calendar date with a time of day, without time zone. Members compare in the order of time.
struct DateTime {
  int year = 1900;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;

  friend constexpr auto operator<=>(const DateTime&, const DateTime&) = default;

  /// Reads "YYYY-MM-DD" or "YYYYMMDD", optionally followed by a blank or "T" and "HH:MM", ":SS", ".mmm".
  /// Nothing on any other text or on a date that no calendar has.
  static std::optional<DateTime> FromText(std::string_view text);

  /// "YYYY-MM-DD".
  std::string DateText() const;
  /// "YYYY-MM-DDTHH:MM:SS".
  std::string IsoText() const;
  /// "YYYY-MM-DD HH:MM:SS.mmm".
  std::string FullText() const;
};

/// Days of that month, 0 for a month outside 1 to 12.
int DaysInMonth(int year, int month);
bool IsCalendarDate(int year, int month, int day);

/// Days since 1970-01-01 in the Gregorian calendar, and back (at midnight).
std::int64_t DaysFromCivil(int year, int month, int day);
DateTime CivilFromDays(std::int64_t days);

}  // namespace korvel::data
