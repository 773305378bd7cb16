#include "toolkit/grid_layout.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::toolkit {
namespace {

using Columns = std::vector<GridColumn>;

struct Layout {
  std::string_view text;
  Columns columns;
};

TEST(GridLayout, ReadsEachColumn) {
  const Layout layouts[]{
      {"", {}},
      {"Conta,1500/", {{"Conta", 1500}}},
      {"Conta,1500", {{"Conta", 1500}}},
      {"Nº Registo,0/Descrição,4000/", {{"Nº Registo", 0}, {"Descrição", 4000}}},
      {"A,1,E/B,1,/C,1,d/D,1,c",
       {{"A", 1}, {"B", 1}, {"C", 1, Alignment::Right}, {"D", 1, Alignment::Centre}}},
      {"Percentagem,800,D,Valor/", {{"Percentagem", 800, Alignment::Right, ColumnKind::Amount}}},
      {"Data da Venda,1000,C,DATA/", {{"Data da Venda", 1000, Alignment::Centre, ColumnKind::Date}}},
      {"Estado,900,,chave/", {{"Estado", 900}}},
      {"Sem largura/Negativa,-5/", {{"Sem largura", 0}, {"Negativa", 0}}},
  };
  for (const Layout& layout : layouts) EXPECT_EQ(ParseGridLayout(layout.text), layout.columns) << layout.text;
}

TEST(GridLayout, RefusesTooManyColumnsThatSortByAnotherText) {
  std::string text;
  for (std::size_t i = 0; i < kMostCompanions; ++i) text += "Valor,800,D,Valor/";
  EXPECT_EQ(ParseGridLayout(text + "Nome,800/").size(), kMostCompanions + 1);
  EXPECT_THROW(ParseGridLayout(text + "Data,800,C,Data/"), std::length_error);
}

}  // namespace
}  // namespace korvel::toolkit
