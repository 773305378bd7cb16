#include "billing/tax_table.h"

#include <gmock/gmock.h>

#include "brevant_world.h"

namespace korvel::test {
namespace {

using periods::Grid;
using testing::ElementsAre;

class BillingTaxes : public BrevantWorld {
 protected:
  BillingTaxes() { ClearMasters(); }
  Grid Calculated() {
    const auto grid = billing::CalcularImpostos(server.Context(), period);
    EXPECT_TRUE(grid) << LastText();
    return grid.value_or(Grid());
  }
};

TEST_F(BillingTaxes, SaleCodesByZoneAndRate) {
  AddTax({{"Zona", "Z"}, {"SAFT_TaxExpirationDate", "2012-12-31"}});
  AddTax({{"Codigo", "1"}, {"Taxa", "6.125"}, {"Descricao", "D'Ávila"}, {"Saft_TaxCode", "NULL"}});
  AddTax({{"Codigo", "0"}, {"Taxa", "0"}, {"SAFT_TaxExpirationDate", " "}});
  AddTax({{"Codigo", "C"}, {"CompraVenda", "C"}});
  AddTax({{"Codigo", "N"}, {"CompraVenda", "NULL"}});
  server.session.gCasasDec = 0;
  const Grid grid = Calculated();
  ASSERT_EQ(grid.size(), 3U);
  EXPECT_THAT(grid[0].cells,
              ElementsAre("5", "IVA", "PT", "NOR", "Taxa Normal", "", "0,00", "0,00", "0 - Normal", "0"));
  EXPECT_THAT(grid[1].cells,
              ElementsAre("4", "IVA", "PT", "", "Taxa Normal", "", "6,13", "0,00", "1 - D'Ávila", "1"));
  EXPECT_THAT(grid[2].cells, ElementsAre("3", "IVA", "PT", "NOR", "Taxa Normal", "31-12-2012", "23,00",
                                         "0,00", "2 - Normal", "2"));
}

TEST_F(BillingTaxes, StagedRowsComeBackAsTheyWereShown) {
  AddTax({{"Taxa", "6.5"}, {"SAFT_TaxExpirationDate", "2012-12-31"}});
  server.session.gCasasDec = 0;
  const Grid grid = Calculated();
  ASSERT_TRUE(billing::GravarImpostos(server.Context(), period, grid));
  EXPECT_EQ(
      server.Rows("Korvel0001",
                  "select TaxExpirationDate,TaxPercentage,TaxAmount,CodigoBrevant from TabTaxTableGEST"),
      std::vector<std::string>{"2012-12-31\t6.5\t0\t2"});
  auto loaded = billing::CarregarImpostos(server.Context(), period.key);
  ASSERT_TRUE(loaded);
  ASSERT_EQ(loaded->size(), 1U);
  loaded->at(0).cells[0] = grid[0].cells[0];  // the record of the source, not the staged one
  EXPECT_EQ(loaded->at(0).cells, grid[0].cells);
}

}  // namespace
}  // namespace korvel::test
