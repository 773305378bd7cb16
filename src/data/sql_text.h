#pragma once

#include <string>
#include <string_view>

namespace korvel::data {

/// The text between single quotes, inner quotes doubled: the one way a value enters a statement's text.
inline std::string Quoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    quoted += c;
    if (c == '\'') quoted += c;
  }
  return quoted += '\'';
}

}  // namespace korvel::data
