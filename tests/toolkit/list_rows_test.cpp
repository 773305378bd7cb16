#include "toolkit/list_rows.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::toolkit {
namespace {

using Cells = std::vector<std::string>;

Cells Sorted(const Cells& cells, ColumnKind kind, bool descending = false, const CellMarks& marks = {}) {
  std::vector<SortKey> keys;
  for (const std::string& cell : cells) keys.push_back(SortKey::Of(cell, kind, marks));
  Cells sorted;
  for (const std::size_t place : SortedOrder(keys, descending)) sorted.push_back(cells[place]);
  return sorted;
}

TEST(SortedRows, AmountsByTheirExactValue) {
  EXPECT_EQ(Sorted({"10", "9,5", "1.000,00", "-3", "922337203685477,5807", "922337203685477,5806"},
                   ColumnKind::Amount),
            (Cells{"-3", "9,5", "10", "1.000,00", "922337203685477,5806", "922337203685477,5807"}));
  EXPECT_EQ(Sorted({"9.5", "10.25", "1,000.5"}, ColumnKind::Amount, false, {{".", ",", "3"}, {}}),
            (Cells{"9.5", "10.25", "1,000.5"}));
  EXPECT_EQ(Sorted({"1", "n/d", "", "-1", "abc"}, ColumnKind::Amount), (Cells{"abc", "n/d", "-1", "", "1"}))
      << "blank ones are zero, other texts come first";
}

TEST(SortedRows, DatesByTheCalendarInAnyForm) {
  EXPECT_EQ(Sorted({"01-02-2026", "31-12-2025", "", "2026-01-15", "2026-01-15 08:00:00"}, ColumnKind::Date),
            (Cells{"", "31-12-2025", "2026-01-15", "2026-01-15 08:00:00", "01-02-2026"}));
  EXPECT_EQ(Sorted({"12/31/2025", "01/02/2026"}, ColumnKind::Date, false, {{}, {"MM/dd/yyyy", "/"}}),
            (Cells{"12/31/2025", "01/02/2026"}));
}

TEST(SortedRows, TextsWithoutRegardToCase) {
  EXPECT_EQ(Sorted({"b", "A", "é", "E", "a", "10", "9"}, ColumnKind::Text),
            (Cells{"10", "9", "A", "a", "b", "E", "é"}));
}

TEST(SortedRows, DescendingReversesAndEqualOnesStay) {
  EXPECT_EQ(Sorted({"1,0", "1", "2"}, ColumnKind::Amount, true), (Cells{"2", "1,0", "1"}));
}

TEST(ListTexts, HeadingAndSearch) {
  EXPECT_EQ(MarkedHeading("Conta", false), "Conta (Asc.)");
  EXPECT_EQ(MarkedHeading("Conta", true), "Conta (Des.)");
  EXPECT_TRUE(HoldsText("Água e luz", "ÁGUA"));
  EXPECT_TRUE(HoldsText("Água e luz", "E L"));
  EXPECT_FALSE(HoldsText("Água e luz", "AGUA"));
}

TEST(ListTexts, Foot) {
  const Marks marks;
  const FootSum debit{"Débito", Currency::FromUnits(12345678)};
  EXPECT_EQ(FootText({}, {}, 2, marks), "0 registos");
  EXPECT_EQ(FootText({.rows = 1, .ticked = 1}, {}, 2, marks), "1 registo  -  1 marcado");
  EXPECT_EQ(FootText({.rows = 12345, .more = true, .ticked = 3}, {{debit}}, 2, marks),
            "12.345 registos ... e mais  -  3 marcados  -  Débito: 1.234,57");
}

}  // namespace
}  // namespace korvel::toolkit
