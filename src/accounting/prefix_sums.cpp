#include "accounting/prefix_sums.h"

#include <algorithm>

#include "data/collation.h"

namespace korvel::accounting {
namespace {

DebitCredit Sum(DebitCredit a, DebitCredit b) {
  return {a.debito + b.debito, a.credito + b.credito};
}

}  // namespace

void PrefixSums::Add(std::string_view code, DebitCredit amounts) {
  entries_.push_back({data::CollationKey(code), amounts});
}

void PrefixSums::Seal() {
  std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
  runningTotals_.assign(1, {});
  runningTotals_.reserve(entries_.size() + 1);
  for (const Entry& entry : entries_) runningTotals_.push_back(Sum(runningTotals_.back(), entry.amounts));
}

DebitCredit PrefixSums::Of(std::string_view prefix) const {
  const std::string key = data::CollationKey(prefix);
  const auto before = [&](const Entry& entry) { return entry.key.compare(0, key.size(), key) < 0; };
  const auto within = [&](const Entry& entry) { return entry.key.compare(0, key.size(), key) <= 0; };
  const auto first = std::partition_point(entries_.begin(), entries_.end(), before);
  const auto last = std::partition_point(first, entries_.end(), within);
  const DebitCredit& low = runningTotals_[static_cast<std::size_t>(first - entries_.begin())];
  const DebitCredit& high = runningTotals_[static_cast<std::size_t>(last - entries_.begin())];
  return {high.debito - low.debito, high.credito - low.credito};
}

}  // namespace korvel::accounting
