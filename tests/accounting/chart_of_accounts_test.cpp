#include "accounting/chart_of_accounts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lunder_world.h"

namespace korvel::accounting {
namespace {

using test::MovDiario;
using testing::ElementsAre;

class ChartOfAccounts : public test::LunderWorld {
 protected:
  ChartOfAccounts() {
    AddAccount("2", "Terceiros", "C");
    AddAccount("21", "Clientes", "R");
    AddAccount("2111", "D'Avila, O'Neill & Filhos");
    AddAccount("3", "Compras", "C");
    AddAccount("31", "Mercadorias");
  }
  static MovDiario Line(std::string conta, std::string afecta, std::string valor,
                        std::string data = "2010-05-01", std::string diario = "V") {
    return {.contaSp = conta, .afecta = afecta, .valor = valor, .data = data, .diario = diario};
  }
  static periods::LunderFilter Filter(std::string contas, std::string diarios) {
    return {.contas = contas, .diarios = diarios, .cancelled = false};
  }
  std::vector<std::string> Accounts() {
    return Staged(
        "select AccountID,AccountDescription,OpeningDebitBalance,OpeningCreditBalance,TipoConta,Utilizador "
        "from TabGeneralLedger order by NumRegisto");
  }

  periods::LunderFilter sales_ = Filter("", " and (Diario='V') ");
};

/// All but the key, which the server gives.
std::vector<std::string> Cells(const periods::GridRow& row) {
  return {row.cells.begin() + 1, row.cells.end()};
}

TEST_F(ChartOfAccounts, MovementAccountsShowTheirNetAndAllOthersBothTotals) {
  AddLines({Line("2111", "D", "1100"), Line("2111", "C", "40"), Line("31", "D", "1"), Line("31", "C", "3.5"),
            Line("2111", "D", "999", "2009-12-31"), Line("2111", "D", "999", "2010-05-01", "SI")});
  const auto grid = CalcularContas(server.Context(), period, sales_);
  ASSERT_TRUE(grid);
  ASSERT_EQ(grid->size(), 3u);
  EXPECT_THAT(Cells((*grid)[0]), ElementsAre("21", "Clientes", "1.100,00", "40,00", "R"));
  EXPECT_THAT(Cells((*grid)[1]), ElementsAre("2111", "D'Avila, O'Neill & Filhos", "1.060,00", "0,00", "M"));
  EXPECT_THAT(Cells((*grid)[2]), ElementsAre("31", "Mercadorias", "0,00", "2,50", "M"));
  EXPECT_TRUE((*grid)[0].ticked);

  ASSERT_TRUE(GravarContas(server.Context(), period, *grid));
  EXPECT_THAT(Accounts(),
              ElementsAre("21\tClientes\t1100\t40\tR\tsa", "2111\tD'Avila, O'Neill & Filhos\t1060\t0\tM\tsa",
                          "31\tMercadorias\t0\t2.5\tM\tsa"));
  const auto loaded = CarregarContas(server.Context(), period);
  ASSERT_TRUE(loaded);
  EXPECT_EQ(Cells((*loaded)[1]), Cells((*grid)[1]));
}

TEST_F(ChartOfAccounts, BalancesMayRunToTheDayBeforeThePeriod) {
  Company("update ParamGeral set Header_SaldoDiaAnterior='S'");
  AddLines({Line("31", "D", "7", "2009-12-31"), Line("31", "D", "100", "1999-01-01"),
            Line("31", "D", "9", "2010-01-01")});
  const auto grid = CalcularContas(server.Context(), period, Filter(" and ContaSp>='3'", ""));
  ASSERT_TRUE(grid);
  ASSERT_EQ(grid->size(), 1u);
  EXPECT_EQ((*grid)[0].cells[3], "107,00");
}

TEST_F(ChartOfAccounts, TheRangeComparesCodesAsText) {
  AddAccount("29", "Provisões");
  AddAccount("30", "Outras");
  const auto grid =
      CalcularContas(server.Context(), period, Filter(" and ContaSp>='2111' and ContaSp<='3'", ""));
  ASSERT_TRUE(grid);
  ASSERT_EQ(grid->size(), 2u);
  EXPECT_EQ((*grid)[0].cells[1], "2111");
  EXPECT_EQ((*grid)[1].cells[1], "29");
}

TEST_F(ChartOfAccounts, AnEmptyFieldStopsTheSaveWithTheOldRowsGone) {
  StageAccounts({"99"});
  auto grid = CalcularContas(server.Context(), period, sales_);
  ASSERT_TRUE(grid);
  (*grid)[1].cells[2] = "  ";
  EXPECT_FALSE(GravarContas(server.Context(), period, *grid));
  EXPECT_EQ(LastText(), "O Campo [Descrição da Conta] está Vazio!\nNão pode Gravar");
  EXPECT_EQ(server.dialogs.LastTitle(), "AVISO");
  EXPECT_TRUE(Accounts().empty());

  (*grid)[1].ticked = false;
  EXPECT_TRUE(GravarContas(server.Context(), period, *grid));
  EXPECT_EQ(Accounts().size(), 2u);
}

TEST_F(ChartOfAccounts, ALongDescriptionIsCutAndAFailedSaveLeavesTheOldRows) {
  AddAccount("35", std::string(30, 'x') + std::string(30, 'y'));
  auto grid = CalcularContas(server.Context(), period, sales_);
  ASSERT_TRUE(grid);
  EXPECT_TRUE(GravarContas(server.Context(), period, *grid));
  const auto descriptions = [&] {
    return Staged("select AccountDescription from TabGeneralLedger where AccountID='35'");
  };
  EXPECT_THAT(descriptions(), ElementsAre(std::string(30, 'x') + std::string(20, 'y')));
  grid->back().cells[2] = "Outra";
  (*grid)[0].cells[5] = "longo";
  EXPECT_FALSE(GravarContas(server.Context(), period, *grid));
  EXPECT_EQ(LastText().find("Existem valores que não cabem no campo de destino!\n"), 0u) << LastText();
  EXPECT_THAT(descriptions(), ElementsAre(std::string(30, 'x') + std::string(20, 'y')));
}

TEST_F(ChartOfAccounts, TheNumberOfStatementsDoesNotGrowWithTheAccounts) {
  const auto statements = [&] {
    server.statements.clear();
    EXPECT_TRUE(CalcularContas(server.Context(), period, sales_));
    return server.statements.size();
  };
  const std::size_t few = statements();
  for (int i = 0; i < 60; ++i) AddAccount("4" + std::to_string(i), "Conta");
  EXPECT_EQ(statements(), few);
}

TEST_F(ChartOfAccounts, NothingIsCalculatedWithoutFilterOrTableNorWhenCancelled) {
  EXPECT_FALSE(CalcularContas(server.Context(), period, Filter("", "")));
  EXPECT_FALSE(CalcularContas(server.Context(), {}, sales_));
  server.progress.cancelAfter = 0;
  EXPECT_FALSE(CalcularContas(server.Context(), period, sales_));
  EXPECT_TRUE(server.dialogs.messages.empty());
  EXPECT_EQ(server.progress.open, 0);
  server.progress.cancelAfter = INT64_MAX;
  Lunder("drop table MovDiario");
  EXPECT_FALSE(CalcularContas(server.Context(), period, sales_));
  EXPECT_NE(LastText().find("Não existe a tabela [movdiario]!"), std::string::npos) << LastText();
}

}  // namespace
}  // namespace korvel::accounting
