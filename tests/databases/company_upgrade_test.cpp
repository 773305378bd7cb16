#include "databases/company_upgrade.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "data/sql_text.h"
#include "databases/logins.h"
#include "databases/sql_admin.h"
#include "databases/version.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

constexpr std::string_view kColumns =
    "select Object_name(Id) as T, Name from syscolumns order by Object_name(Id), Name";

/// A company database as an early version of the program left it, with a row in each table.
constexpr std::string_view kOldCompany = R"(
create table ParamGeral (NumRegisto numeric(18,0) identity (1,1) not null, Login_Lunder varchar(50), CasasDec smallint)
GO
insert into ParamGeral (Login_Lunder,CasasDec) values ('contas',3)
GO
create table TabHeader (NumRegisto numeric(18,0) identity (1,1) not null, FiscalYear varchar(4), StartDate varchar(10),
  EndDate varchar(10), HeaderComment varchar(100), Utilizador varchar(20))
GO
insert into TabHeader (FiscalYear,StartDate,EndDate) values ('2008','2008-01-01','2008-12-31')
GO
create table TabCustomerPOC (NumRegisto numeric(18,0) identity (1,1) not null, CustomerID varchar(100))
GO
insert into TabCustomerPOC (CustomerID) values ('211001')
GO
create table TabSupplierPOC (NumRegisto numeric(18,0) identity (1,1) not null, SupplierID varchar(100))
GO
insert into TabSupplierPOC (SupplierID) values ('221001')
GO
create table TabTaxTableGEST (NumRegisto numeric(18,0) identity (1,1) not null, TaxCode varchar(100))
GO
insert into TabTaxTableGEST (TaxCode) values ('NOR')
GO
create table TabGeneralLedgerEntriesPOC (NumRegisto numeric(18,0) identity (1,1) not null, JournalID varchar(100))
GO
insert into TabGeneralLedgerEntriesPOC (JournalID) values ('V')
GO
create table TabSourceDocumentsGEST (NumRegisto numeric(18,0) identity (1,1) not null, Description varchar(100),
  Hash varchar(40))
GO
insert into TabSourceDocumentsGEST (Description,Hash) values ('Pão','abc')
)";

class CompanyUpgrade : public testing::Test {
 protected:
  CompanyUpgrade() { server.UseCompany("0001"); }

  UpgradeResult Upgrade() { return ActDBaseExecuta(context, "Korvel0001"); }
  std::string One(std::string_view query) { return server.One("Korvel0001", query); }

  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(CompanyUpgrade, TwiceLeavesTheSameSchemaAndShowsNothing) {
  std::vector<std::string> failed;
  for (const Failed& passed : Upgrade().passedOver) failed.push_back(passed.step);
  EXPECT_EQ(failed, std::vector<std::string>{
                        "Update TabSupplierPOC set AccountID=CustomerID where AccountID is null"});
  const auto once = server.Rows("Korvel0001", kColumns);
  ASSERT_GT(once.size(), 300U);
  ASSERT_TRUE(Upgrade().ran);
  EXPECT_EQ(server.Rows("Korvel0001", kColumns), once);
  server.Run("Korvel0001", "insert into TabSourceDocumentsGEST (InvoiceNo) values ('FT 1')");
  EXPECT_EQ(One("select DocAnulado from TabSourceDocumentsGEST"), "NULL") << "new rows keep what was not set";
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
}

TEST_F(CompanyUpgrade, VersionIsOneRowRewrittenEachTime) {
  Upgrade();
  for (const char* spoilt : {"update Actualiza set Versao='000000000001'", "delete from Actualiza"}) {
    server.Run("Korvel0001", spoilt);
    Upgrade();
    EXPECT_EQ(server.Rows("Korvel0001", "select Versao from Actualiza"),
              std::vector<std::string>{SchemaVersion()});
  }
}

TEST_F(CompanyUpgrade, OldRowsGetTheirValues) {
  server.Run("Korvel0001", kOldCompany);
  ASSERT_TRUE(Upgrade().ran);
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"select CasasDec,IncluirDocumentosAnulados,EquivCliente,AgrupaContasClientes,AgrupaIvas,"
       "ProductDescriptionDefault,GeneralLedgerEntries_IncluirSI,PeriodicidadeEnvio,PeriodoDados,"
       "MensagensActualizacao from ParamGeral",
       "3\tN\tContaContabil\t1\t1\tSem Descrição\t0\t\t\t"},
      {"select Header_ContaInicial,Product_Grupo from ParamGeral", "NULL\tNULL"},
      {"select BusinessName,TaxEntity,ProductCompanyTaxId,SoftwareCertificateNumber,Cliente from TabHeader",
       "\t\t508123453\t0\t"},
      {"select AccountID,SelfBillingIndicator from TabCustomerPOC", "211001\t0"},
      // Suppliers have no CustomerID to take it from.
      {"select AccountID,SelfBillingIndicator from TabSupplierPOC", "NULL\t0"},
      {"select TaxCountryRegion,TaxExpirationDate,CodigoBrevant,Cliente from TabTaxTableGEST", "\t\t\t"},
      {"select DocArchivalNumber,TransactionType from TabGeneralLedgerEntriesPOC", "\t0"},
      {"select Description,Hash,DocAnulado,InvoiceStatus,TaxAmount,Cliente from TabSourceDocumentsGEST",
       "Pão\tabc\tN\t\t\t"},
  };
  for (const auto& [query, expected] : cases) {
    EXPECT_EQ(server.Rows("Korvel0001", query), std::vector<std::string>{std::string(expected)}) << query;
  }
  EXPECT_EQ(One("select count(*) from TabTaxTableGEST where TaxAmount=0"), "1");
}

