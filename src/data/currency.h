#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace korvel::data {

/// An amount of money: a signed 64-bit count of ten-thousandths. Sums and differences are exact;
/// a result outside the range throws std::overflow_error and never wraps.
class Currency {
 public:
  static constexpr std::int64_t kScale = 10000;

  constexpr Currency() = default;

  static constexpr Currency FromUnits(std::int64_t tenThousandths) {
    Currency value;
    value.units_ = tenThousandths;
    return value;
  }
  /// Throws std::overflow_error outside the range.
  static Currency FromWhole(std::int64_t whole);
  /// Reads "-12", "12.5", "12.345678": an optional sign, digits, "." and digits. More than four decimals are
  /// rounded half to even. Nothing on any other text or outside the range.
  static std::optional<Currency> FromText(std::string_view text);

  constexpr std::int64_t Units() const { return units_; }
  /// The part before the decimal mark, towards zero.
  constexpr std::int64_t Whole() const { return units_ / kScale; }
  constexpr bool IsZero() const { return units_ == 0; }
  constexpr bool IsNegative() const { return units_ < 0; }

  Currency operator-() const;
  Currency& operator+=(Currency other);
  Currency& operator-=(Currency other);
  friend Currency operator+(Currency a, Currency b) { return a += b; }
  friend Currency operator-(Currency a, Currency b) { return a -= b; }
  friend constexpr auto operator<=>(Currency, Currency) = default;

  /// The shortest decimal writing, with "." ("23", "5.5", "-0.125").
  std::string ToText() const;

 private:
  std::int64_t units_ = 0;
};

}  // namespace korvel::data
