#include "toolkit/list_rows.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>

#include "data/collation.h"
#include "toolkit/text.h"

namespace korvel::toolkit {

namespace {

constexpr Currency kInFront = Currency::FromUnits(std::numeric_limits<std::int64_t>::min());

/// The neutral form of a date in a cell, which may be neutral already, with a time behind it; nothing for no date.
std::optional<std::string> NeutralDate(std::string_view cell, const DateMarks& marks) {
  const bool neutral = cell.size() >= 10 && cell[4] == '-' && cell[7] == '-';
  if (neutral) return std::string(cell);
  const auto texts = FormataData(cell, {}, marks, DateTime());
  if (!texts) return std::nullopt;
  return texts->neutral;
}

int Compare(const SortKey& a, const SortKey& b) {
  if (a.number != b.number) return a.number < b.number ? -1 : 1;
  return data::Collate(a.text, b.text);
}

std::string Counted(std::size_t count, std::string_view one, std::string_view many, const Marks& marks) {
  return CountText(count, marks) + " " + std::string(count == 1 ? one : many);
}

}  // namespace

SortKey SortKey::Of(std::string_view cell, ColumnKind kind, const CellMarks& marks) {
  switch (kind) {
    case ColumnKind::Amount:
      if (IsBlank(cell)) return {};
      if (const auto amount = TextToCurrency(cell, marks.numbers)) return {*amount, {}};
      return {kInFront, std::string(cell)};
    case ColumnKind::Date:
      if (auto date = NeutralDate(Trim(cell), marks.dates)) return {{}, std::move(*date)};
      return {kInFront, std::string(cell)};
    case ColumnKind::Text:
      break;
  }
  return {{}, std::string(cell)};
}

std::vector<std::size_t> SortedOrder(std::span<const SortKey> keys, bool descending) {
  std::vector<std::size_t> order(keys.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
    const int compared = Compare(keys[a], keys[b]);
    return descending ? compared > 0 : compared < 0;
  });
  return order;
}

std::string MarkedHeading(std::string_view heading, bool descending) {
  return std::string(heading) + (descending ? " (Des.)" : " (Asc.)");
}

bool HoldsText(std::string_view text, std::string_view upperWanted) {
  return Upper(text).find(upperWanted) != std::string::npos;
}

std::string CountText(std::size_t count, const Marks& marks) {
  return FDNum(Currency::FromWhole(static_cast<std::int64_t>(count)), 0, {}, {}, marks);
}

std::string FootText(const FootCounts& counts, std::span<const FootSum> sums, int decimals,
                     const Marks& marks) {
  constexpr std::string_view kBetween = "  -  ";
  std::string text = Counted(counts.rows, "registo", "registos", marks);
  if (counts.more) text += " ... e mais";
  if (counts.ticked) text.append(kBetween) += Counted(*counts.ticked, "marcado", "marcados", marks);
  for (const FootSum& sum : sums) {
    text.append(kBetween).append(sum.heading) += ": " + FDNum(sum.sum, decimals, {}, {}, marks);
  }
  return text;
}

}  // namespace korvel::toolkit
