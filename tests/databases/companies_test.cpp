#include "databases/companies.h"

#include <gtest/gtest.h>

#include "databases/config_upgrade.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

class Companies : public testing::Test {
 protected:
  std::vector<std::string> List() {
    return server.Rows(
        "KorvelConfig",
        "select Codigo,Descricao,AcessoPrincipal,AcessoIndependente from Empresas order by Codigo");
  }

  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(Companies, CreationMakesDatabaseRowAndTables) {
  const std::string hostile = "x','sa',1,1); drop table empresas --";
  ASSERT_TRUE(CreateCompany(context, {.code = "7", .description = hostile}));
  EXPECT_EQ(List(), std::vector<std::string>{"0007\t" + hostile + "\t0\t0"});
  EXPECT_EQ(server.One("KorvelConfig", "select Utilizador from Empresas"), "sa");
  EXPECT_NE(server.One("KorvelConfig", "select DataSys from Empresas"), "NULL");
  EXPECT_EQ(server.One("Korvel0007", "select count(*) from TabHeader"), "0");
  EXPECT_EQ(server.session.gBaseDados, "Korvel0007");
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
}

TEST_F(Companies, NewMainCompanyTakesTheFlagFromTheOthers) {
  ASSERT_TRUE(EnsureConfigDatabase(context));
  EXPECT_EQ(NextCompanyCode(*server.Open("KorvelConfig")), "0001");
  ASSERT_TRUE(CreateCompany(context, {.code = "0001", .description = "Um", .main = true}));
  ASSERT_TRUE(
      CreateCompany(context, {.code = "0002", .description = "Dois", .main = true, .independent = true}));
  ASSERT_TRUE(CreateCompany(context, {.code = "0003", .description = "Três"}));
  EXPECT_EQ(List(), (std::vector<std::string>{"0001\tUm\t0\t0", "0002\tDois\t1\t1", "0003\tTrês\t0\t0"}));
  EXPECT_EQ(NextCompanyCode(*server.Open("KorvelConfig")), "0004");
  EXPECT_EQ(server.session.gBaseDados, "Korvel0001") << "a company in use stays";
}

TEST_F(Companies, RefusesCodesThatAreNoNumbers) {
  for (const char* code : {"00A1", "", "   ", "-1", "1.5", "12345", "1;drop database master"}) {
    server.dialogs.Clear();
    EXPECT_FALSE(CreateCompany(context, {.code = code, .description = "x"})) << code;
    EXPECT_EQ(server.dialogs.LastText(), "O Codigo da Empresa tem que ser numérico !") << code;
  }
  EXPECT_EQ(server.One("master", "select count(*) from sysdatabases where name like 'Korvel%'"), "0");
}

TEST_F(Companies, RefusesADatabaseThatIsThereWithOrWithoutItsRow) {
  ASSERT_TRUE(CreateCompany(context, {.code = "0001", .description = "Um"}));
  server.Run("master", "create database KORVEL0002");
  for (const char* code : {"0001", "0002"}) {
    server.dialogs.Clear();
    EXPECT_FALSE(CreateCompany(context, {.code = code, .description = "Outra"}));
    EXPECT_EQ(server.dialogs.LastText(), "Empresa Já  Existente!");
    EXPECT_EQ(server.dialogs.LastTitle(), "Atenção:");
  }
  EXPECT_EQ(List(), std::vector<std::string>{"0001\tUm\t0\t0"});
}

TEST_F(Companies, FailureIsShownAndReported) {
  const std::string tooLong(60, 'x');
  EXPECT_FALSE(CreateCompany(context, {.code = "0001", .description = tooLong}));
  EXPECT_EQ(server.dialogs.LastText().rfind("Não foi possivel Criar a Nova Empresa!\n", 0), 0U);
  server.session.gPassword = "errada";
  server.dialogs.Clear();
  EXPECT_FALSE(CreateCompany(context, {.code = "0002", .description = "x"}));
  EXPECT_EQ(server.dialogs.messages.size(), 1U);
}

}  // namespace
}  // namespace korvel::databases
