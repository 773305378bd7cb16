#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Grids as their layout texts describe them.
namespace korvel::toolkit {

enum class GridAlignment { Left, Right, Centre };

/// What a column's sort and sum go by.
enum class GridSort { Text, Date, Number };

struct GridColumn {
  std::string heading;
  int width = 0;  // in twips, fifteen a pixel at 96 dots an inch; 0: hidden, its cells are kept all the same
  GridAlignment alignment = GridAlignment::Left;
  GridSort sort = GridSort::Text;
  std::string key;  // the fourth field, "_" and the heading

  bool IsHidden() const { return width == 0; }
};

/// Reads a layout text: a column is a heading, a width, an alignment ("E" or blank left, "D" right, "C" centre) and a
/// sort kind ("Data", "Valor"; anything else is free text), apart by ",", and is closed by "/". A missing last "/" is
/// added. Case of the letters does not matter. Throws std::invalid_argument for more than eleven columns of the sort
/// kinds "Data" and "Valor", which is the grids' limit.
std::vector<GridColumn> ParseGridLayout(std::string_view definicao);

}  // namespace korvel::toolkit
