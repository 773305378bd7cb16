#include "data/currency.h"

#include <limits>
#include <stdexcept>

namespace korvel::data {
namespace {

constexpr int kDecimals = 4;

[[noreturn]] void Overflow() {
  throw std::overflow_error("valor monetário fora dos limites");
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Appends one decimal digit to a magnitude; false when it no longer fits.
bool Append(std::uint64_t& magnitude, char digit) {
  return !__builtin_mul_overflow(magnitude, std::uint64_t{10}, &magnitude) &&
         !__builtin_add_overflow(magnitude, static_cast<std::uint64_t>(digit - '0'), &magnitude);
}

/// Whether the digits behind the fourth decimal round a magnitude up, half to even.
bool RoundsUp(std::string_view rest, bool odd) {
  if (rest.empty() || rest.front() < '5') return false;
  if (rest.front() > '5' || rest.find_first_not_of('0', 1) != std::string_view::npos) return true;
  return odd;
}

}  // namespace

Currency Currency::FromWhole(std::int64_t whole) {
  std::int64_t units = 0;
  if (__builtin_mul_overflow(whole, kScale, &units)) Overflow();
  return FromUnits(units);
}

std::optional<Currency> Currency::FromText(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  const std::string_view decimals =
      point == std::string_view::npos ? std::string_view{} : text.substr(point + 1);
  if (whole.empty() && decimals.empty()) return std::nullopt;

  std::uint64_t magnitude = 0;
  for (const char c : whole) {
    if (!IsDigit(c) || !Append(magnitude, c)) return std::nullopt;
  }
  for (std::size_t i = 0; i < kDecimals; ++i) {
    const char c = i < decimals.size() ? decimals[i] : '0';
    if (!IsDigit(c) || !Append(magnitude, c)) return std::nullopt;
  }
  const std::string_view rest = decimals.size() > kDecimals ? decimals.substr(kDecimals) : std::string_view{};
  for (const char c : rest) {
    if (!IsDigit(c)) return std::nullopt;
  }
  if (RoundsUp(rest, magnitude % 2 != 0) && __builtin_add_overflow(magnitude, std::uint64_t{1}, &magnitude)) {
    return std::nullopt;
  }
  // The lowest amount is one unit further from zero than the highest.
  constexpr std::uint64_t kHighest = std::numeric_limits<std::int64_t>::max();
  if (magnitude > kHighest + (negative ? 1 : 0)) return std::nullopt;
  return FromUnits(static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude));
}

Currency Currency::operator-() const {
  std::int64_t units = 0;
  if (__builtin_sub_overflow(std::int64_t{0}, units_, &units)) Overflow();
  return FromUnits(units);
}

Currency& Currency::operator+=(Currency other) {
  if (__builtin_add_overflow(units_, other.units_, &units_)) Overflow();
  return *this;
}

Currency& Currency::operator-=(Currency other) {
  if (__builtin_sub_overflow(units_, other.units_, &units_)) Overflow();
  return *this;
}

std::string Currency::ToText() const {
  const std::uint64_t magnitude =
      IsNegative() ? 0 - static_cast<std::uint64_t>(units_) : static_cast<std::uint64_t>(units_);
  std::string text = IsNegative() ? "-" : "";
  text += std::to_string(magnitude / kScale);
  const std::uint64_t fraction = magnitude % kScale;
  if (fraction == 0) return text;
  std::string digits = std::to_string(fraction);
  digits.insert(0, kDecimals - digits.size(), '0');
  digits.erase(digits.find_last_not_of('0') + 1);
  return text + "." + digits;
}

}  // namespace korvel::data
