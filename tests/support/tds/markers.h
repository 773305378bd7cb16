#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvel::tds {

/// A statement whose named parameters have become "?" again: `order` tells for each mark which of the names stands there.
struct Marked {
  std::string sql;
  std::vector<std::size_t> order;
};
/// Names count outside quotes, brackets and comments, in any case; other variables stay as they are.
Marked MarkParameters(std::string_view sql, const std::vector<std::string>& names);

/// The names of a declaration such as "@P1 int, @P2 numeric(10,2) output".
std::vector<std::string> DeclaredNames(std::string_view declaration);

}  // namespace korvel::tds
