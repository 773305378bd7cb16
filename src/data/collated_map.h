#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "data/collation.h"

namespace korvel::data {

/// A look-up table read once from a server, that finds by text what the server would find.
template <typename Mapped>
class CollatedMap {
 public:
  /// The value under `text`; a new one when there is none.
  Mapped& operator[](std::string_view text) {
    spellings_.clear();
    return values_[data::CollationKey(text)];
  }
  /// Null when there is none. Each spelling is folded once, so asking for it again costs one hashed look-up. The
  /// value stays where it is as long as the map lives.
  const Mapped* Find(std::string_view text) const {
    const auto known = spellings_.find(text);
    if (known != spellings_.end()) return known->second;
    const auto found = values_.find(data::CollationKey(text));
    const Mapped* value = found == values_.end() ? nullptr : &found->second;
    spellings_.emplace(std::string(text), value);
    return value;
  }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };

  std::unordered_map<std::string, Mapped> values_;  // by data::CollationKey
  mutable std::unordered_map<std::string, const Mapped*, Hash, std::equal_to<>> spellings_;
};

}  // namespace korvel::data
