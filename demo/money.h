#pragma once

#include <cstdint>

#include "data/currency.h"

namespace korvel::demo {

/// Money of the generator: whole cents, so that no amount has more decimals than the books show.
using Cents = std::int64_t;

inline data::Currency FromCents(Cents cents) {
  return data::Currency::FromUnits(cents * (data::Currency::kScale / 100));
}

/// VAT of a net amount that is not negative, rounded half up.
constexpr Cents VatOf(Cents net, int percent) {
  return (net * percent + 50) / 100;
}

/// Worth of a quantity at a price each, rounded half up; neither is negative.
inline Cents Worth(data::Currency quantity, Cents price) {
  return (quantity.Units() * price + data::Currency::kScale / 2) / data::Currency::kScale;
}

}  // namespace korvel::demo