TEST_F(CompanyUpgrade, WidensWhatWasNarrow) {
  server.Run("Korvel0001", kOldCompany);
  Upgrade();
  const auto text = [](std::size_t length) { return std::string(length, 'h'); };
  const auto company = server.Open("Korvel0001");
  company->Execute("update TabSourceDocumentsGEST set Description=?,Hash=?", {text(1000), text(5000)});
  company->Execute("update TabHeader set HeaderComment=?,Utilizador=?", {text(255), text(128)});
  EXPECT_EQ(company->Query("select Hash from TabSourceDocumentsGEST").Text("Hash"), text(5000));
  EXPECT_THROW(company->Execute("update TabHeader set HeaderComment=?", {text(256)}), data::Error);
}

TEST_F(CompanyUpgrade, WidensEveryLoginButThoseOfTheUserTables) {
  server.Run("Korvel0001",
             "create table Registos (NumRegisto int, LoginAntigo varchar(5))\nGO\n"
             "create table UserDatabases (NumRegisto int, LoginName varchar(5))\nGO\n"
             "create table UsersEmpresas (NumRegisto int, Login varchar(5))\nGO\n"
             "create index IX_UsersEmpresas on UsersEmpresas (Login)");
  Upgrade();
  const std::string login(128, 'l');
  const auto company = server.Open("Korvel0001");
  company->Execute("insert into Registos (LoginAntigo) values (?)", {login});
  company->Execute("insert into UsersEmpresas (Login) values (?)", {login});
  EXPECT_THROW(company->Execute("insert into UserDatabases (LoginName) values (?)", {login}), data::Error);
}

TEST_F(CompanyUpgrade, AddsItsColumnToTheBillingDatabase) {
  Upgrade();
  server.Run("master", "create database BrevantDemo");
  server.Run("BrevantDemo",
             "create table Log_MovTerceiro (NumRegisto numeric(18,0) identity (1,1) not null, Numero "
             "varchar(10))\nGO\n"
             "insert into Log_MovTerceiro (Numero) values ('1')");
  server.Run(
      "Korvel0001",
      "insert into ParamGeral (Servidor_Brevant,Login_Brevant,Password_Brevant,DBase_Brevant) values (" +
          data::Quoted(server.Name()) + ",'sa','','BrevantDemo')");
  server.session.gBaseDados.clear();
  Upgrade();
  EXPECT_EQ(server.One("BrevantDemo", "select DataSys from Log_MovTerceiro"), "");
  EXPECT_EQ(server.session.gBaseDados, "Korvel0001");
}

TEST_F(CompanyUpgrade, ReadOnlyCompanyComesOutReadOnlyAgain) {
  const auto master = server.Open();
  SetReadOnly(*master, "Korvel0001", true);
  UpgradeRun run;
  run.pause = [] { ADD_FAILURE() << "nobody is in it"; };
  ASSERT_TRUE(ActDBaseExecuta(context, "Korvel0001", run).ran);
  EXPECT_TRUE(CheckForReadOnly(*master, "Korvel0001"));
  EXPECT_EQ(One("select Versao from Actualiza"), SchemaVersion());
}

TEST_F(CompanyUpgrade, CompanyThatStaysReadOnlyGetsTheSameRunInSilence) {
  const auto master = server.Open();
  SetReadOnly(*master, "Korvel0001", true);
  const auto user = server.Open("Korvel0001");
  UpgradeRun run;
  int pauses = 0;
  run.pause = [&] { ++pauses; };
  const UpgradeResult result = ActDBaseExecuta(context, "Korvel0001", run);
  EXPECT_TRUE(result.ran);
  EXPECT_EQ(pauses, 9) << "ten attempts; it is read-only still when they end";
  EXPECT_GT(result.passedOver.size(), 50U);
  EXPECT_TRUE(CheckForReadOnly(*master, "Korvel0001"));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
}

TEST_F(CompanyUpgrade, RefusedLevelIsToldOnceARun) {
  ASSERT_TRUE(CreateLogin(context, "ANA", "a", false));
  ASSERT_TRUE(AddOwnerToDB(context, "Korvel0001", "ANA"));
  server.session.gLogin = "ANA";
  server.session.gPassword = "a";
  UpgradeRun run;
  for (int time = 0; time < 2; ++time) ASSERT_TRUE(ActDBaseExecuta(context, "Korvel0001", run).ran);
  ASSERT_EQ(server.dialogs.messages.size(), 1U);
  EXPECT_EQ(server.dialogs.LastText().rfind("ChangeDBCompLevel\n", 0), 0U);
  EXPECT_EQ(One("select Versao from Actualiza"), SchemaVersion());
}

TEST_F(CompanyUpgrade, SaysWhenTheServerOrTheDatabaseDoesNotOpen) {
  EXPECT_FALSE(ActDBaseExecuta(context, "Korvel0009").ran);
  EXPECT_EQ(server.dialogs.messages.size(), 1U);
  server.session.gPassword = "errada";
  EXPECT_FALSE(Upgrade().ran);
  EXPECT_EQ(server.dialogs.messages.size(), 2U);
}

}  // namespace
}  // namespace korvel::databases
