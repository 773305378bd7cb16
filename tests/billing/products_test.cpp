#include "billing/products.h"

#include <gmock/gmock.h>

#include "brevant_world.h"

namespace korvel::test {
namespace {

using periods::BrevantFilter;
using testing::ElementsAre;
using testing::IsEmpty;

class Products : public BrevantWorld {
 protected:
  Products() {
    Brevant(
        "insert into TabGrupoPro (Codigo,Descricao) values ('G','Grupo G'),('H','Grupo H')\nGO\n"
        "insert into TabFamPro (Codigo,Descricao) values ('F','Família F')\nGO\n"
        "insert into TabSubFamPro (Codigo,Descricao) values ('S','Subfamília S')");
  }
  /// The rows, their cells apart by "|", without the record and the EAN.
  std::vector<std::string> Calculated(const BrevantFilter& filter = {"", "Grupo"}) {
    const auto grid = billing::CalcularProdutos(server.Context(), period, filter);
    EXPECT_TRUE(grid) << LastText();
    std::vector<std::string> rows;
    for (const auto& row : grid.value_or(periods::Grid())) {
      EXPECT_EQ(row.cells[5], row.cells[2]);
      rows.push_back(row.cells[1] + "|" + row.cells[2] + "|" + row.cells[3] + "|" + row.cells[4]);
    }
    return rows;
  }
};

constexpr const char* kLast = "O|S/Produto|S/Produto|Sem Descrição";

TEST_F(Products, EveryCodeOfALineIsThere) {
  AddProduct({{"Codigo", "P2"}, {"Servico", "1"}});
  AddProduct({{"Codigo", "P3"}, {"Servico", "1"}, {"Portes", "1"}, {"Descricao", ""}});
  AddProduct({{"Codigo", "P4"}, {"Portes", "1"}, {"Servico", "NULL"}, {"Descricao", "NULL"}});
  AddProduct({{"Descricao", "D'Ávila?"}});
  AddProduct({{"Codigo", "P0"}, {"Grupo", ""}});
  AddProduct({{"Codigo", "P9"}, {"Grupo", "NULL"}});
  Brevant("insert into ImpostosConfig (Codigo,Descricao) values ('E2','Ecovalor'),('E1','')");
  Brevant("insert into TabItem (Codigo,Descricao) values ('T2','Texto'),('T1',NULL)");
  EXPECT_THAT(Calculated(),
              ElementsAre("P|P1|Grupo G|D'Ávila?", "S|P2|Grupo G|Porca", "O|P3|Grupo G|Sem Descrição",
                          "O|P4|Grupo G|Sem Descrição", "I|PRO_E1|Outros Impostos|Sem Descrição",
                          "I|PRO_E2|Outros Impostos|Ecovalor", "S|T1|Serviços|Sem Descrição",
                          "S|T2|Serviços|Texto", kLast));
  Company("update ParamGeral set ProductDescriptionDefault='Nada'");
  EXPECT_EQ(Calculated().back(), "O|S/Produto|S/Produto|Nada");
}

TEST_F(Products, LevelAndFilterChoose) {
  AddProduct({{"Familia", "F"}, {"SubFamilia", "S"}, {"Situacao", "A"}});
  AddProduct({{"Codigo", "P2"}, {"Grupo", "H"}, {"Familia", "F"}, {"Situacao", "B"}});
  Brevant("insert into TabGrupoPro (Codigo,Descricao) values ('G','Outra vez')");
  struct Case {
    periods::BrevantChoice choice;
    std::vector<std::string> articles;
  };
  const std::vector<Case> cases{
      {{"", "", "", "", "GRUPO"}, {"P|P1|Grupo G|Porca", "P|P2|Grupo H|Porca"}},
      {{"", "", "", "", "Familia"}, {"P|P1|Família F|Porca", "P|P2|Família F|Porca"}},
      {{"", "", "", "", "Subfamilia"}, {"P|P1|Subfamília S|Porca"}},
      {{"", "", "", "", ""}, {"P|P1||Porca", "P|P2||Porca"}},
      {{"H", "", "", "", "Grupo"}, {"P|P2|Grupo H|Porca"}},
      {{"", "F", "", "A", "Grupo"}, {"P|P1|Grupo G|Porca"}},
      {{"", "", "S", "", "Grupo"}, {"P|P1|Grupo G|Porca"}},
      {{"x' or 1=1 --", "", "", "", "Grupo"}, {}},
  };
  for (const Case& c : cases) {
    std::vector<std::string> expected = c.articles;
    expected.emplace_back(kLast);
    EXPECT_EQ(Calculated(periods::FiltrosBrevant(c.choice)), expected) << c.choice.grupo << c.choice.patamar;
  }
}

TEST_F(Products, NothingWithoutFilterPeriodOrTables) {
  AddProduct({});
  EXPECT_FALSE(billing::CalcularProdutos(server.Context(), period, {"Cancelar", "Grupo"}));
  EXPECT_FALSE(billing::CalcularProdutos(server.Context(), {}, {"", "Grupo"}));
  EXPECT_THAT(server.dialogs.messages, IsEmpty());
  Brevant("drop table TabItem");
  EXPECT_FALSE(billing::CalcularProdutos(server.Context(), period, {"", "Grupo"}));
  EXPECT_THAT(LastText(), testing::StartsWith("Não existe a tabela [TabItem]!\n"));
}

}  // namespace
}  // namespace korvel::test
