#include "accounting/tax_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lunder_world.h"

namespace korvel::accounting {
namespace {

using testing::ElementsAre;

class TaxTable : public test::LunderWorld {
 protected:
  TaxTable() {
    Lunder(
        "insert into TaxasIva (Codigo,Descricao,Regiao,Taxa,Saft_TaxType,SAFT_TaxCountryRegion,Saft_TaxCode,"
        "Saft_Description,SAFT_TaxExpirationDate) values "
        "('2','Normal','PT',23,'IVAXX','PT','NOR','Taxa Normal','2012-12-31'),"
        "('1','Reduzida','PT',6.5,'IVA','PT','RED','Taxa Reduzida',NULL),"
        "('9','Sem dados','PT-AC',0,' ','','','',''),"
        "('7','D''Avila','AA',0,'IS','PT','ISE','O''Neill',' ')");
  }
  std::vector<std::string> Taxes() {
    return Staged(
        "select TaxType,TaxCountryRegion,TaxCode,Description,TaxExpirationDate,TaxPercentage,TaxAmount,"
        "DescricaoLunder,Utilizador from TabTaxTablePOC order by NumRegisto");
  }
};

TEST_F(TaxTable, RowsWithoutAuditDataComeUntickedAndAreNotSaved) {
  const auto grid = CalcularImpostos(server.Context(), period);
  ASSERT_TRUE(grid);
  ASSERT_EQ(grid->size(), 4u);
  EXPECT_THAT((*grid)[2].cells, ElementsAre("1", "IVAXX", "PT", "NOR", "Taxa Normal", "31-12-2012", "23,00",
                                            "0,00", "2 - Normal"));
  EXPECT_EQ((*grid)[0].cells[8], "7 - D'Avila");
  EXPECT_EQ((*grid)[1].cells[6], "6,50");
  EXPECT_EQ((*grid)[1].cells[5], "");
  EXPECT_TRUE((*grid)[2].ticked);
  EXPECT_FALSE((*grid)[3].ticked);

  ASSERT_TRUE(GravarImpostos(server.Context(), period, *grid));
  EXPECT_THAT(Taxes(), ElementsAre("IS\tPT\tISE\tO'Neill\t\t0\t0\t7 - D'Avila\tsa",
                                   "IVA\tPT\tRED\tTaxa Reduzida\t\t6.5\t0\t1 - Reduzida\tsa",
                                   "IVA\tPT\tNOR\tTaxa Normal\t2012-12-31\t23\t0\t2 - Normal\tsa"));
  const auto loaded = CarregarImpostos(server.Context(), period);
  ASSERT_TRUE(loaded);
  ASSERT_EQ(loaded->size(), 3u);
  EXPECT_EQ((*loaded)[1].cells[6], "6,50");
  EXPECT_EQ((*loaded)[2].cells[5], "31-12-2012");
}

TEST_F(TaxTable, EachRequiredFieldHasItsLabel) {
  const auto grid = CalcularImpostos(server.Context(), period);
  ASSERT_TRUE(grid);
  const std::pair<std::size_t, const char*> cases[] = {
      {1, "Tipo de Imposto"}, {2, "País ou Região"}, {3, "Código do Imposto"}, {4, "Descrição do Imposto"}};
  for (const auto& [column, label] : cases) {
    periods::Grid spoilt = *grid;
    spoilt[1].cells[column] = " ";
    EXPECT_FALSE(GravarImpostos(server.Context(), period, spoilt));
    EXPECT_EQ(LastText(), std::string("O Campo [") + label + "] está Vazio!\nNão pode Gravar");
  }
  EXPECT_TRUE(Taxes().empty());
}

TEST_F(TaxTable, ACorrectedRowIsSavedOnceTicked) {
  auto grid = CalcularImpostos(server.Context(), period);
  ASSERT_TRUE(grid);
  periods::GridRow& corrected = (*grid)[3];
  corrected.ticked = true;
  for (std::size_t column = 1; column <= 4; ++column) corrected.cells[column] = "OUT";
  EXPECT_TRUE(GravarImpostos(server.Context(), period, *grid));
  EXPECT_EQ(Taxes().size(), 4u);
}

}  // namespace
}  // namespace korvel::accounting
