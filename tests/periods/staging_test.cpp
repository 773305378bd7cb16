#include "periods/staging.h"

#include <gtest/gtest.h>

#include "company_world.h"
#include "periods/staged_tables.h"
#include "toolkit/progress_scope.h"

namespace korvel::periods {
namespace {

constexpr Column kColumns[] = {
    {.heading = "Nº Registo", .width = 330, .staged = "NumRegisto"},
    {.heading = "Tipo", .staged = "TaxType", .cut = 3, .emptyLabel = "Tipo de Imposto"},
    {.heading = "Região",
     .staged = "TaxCountryRegion",
     .kind = CellKind::UpperText,
     .emptyLabel = "País ou Região"},
    {.heading = "Descrição", .staged = "Description"},
    {.heading = "Vigência", .staged = "TaxExpirationDate", .kind = CellKind::Date},
    {.heading = "Percentagem", .staged = "TaxPercentage", .kind = CellKind::Money},
    {.heading = "Nota"},
};
constexpr StagedTable kTaxes{"TabTaxTablePOC", kColumns, " order by TaxType"};
const PeriodKey kPeriod{"2010", "2010-01-01", "2010-12-31"};

class Staging : public testing::Test, protected test::CompanyWorld {
 protected:
  Staging() {
    Script(
        "insert into TabHeader (FiscalYear,StartDate,EndDate) values ('2010','2010-01-01','2010-12-31')\nGO\n"
        "insert into TabTaxTablePOC (FiscalYear,StartDate,EndDate,TaxType) values "
        "('2010','2010-01-01','2010-12-31','OLD'),('2010','2010-01-01','2010-12-30','OUT')");
  }
  bool Save(const Grid& rows) {
    return SaveStaged(context, *company, kTaxes, kPeriod, rows, "Em Gravação...");
  }
  std::vector<std::string> Types() { return Rows("select TaxType from TabTaxTablePOC order by NumRegisto"); }
  static GridRow Row(std::string tipo, bool ticked = true) {
    return {ticked, {"", std::move(tipo), "pt", "D'Avila", "", "0", ""}};
  }

  std::unique_ptr<data::Connection> company = server.Open("Korvel0001");
};

TEST_F(Staging, CellsMeetTheirColumns) {
  server.session.gUtilizador = "maria";
  const std::string hostile = "'); delete from TabHeader --";
  ASSERT_TRUE(Save({{true, {"99", "IVAX", "pt-ac", hostile, "31-12-2011", "1.234,5", "nota"}},
                    {true, {"", "IS", "pt", "Ção", "", "6", ""}}}));
  EXPECT_EQ(
      Rows("select TaxType,TaxCountryRegion,Description,TaxExpirationDate,Utilizador from TabTaxTablePOC "
           "where EndDate='2010-12-31' order by NumRegisto"),
      (std::vector<std::string>{"IVA\tPT-AC\t" + hostile + "\t2011-12-31\tmaria", "IS\tPT\tÇão\t\tmaria"}));
  EXPECT_EQ(One("select count(*) from TabTaxTablePOC where TaxPercentage=1234.5 and DataSys is not null"),
            "1");
  const Grid loaded = LoadStaged(context, *company, kTaxes, kPeriod);
  ASSERT_EQ(loaded.size(), 2U);
  EXPECT_TRUE(loaded[0].ticked);
  EXPECT_EQ(loaded[0].cells[1], "IS") << "in the order asked for";
  EXPECT_EQ(loaded[0].cells[4], "");
  EXPECT_EQ((std::vector<std::string>{loaded[1].cells.begin() + 1, loaded[1].cells.end()}),
            (std::vector<std::string>{"IVA", "PT-AC", hostile, "31-12-2011", "1.234,50", ""}));
  EXPECT_EQ(server.progress.captions, (std::vector<std::string>{"Em Gravação...", "Carregando Dados..."}));
}

TEST_F(Staging, TickedRowsReplaceThoseOfThePeriodAlone) {
  ASSERT_TRUE(Save({Row("IVA"), Row("NAO", false), Row("IS")}));
  EXPECT_EQ(Types(), (std::vector<std::string>{"OUT", "IVA", "IS"}));
  ASSERT_TRUE(Save({}));
  EXPECT_EQ(Types(), std::vector<std::string>{"OUT"});
}

TEST_F(Staging, FirstEmptyColumnIsToldAndNothingWritten) {
  GridRow bad = Row(" ");
  bad.cells[2] = "";
  EXPECT_FALSE(Save({Row("IVA"), Row("", false), bad}));
  EXPECT_EQ(server.dialogs.LastText(), "O Campo [Tipo de Imposto] está Vazio!\nNão pode Gravar");
  EXPECT_EQ(server.dialogs.LastTitle(), "AVISO");
  EXPECT_EQ(Types(), std::vector<std::string>{"OUT"}) << "the old rows are gone, as designed";
}

TEST_F(Staging, FailureKeepsTheOldRows) {
  GridRow tooLong = Row("IVA");
  tooLong.cells[3] = std::string(101, 'x');
  EXPECT_THROW(Save({Row("IVA"), tooLong}), data::Error);
  EXPECT_EQ(Types(), (std::vector<std::string>{"OLD", "OUT"}));
}

TEST_F(Staging, CancellingKeepsTheOldRows) {
  server.progress.cancelAfter = 0;
  EXPECT_THROW(Save({Row("IVA")}), toolkit::Cancelled);
  EXPECT_EQ(Types(), (std::vector<std::string>{"OLD", "OUT"}));
  EXPECT_EQ(server.progress.open, 0);
}

TEST_F(Staging, StatementsDoNotGrowWithTheRows) {
  const auto sent = [&](std::size_t rows) {
    server.statements.clear();
    EXPECT_TRUE(Save(Grid(rows, Row("IVA"))));
    return server.statements.size();
  };
  EXPECT_EQ(sent(2), sent(400));
}

TEST_F(Staging, PeriodsThatHoldQuotesMeetNoOther) {
  const PeriodKey hostile{"2010", "' or ''='", "x"};
  EXPECT_THROW(SaveStaged(context, *company, kTaxes, hostile, {}, ""), PeriodGone);
  Script("insert into TabHeader (FiscalYear,StartDate,EndDate) values ('2010',''' or ''''=''','x')");
  EXPECT_TRUE(SaveStaged(context, *company, kTaxes, hostile, {}, ""));
  EXPECT_EQ(Types(), (std::vector<std::string>{"OLD", "OUT"}));
}

}  // namespace
}  // namespace korvel::periods
