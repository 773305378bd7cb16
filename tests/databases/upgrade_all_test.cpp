#include "databases/upgrade_all.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/companies.h"
#include "databases/config_upgrade.h"
#include "databases/installations.h"
#include "databases/version.h"
#include "support/scripted_world.h"
#include "toolkit/scramble.h"

namespace korvel::databases {
namespace {

constexpr const char* kDone = "Actualização Efectuada!";

class UpgradeAll : public testing::Test {
 protected:
  UpgradeAll() {
    EnsureConfigDatabase(context);
    for (const std::string& code : codes) MakeOld(code);
    server.session.gBaseDados.clear();
  }

  /// A company of the list that holds no more than an old version.
  void MakeOld(std::string_view code) {
    server.UseCompany(code);
    server.Run(CompanyDatabase(code),
               "create table Actualiza (NumRegisto int, Versao varchar(50))\nGO\n"
               "insert into Actualiza (Versao) values ('000000000001')");
    server.Open("KorvelConfig")->Execute("insert into Empresas (Codigo) values (?)", {code});
  }
  void SetVersion(std::string_view code, std::string_view version) {
    server.Open(CompanyDatabase(code))->Execute("update Actualiza set Versao=?", {version});
  }
  std::string Version(std::string_view code) {
    return server.One(CompanyDatabase(code), "select Versao from Actualiza");
  }

  const std::vector<std::string> codes{"0001", "0002", "0003"};
  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(UpgradeAll, BringsEachCompanyToTheProgramsVersion) {
  EXPECT_EQ(CompanyCodes(*server.Open("KorvelConfig")), codes);
  EXPECT_TRUE(UpgradeCompanies(context, codes));
  for (const std::string& code : codes) EXPECT_EQ(Version(code), SchemaVersion()) << code;
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{kDone});
  EXPECT_EQ(server.session.gBaseDados, "") << "the session enters no company";
  EXPECT_EQ(server.progress.open, 0);
}

TEST_F(UpgradeAll, CompanyNewerThanTheProgramStopsTheRun) {
  SetVersion("0002", "999900000000");
  EXPECT_FALSE(UpgradeCompanies(context, codes));
  EXPECT_EQ(
      server.dialogs.Texts(),
      std::vector<std::string>{"Não pode Actualizar a Empresa 0002 porque têm o aplicativo desactualizado!\n"
                               "Saia por favor e actualize o programa!"});
  EXPECT_EQ(Version("0001"), SchemaVersion());
  EXPECT_EQ(Version("0002"), "999900000000");
  EXPECT_EQ(Version("0003"), "000000000001");
}

TEST_F(UpgradeAll, CompanyThatIsGoneIsShownAndTheOthersGoOn) {
  server.Run("master", "drop database Korvel0002");
  EXPECT_FALSE(UpgradeCompanies(context, codes));
  EXPECT_EQ(Version("0003"), SchemaVersion());
  ASSERT_EQ(server.dialogs.messages.size(), 2U);
  EXPECT_EQ(server.dialogs.LastText(), kDone);
}

TEST_F(UpgradeAll, MenuAsksWhetherAndWhat) {
  server.dialogs.answers = {0};
  EXPECT_FALSE(AskAndUpgradeCompanies(context, "0002", codes));
  EXPECT_EQ(Version("0002"), "000000000001");
  server.dialogs.answers = {1, 0};
  EXPECT_TRUE(AskAndUpgradeCompanies(context, "0002", codes));
  EXPECT_EQ(Version("0001"), "000000000001");
  EXPECT_EQ(Version("0002"), SchemaVersion());
  server.dialogs.answers = {1, 1};
  EXPECT_TRUE(AskAndUpgradeCompanies(context, "0002", codes));
  EXPECT_EQ(Version("0001"), SchemaVersion());
  EXPECT_EQ(server.dialogs.questions.back().buttons,
            (std::vector<std::string>{"A Empresa Seleccionada", "Todas as Empresas"}));
}

TEST_F(UpgradeAll, MainWindowUpgradesTheCompanyInUse) {
  server.session.gBaseDados = "Korvel0003";
  server.dialogs.answers = {0};
  EXPECT_FALSE(ActualizaDBase(context));
  server.dialogs.answers = {1};
  EXPECT_TRUE(ActualizaDBase(context));
  EXPECT_EQ(Version("0003"), SchemaVersion());
  EXPECT_EQ(server.dialogs.LastText(), "Fim de Actualização");
  server.session.gCmdLogin = "sa";
  EXPECT_TRUE(ActualizaDBase(context)) << "an unattended run is not asked";
}

TEST_F(UpgradeAll, EachCompanyReachesItsOwnBillingDatabase) {
  for (const std::string& code : codes) {
    server.Run("master", "create database Brevant" + code);
    server.Run("Brevant" + code, "create table Log_MovTerceiro (NumRegisto int)");
    server.Run(CompanyDatabase(code),
               "create table ParamGeral (Servidor_Brevant varchar(50), Login_Brevant varchar(50), "
               "Password_Brevant varchar(50), DBase_Brevant varchar(50))");
    server.Open(CompanyDatabase(code))
        ->Execute(
            "insert into ParamGeral (Servidor_Brevant,Login_Brevant,Password_Brevant,DBase_Brevant) values "
            "(?,'sa','',?)",
            {server.Name(), "Brevant" + code});
  }
  server.session.gBaseDados = "Korvel0001";
  UpgradeCompanies(context, codes);
  for (const std::string& code : codes) {
    EXPECT_EQ(server.One("Brevant" + code, "select count(*) from syscolumns where name='DataSys'"), "1")
        << code;
  }
}

TEST_F(UpgradeAll, OtherInstallationsAreReachedWithTheirOwnLogins) {
  EXPECT_TRUE(ActualizaCampos(context)) << "nothing to do without their table";
  server.Run(
      "KorvelConfig",
      "create table FirmasImo (Codigo varchar(4), Nome varchar(50), Ano varchar(4), Server varchar(50), UID "
      "varchar(50), PWD varchar(50))");
  server.session.gPassword = "";
  const auto config = server.Open("KorvelConfig");
  config->Execute("insert into FirmasImo (Codigo,Server,UID,PWD) values ('0001',?,'sa','')", {server.Name()});
  config->Execute("insert into FirmasImo (Codigo,Server,UID,PWD) values ('0009',?,'sa','')", {server.Name()});
  config->Execute("insert into FirmasImo (Codigo,Server,UID,PWD) values ('0001','(LOCALDB)\\FORA','sa',?)",
                  {toolkit::Encrypt("senha")});
  EXPECT_EQ(FindEmpresa(*config, "0009"), "") << "a row without a name";
  config->Execute("update FirmasImo set Nome='Padaria' where Codigo='0009'");
  EXPECT_EQ(FindEmpresa(*config, "0009"), "Padaria");
  EXPECT_FALSE(FindInstallation(*config, "0002"));
  server.servers.makesEmbedded = false;
  server.dialogs.Clear();
  EXPECT_FALSE(ActualizaCampos(context));
  EXPECT_EQ(Version("0001"), SchemaVersion());
  EXPECT_EQ(server.dialogs.Texts(),
            (std::vector<std::string>{
                "Neste momento ninguem deve estar a operar no Korvel",
                "Não foi possivel actualizar a Empresa -> 0001\nServidor -> (LOCALDB)\\FORA",
                "Não foi possivel actualizar a Empresa -> 0009\nServidor -> (LOCALDB)\\TESTE",
                "Não foi possivel actualizar a Empresa Config no Servidor -> (LOCALDB)\\FORA"}));
}

}  // namespace
}  // namespace korvel::databases
