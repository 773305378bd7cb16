#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "data/collation.h"
#include "periods/staging.h"

namespace korvel::periods {

/// A grid in the making, its rows found by a key as the servers compare text.
class KeyedGrid {
 public:
  /// Valid until the next row is added.
  struct Place {
    GridRow& row;
    bool added;  // it was not there: the row is empty
  };

  /// Null when there is no such row; valid until the next row is added.
  GridRow* Find(std::string_view key) {
    const auto found = places_.find(data::CollationKey(key));
    return found == places_.end() ? nullptr : &grid_[found->second];
  }
  Place FindOrAdd(std::string_view key) {
    const auto [place, added] = places_.emplace(data::CollationKey(key), grid_.size());
    if (added) grid_.emplace_back();
    return {grid_[place->second], added};
  }
  Grid Take() { return std::move(grid_); }

 private:
  Grid grid_;
  std::unordered_map<std::string, std::size_t> places_;  // by data::CollationKey
};

}  // namespace korvel::periods
