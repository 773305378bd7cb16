#pragma once

#include <string_view>

namespace korvel::data {

/// Takes `c` off the front of a text; false, and nothing is taken, when something else stands there.
inline bool TakeChar(std::string_view& text, char c) {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace korvel::data
