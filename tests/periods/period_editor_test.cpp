#include "periods/period_editor.h"

#include <gtest/gtest.h>

#include "company_world.h"
#include "databases/version.h"
#include "periods/staged_tables.h"

namespace korvel::periods {
namespace {

class PeriodEditor : public testing::Test, protected test::CompanyWorld {
 protected:
  PeriodHeader Saved(std::string_view year) {
    PeriodHeader header = Filled(year);
    EXPECT_TRUE(GravarHeader(context, HeaderMode::New, header));
    server.dialogs.Clear();
    return header;
  }

  std::vector<PeriodListItem> List() { return ListPeriods(context, *server.Open("Korvel0001")); }
};

using Texts = std::vector<std::pair<const char*, std::string_view>>;

void ExpectColumns(const PeriodHeader& header, const Texts& expected) {
  for (const auto& [column, value] : expected) EXPECT_EQ(header[column], value) << column;
}

/// What every new period starts with, whatever was there before.
const Texts kOwn = {{"Country", "PT"},
                    {"AuditFileVersion", "1.01_01"},
                    {"ProductCompanyTaxId", "508123453"},
                    {"SoftwareCertificateNumber", ""},
                    {"ProductVersion", databases::ProgramVersion()},
                    {"Cliente", ""}};

TEST_F(PeriodEditor, FirstPeriodHasNoTemplate) {
  const auto opened = OpenHeader(context, HeaderMode::New, 0);
  ASSERT_TRUE(opened && opened->canSave);
  ExpectColumns(opened->header, kOwn);
  ExpectColumns(
      opened->header,
      {{"FiscalYear", ""}, {"CurrencyCode", "EUR"}, {"ProductID", "Korvel/Morvane"}, {"TaxEntity", ""}});
  EXPECT_EQ(server.dialogs.LastFocus(), "FiscalYear");
  EXPECT_EQ(server.dialogs.LastTitle(), "INFORMAÇÃO");
}

TEST_F(PeriodEditor, TemplateIsTheLatestKeyWithoutWhatBelongsToOnePeriod) {
  Script(
      "insert into TabHeader (FiscalYear,StartDate,EndDate,CompanyName,TaxAccountingBasis,BusinessName,"
      "TaxEntity,ProductCompanyTaxId,SoftwareCertificateNumber,Cliente,DateCreated,ProductVersion,"
      "AuditFileVersion,Country,WebSite) values ('2010','2010-07-01','2010-12-31','Certa','F','Nome',"
      "'Loja 3','999','12','C1','2011-01-01','0.0.1','1.00','ES','www')");
  Script(
      "insert into TabHeader (FiscalYear,StartDate,EndDate,CompanyName) values "
      "('2010','2010-07-01','2010-08-31','Outra'),('2009','2009-12-01','2010-11-30','Velha')");
  const PeriodHeader header = OpenHeader(context, HeaderMode::New, 0)->header;
  ExpectColumns(header, kOwn);
  ExpectColumns(header, {{"FiscalYear", "2011"},
                         {"StartDate", ""},
                         {"EndDate", ""},
                         {"CompanyName", "Certa"},
                         {"TaxAccountingBasis", "F"},
                         {"TaxEntity", "Global"},
                         {"BusinessName", ""},
                         {"DateCreated", ""},
                         {"WebSite", "www"}});
}

TEST_F(PeriodEditor, NewPeriodIsWrittenWhole) {
  PeriodHeader header = Filled("2010");
  header["Country"] = "pt";
  header["ProductID"] = "Outro";
  server.session.gUtilizador = "maria";
  ASSERT_TRUE(GravarHeader(context, HeaderMode::New, header));
  EXPECT_EQ(std::to_string(header.numRegisto), One("select NumRegisto from TabHeader"));
  EXPECT_EQ(
      Rows("select FiscalYear,StartDate,EndDate,CompanyName,Country,ProductID,Utilizador,Cliente,TaxEntity,"
           "convert(varchar(10),DataSys,120) from TabHeader"),
      std::vector<std::string>{
          "2010\t2010-01-01\t2010-12-31\tPadaria D'Avila, Lda\tPT\tKorvel/Morvane\tmaria\t\t"
          "Sede\t2026-01-15"});
}

TEST_F(PeriodEditor, FailedChecksWriteNothing) {
  PeriodHeader header = Filled("2010");
  header["StartDate"] = "2009-12-01";
  EXPECT_FALSE(GravarHeader(context, HeaderMode::New, header));
  EXPECT_EQ(server.dialogs.LastFocus(), "StartDate");
  EXPECT_TRUE(server.dialogs.messages.empty());
  header["StartDate"] = "2010-12-01";
  header["EndDate"] = "2011-03-31";
  EXPECT_TRUE(GravarHeader(context, HeaderMode::New, header));
  EXPECT_EQ(Rows("select StartDate from TabHeader"), std::vector<std::string>{"2010-12-01"});
}

TEST_F(PeriodEditor, SamePeriodTwiceIsRefused) {
  Saved("2010");
  PeriodHeader again = Filled("2010");
  EXPECT_FALSE(GravarHeader(context, HeaderMode::New, again));
  EXPECT_EQ(server.dialogs.LastText(), "Período já Configurado !");
  EXPECT_EQ(server.dialogs.LastTitle(), "ATENÇÃO :");
  EXPECT_EQ(server.dialogs.LastFocus(), "StartDate");
  EXPECT_EQ(One("select count(*) from TabHeader"), "1");
}

TEST_F(PeriodEditor, ChangeKeepsTheKey) {
  const PeriodHeader saved = Saved("2010");
  auto opened = OpenHeader(context, HeaderMode::Change, saved.numRegisto);
  ASSERT_TRUE(opened && opened->canSave);
  opened->header["CompanyName"] = "O'Neill & \"Filhos\"";
  opened->header["EndDate"] = "2010-06-30";
  ASSERT_TRUE(GravarHeader(context, HeaderMode::Change, opened->header));
  EXPECT_EQ(Rows("select CompanyName,EndDate from TabHeader"),
            std::vector<std::string>{"O'Neill & \"Filhos\"\t2010-12-31"});
}

TEST_F(PeriodEditor, RowThatHasGoneIsTold) {
  PeriodHeader saved = Saved("2010");
  Script("delete from TabHeader");
  EXPECT_FALSE(OpenHeader(context, HeaderMode::View, saved.numRegisto));
  EXPECT_EQ(server.dialogs.LastText(), "Esse Registo Foi Eliminado por outro Utilizador !");
  EXPECT_FALSE(GravarHeader(context, HeaderMode::Change, saved));
  EXPECT_EQ(server.dialogs.LastText(), "Esse Registo foi Eliminado por Outro Utilizador !");
  EXPECT_EQ(saved.numRegisto, 0);
  EXPECT_EQ(One("select count(*) from TabHeader"), "0");
}

TEST_F(PeriodEditor, RowsOfAnEarlierVersionAreOnlySeen) {
  Script(
      "insert into TabHeader (FiscalYear,StartDate,EndDate,TaxAccountingBasis,TaxEntity,ProductID) values "
      "('2008','2008-01-01','2008-12-31','Contabilidade','Loja','Antigo')");
  for (const HeaderMode mode : {HeaderMode::Change, HeaderMode::View}) {
    server.dialogs.Clear();
    const auto opened = OpenHeader(context, mode, 1);
    ASSERT_TRUE(opened);
    EXPECT_FALSE(opened->canSave);
    EXPECT_EQ(opened->header["TaxAccountingBasis"], "C");
    EXPECT_EQ(opened->header["TaxEntity"], "Loja");
    EXPECT_EQ(opened->header["ProductID"], "Korvel/Morvane");
    EXPECT_EQ(
        server.dialogs.Texts().front() == "Este registo é de uma versão anterior. Apenas pode Visualizar",
        mode == HeaderMode::Change);
  }
}

TEST_F(PeriodEditor, TextTooLongForItsColumnLeavesNothing) {
  PeriodHeader header = Filled("2010");
  header["BusinessName"] = std::string(61, 'x');
  EXPECT_THROW(GravarHeader(context, HeaderMode::New, header), data::Error);
  EXPECT_EQ(One("select count(*) from TabHeader"), "0");
}

TEST_F(PeriodEditor, ListIsInTheOrderOfTheKeys) {
  Saved("2011");
  Saved("2009");
  const auto items = List();
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[0].period, (PeriodKey{"2009", "2009-01-01", "2009-12-31"}));
  EXPECT_EQ(items[0].basis, "C");
  EXPECT_EQ(items[0].dataSys, "15-01-2026");
  EXPECT_EQ(items[1].companyName, "Padaria D'Avila, Lda");
  EXPECT_TRUE(FindPeriod(context, *server.Open("Korvel0001"), items[1].period));
  EXPECT_FALSE(FindPeriod(context, *server.Open("Korvel0001"), {"2011", "x' or '1'='1", ""}));
  EXPECT_EQ(FindPeriod(context, *server.Open("Korvel0001"), items[1].numRegisto)->period, items[1].period);
  EXPECT_FALSE(FindPeriod(context, *server.Open("Korvel0001"), std::int64_t{99}));
}

TEST_F(PeriodEditor, SearchTakesTheBeginningsOfTexts) {
  PeriodHeader other = Filled("2011", "Casa D'Avila");
  ASSERT_TRUE(GravarHeader(context, HeaderMode::New, other));
  Saved("2010");
  Saved("2009");
  const auto years = [&](const PeriodSearch& search) {
    std::string found;
    for (const auto& item : SearchPeriods(context, *server.Open("Korvel0001"), search)) {
      found += item.period.fiscalYear + " ";
    }
    return found;
  };
  EXPECT_EQ(years({}), "2009 2010 2011 ");
  EXPECT_EQ(years({"201", ""}), "2010 2011 ");
  EXPECT_EQ(years({"", "padaria d'"}), "2009 2010 ");
  EXPECT_EQ(years({"201", "padaria"}), "2010 ");
  EXPECT_EQ(years({"", "' or ''='"}), "");
  EXPECT_EQ(years({"", "D'Avila"}), "") << "in the middle";
}

class PeriodDeletion : public PeriodEditor {
 protected:
  PeriodDeletion() {
    for (const PeriodTable& table : kPeriodTables) {
      Script("insert into " + std::string(table.name) + " (FiscalYear,StartDate,EndDate" +
             (table.byCustomer
                  ? ",Cliente) values ('2010','2010-01-01','2010-12-31','X'),"
                    "('2011','2010-01-01','2010-12-31','X')"
                  : ") values ('2010','2010-01-01','2010-12-31'),('2010','2010-01-01','2010-12-30')"));
    }
  }
  std::vector<std::string> Counts() {
    std::vector<std::string> counts;
    for (const PeriodTable& table : kPeriodTables) {
      counts.push_back(One("select count(*) from " + std::string(table.name)));
    }
    return counts;
  }
};

TEST_F(PeriodDeletion, TakesThePeriodAndLeavesTheOthers) {
  server.dialogs.confirmations = {true};
  ASSERT_TRUE(EliminarHeader(context, {List().front()}));
  EXPECT_EQ(Counts(), std::vector<std::string>(10, "1"));
  EXPECT_EQ(server.dialogs.Texts().back(), "ESTE PROCESSO É IRREVERSÍVEL!");
  EXPECT_EQ(server.dialogs.deletions.back().text, "Pretende Eliminar o Registo '2010 - ?");
}

TEST_F(PeriodDeletion, OfAnotherCustomerTakesTheAccountingTablesAlone) {
  PeriodListItem item = List().front();
  item.cliente = "' or ''='";
  server.dialogs.confirmations = {true};
  ASSERT_TRUE(EliminarHeader(context, {item}));
  EXPECT_EQ(Counts(), (std::vector<std::string>{"2", "1", "1", "1", "2", "2", "2", "1", "2", "1"}));
}

TEST_F(PeriodDeletion, NeedsOneRowAndAYes) {
  EXPECT_FALSE(EliminarHeader(context, {}));
  EXPECT_FALSE(EliminarHeader(context, List()));
  EXPECT_EQ(server.dialogs.LastText(), "Apenas pode seleccionar um registo para eliminar.");
  server.dialogs.confirmations = {false};
  EXPECT_FALSE(EliminarHeader(context, {List().front()}));
  EXPECT_EQ(Counts(), std::vector<std::string>(10, "2"));
}

TEST_F(PeriodDeletion, FailureInTheMiddleKeepsEverything) {
  Script("drop table TabTaxTablePOC");
  server.dialogs.confirmations = {true};
  EXPECT_THROW(EliminarHeader(context, {List().front()}), data::Error);
  EXPECT_EQ(One("select count(*) from TabHeader"), "2");
  EXPECT_EQ(One("select count(*) from TabCustomerGEST"), "2");
}

}  // namespace
}  // namespace korvel::periods
