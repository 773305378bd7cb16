#include <limits>
#include <stdexcept>

#include "billing/document_mapping.h"

namespace korvel::billing {
namespace {

__extension__ typedef __int128 Wide;

Wide Absolute(Wide value) {
  return value < 0 ? -value : value;
}

/// The quotient of two positive numbers, rounded half to even.
Wide RoundedQuotient(Wide dividend, Wide divisor) {
  const Wide quotient = dividend / divisor;
  const Wide twice = 2 * (dividend % divisor);
  const bool up = twice > divisor || (twice == divisor && quotient % 2 != 0);
  return up ? quotient + 1 : quotient;
}

}  // namespace

Currency UnitPrice(Currency valor, Currency quantidade) {
  if (quantidade.IsZero()) return {};
  const Wide dividend = Wide{valor.Units()} * Currency::kScale;
  const Wide magnitude = RoundedQuotient(Absolute(dividend), Absolute(Wide{quantidade.Units()}));
  const Wide price = valor.IsNegative() != quantidade.IsNegative() ? -magnitude : magnitude;
  if (Absolute(price) > std::numeric_limits<std::int64_t>::max())
    throw std::overflow_error("O preço unitário não cabe num valor monetário");
  return Currency::FromUnits(static_cast<std::int64_t>(price));
}

}  // namespace korvel::billing
