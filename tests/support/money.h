#pragma once

#include <string_view>

#include "data/currency.h"

namespace korvel::test {

/// An amount by its text.
inline data::Currency Money(std::string_view text) {
  return data::Currency::FromText(text).value();
}

}  // namespace korvel::test
