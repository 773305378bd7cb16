#include "toolkit/grid_layout.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "toolkit/text.h"

namespace korvel::toolkit {

namespace {

/// Takes what stands before the next separator off the front of `text`, the separator too.
std::string_view TakePiece(std::string_view& text, char separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string_view piece = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return piece;
}

int ReadWidth(std::string_view field) {
  field = Trim(field);
  int width = 0;
  std::from_chars(field.data(), field.data() + field.size(), width);
  return std::max(width, 0);
}

Alignment ReadAlignment(std::string_view field) {
  if (SameIgnoringCase(Trim(field), "D")) return Alignment::Right;
  return SameIgnoringCase(Trim(field), "C") ? Alignment::Centre : Alignment::Left;
}

ColumnKind ReadKind(std::string_view field) {
  if (SameIgnoringCase(Trim(field), "Data")) return ColumnKind::Date;
  return SameIgnoringCase(Trim(field), "Valor") ? ColumnKind::Amount : ColumnKind::Text;
}

GridColumn ReadColumn(std::string_view entry) {
  GridColumn column;
  column.heading = TakePiece(entry, ',');
  column.width = ReadWidth(TakePiece(entry, ','));
  column.alignment = ReadAlignment(TakePiece(entry, ','));
  column.kind = ReadKind(TakePiece(entry, ','));
  return column;
}

}  // namespace

std::vector<GridColumn> ParseGridLayout(std::string_view layout) {
  std::vector<GridColumn> columns;
  while (!layout.empty()) columns.push_back(ReadColumn(TakePiece(layout, '/')));
  const auto companions = std::ranges::count_if(
      columns, [](const GridColumn& column) { return column.kind != ColumnKind::Text; });
  if (static_cast<std::size_t>(companions) > kMostCompanions) {
    throw std::length_error("Demasiadas colunas de data ou de valor numa grelha");
  }
  return columns;
}

}  // namespace korvel::toolkit
