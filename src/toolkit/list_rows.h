#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "toolkit/dates.h"
#include "toolkit/grid_layout.h"
#include "toolkit/numbers.h"

/// What a list does with its rows, whatever shows it: how they sort, what a heading says of it, how a text is found.
namespace korvel::toolkit {

/// How numbers and dates stand in the cells.
struct CellMarks {
  Marks numbers;
  DateMarks dates;
};

/// What a row sorts by in one column: exact, whatever the cell looks like.
struct SortKey {
  Currency number;
  std::string text;

  /// A cell that does not hold what its kind promises sorts in front of all that do, by its text; a blank amount counts
  /// as 0.
  static SortKey Of(std::string_view cell, ColumnKind kind, const CellMarks& marks);
};

/// The places of the keys in their order; equal ones keep theirs.
std::vector<std::size_t> SortedOrder(std::span<const SortKey> keys, bool descending);

/// The heading of the column that the rows are sorted on.
std::string MarkedHeading(std::string_view heading, bool descending);

/// Whether `text` holds `upperWanted`, which is upper-cased already, in any case of letters.
bool HoldsText(std::string_view text, std::string_view upperWanted);

/// "12.345": a count as the user writes numbers.
std::string CountText(std::size_t count, const Marks& marks);

/// What stands under a grid.
struct FootCounts {
  std::size_t rows = 0;
  bool more = false;                  // rows wait that were not read yet
  std::optional<std::size_t> ticked;  // nothing in a grid without ticks
};
struct FootSum {
  std::string_view heading;
  Currency sum;
};
/// "12 registos e mais  -  3 marcados  -  <heading>: <sum>", amounts with `decimals` decimals.
std::string FootText(const FootCounts& counts, std::span<const FootSum> sums, int decimals,
                     const Marks& marks);

// Refusals of lists.
inline constexpr std::string_view kNoSuchItem = "O Ítem Seleccionado não Foi Encontrado!";
inline constexpr std::string_view kAttention = "Atenção";

}  // namespace korvel::toolkit
