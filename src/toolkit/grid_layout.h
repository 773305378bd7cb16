#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The columns of a grid and the one-text language that defines them.
namespace korvel::toolkit {

enum class Alignment { Left, Right, Centre };

/// By what a column sorts: its text, the date in it, or the amount in it.
enum class ColumnKind { Text, Date, Amount };

/// One column of a grid.
struct GridColumn {
  std::string heading;
  int width = 0;  // in twips; 0: hidden, the column still holds its values
  Alignment alignment = Alignment::Left;
  ColumnKind kind = ColumnKind::Text;
  bool summed = false;  // the foot of the grid always shows its sum

  friend bool operator==(const GridColumn&, const GridColumn&) = default;
};

/// The most columns of a grid that sort by something else than their text.
inline constexpr std::size_t kMostCompanions = 11;

/// Reads "<heading>,<width>[,<alignment>[,<sort kind>]]/...": the last "/" may be missing. Alignments are "E" or blank
/// (left), "D" (right) and "C" (centre), sort kinds "Data" and "Valor", in any case; any other sort kind means text.
/// Throws std::length_error for more than kMostCompanions columns of the kinds "Data" and "Valor".
std::vector<GridColumn> ParseGridLayout(std::string_view layout);

}  // namespace korvel::toolkit
