#include "data/date_time.h"

#include <charconv>
#include <chrono>

#include <fmt/format.h>

#include "data/take_char.h"

namespace korvel::data {
namespace {

/// Takes exactly `width` digits off the front of `text`.
bool TakeDigits(std::string_view& text, std::size_t width, int& number) {
  if (text.size() < width) return false;
  for (std::size_t i = 0; i < width; ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
  }
  std::from_chars(text.data(), text.data() + width, number);
  text.remove_prefix(width);
  return true;
}

bool TakeDate(std::string_view& text, DateTime& value) {
  if (!TakeDigits(text, 4, value.year)) return false;
  const bool dashed = TakeChar(text, '-');
  if (!TakeDigits(text, 2, value.month)) return false;
  if (dashed && !TakeChar(text, '-')) return false;
  return TakeDigits(text, 2, value.day) && IsCalendarDate(value.year, value.month, value.day);
}

bool TakeMilliseconds(std::string_view& text, DateTime& value) {
  int scale = 100;
  std::size_t digits = 0;
  for (; digits < text.size() && text[digits] >= '0' && text[digits] <= '9'; ++digits, scale /= 10) {
    value.millisecond += (text[digits] - '0') * scale;
  }
  text.remove_prefix(digits);
  return digits > 0;
}

bool TakeTime(std::string_view& text, DateTime& value) {
  if (!TakeDigits(text, 2, value.hour) || !TakeChar(text, ':') || !TakeDigits(text, 2, value.minute))
    return false;
  if (TakeChar(text, ':') && !TakeDigits(text, 2, value.second)) return false;
  if (TakeChar(text, '.') && !TakeMilliseconds(text, value)) return false;
  return value.hour < 24 && value.minute < 60 && value.second < 60;
}

}  // namespace

std::optional<DateTime> DateTime::FromText(std::string_view text) {
  DateTime value;
  if (!TakeDate(text, value)) return std::nullopt;
  if (text.empty()) return value;
  if (!TakeChar(text, ' ') && !TakeChar(text, 'T')) return std::nullopt;
  if (!TakeTime(text, value) || !text.empty()) return std::nullopt;
  return value;
}

std::string DateTime::DateText() const {
  return fmt::format("{:04}-{:02}-{:02}", year, month, day);
}

std::string DateTime::IsoText() const {
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", year, month, day, hour, minute, second);
}

std::string DateTime::FullText() const {
  return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:03}", year, month, day, hour, minute, second,
                     millisecond);
}

int DaysInMonth(int year, int month) {
  if (month < 1 || month > 12) return 0;
  const auto last = std::chrono::year{year} / month / std::chrono::last;
  return static_cast<int>(static_cast<unsigned>(last.day()));
}

bool IsCalendarDate(int year, int month, int day) {
  return year >= 1 && year <= 9999 && day >= 1 && day <= DaysInMonth(year, month);
}

std::int64_t DaysFromCivil(int year, int month, int day) {
  const std::chrono::sys_days days = std::chrono::year{year} / month / day;
  return days.time_since_epoch().count();
}

DateTime CivilFromDays(std::int64_t days) {
  const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{days}}};
  DateTime value;
  value.year = static_cast<int>(date.year());
  value.month = static_cast<int>(static_cast<unsigned>(date.month()));
  value.day = static_cast<int>(static_cast<unsigned>(date.day()));
  return value;
}

}  // namespace korvel::data
