#include "session/connections.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/connection_string.h"
#include "support/scripted_world.h"

namespace korvel::session {
namespace {

using test::TestServer;
using testing::ElementsAre;

TEST(ConnectionStrings, HaveTheirFixedForms) {
  EXPECT_EQ(BuildConnectionString("SRV", "Korvel0001", "sa", false),
            "Provider=SQLOLEDB.1;Persist Security Info=False;User ID=sa;Initial Catalog=Korvel0001;Data "
            "Source=SRV");
  EXPECT_EQ(BuildConnectionString("SRV", "master", "sa", true),
            "Provider=SQLOLEDB.1;Integrated Security=SSPI;Persist Security Info=False;Initial Catalog=master;"
            "Data Source=SRV");
}

TEST(ConnectionStrings, KeepHostileNamesWhole) {
  constexpr std::string_view kNames[] = {
      "a;Integrated Security=SSPI", "x\";Data Source=outro;y=\"", "D'Ávila", "a=b", " brancos ", "\"", ""};
  for (const std::string_view name : kNames) {
    const auto parts = data::ConnectionString::Parse(BuildConnectionString("SRV", name, name, false));
    EXPECT_EQ(parts.login, name);
    EXPECT_EQ(parts.database, name);
    EXPECT_EQ(parts.server, "SRV");
    EXPECT_FALSE(parts.integratedSecurity);
  }
}

TEST(CreateDBConnection, AttemptsNothingWithoutServerOrLogin) {
  TestServer world;
  world.session.gErroNumero = 7;
  world.session.gErroDescricao = "anterior";
  ConnectionPtr connection;
  EXPECT_FALSE(CreateDBConnection(world.Context(), connection, "  ", "master", "sa", ""));
  EXPECT_FALSE(CreateDBConnection(world.Context(), connection, world.Name(), "master", " ", ""));
  EXPECT_EQ(world.session.gErroNumero, 7);
  EXPECT_EQ(world.session.gErroDescricao, "anterior");

  world.session.gAutenticacaoWindows = true;
  EXPECT_TRUE(CreateDBConnection(world.Context(), connection, world.Name(), "master", "", ""));
  FechaConection(connection);
  EXPECT_EQ(connection, nullptr);
  FechaConection(connection);
}

TEST(CreateDBConnection, KeepsTheFailure) {
  TestServer world;
  ConnectionPtr connection;
  EXPECT_FALSE(CreateDBConnection(world.Context(), connection, world.Name(), "master", "sa", "errada"));
  EXPECT_EQ(world.session.gErroNumero, static_cast<std::int32_t>(data::Failure::WrongLogin));
  EXPECT_FALSE(world.session.gErroDescricao.empty());
  EXPECT_FALSE(ValidateLogin(world.Context(), world.Name(), "master", "desconhecido", ""));
  EXPECT_TRUE(ValidateLogin(world.Context(), world.Name(), "master", "sa", ""));

  ShowConnectionError(world.Context());
  EXPECT_EQ(world.dialogs.LastText(),
            world.session.gErroDescricao + "\n" + std::to_string(world.session.gErroNumero));
  EXPECT_EQ(world.dialogs.messages.back().icon, toolkit::Icon::Critical);
}

TEST(RetryDialog, GivesNoSecondAttempt) {
  TestServer world;
  ConnectionPtr connection;
  world.dialogs.answers = {0, 1};
  EXPECT_FALSE(AbreConfig(world.Context(), connection));
  ASSERT_EQ(world.dialogs.alerts.size(), 1u);
  EXPECT_EQ(world.dialogs.alerts[0].text, "Ocorreu um erro ao tentar abrir uma conecção (Config)");
  EXPECT_THAT(world.dialogs.alerts[0].buttons, ElementsAre("Continuar a tentar", "Terminar o Programa"));

  world.session.gBaseDados = "KorvelNada";
  std::string database = " ";
  EXPECT_THROW(AbreGeral(world.Context(), connection, database), EndProgram);
  EXPECT_EQ(world.dialogs.alerts[1].text, "Ocorreu um erro ao tentar abrir uma conecção (Geral)");
  EXPECT_EQ(database, "KorvelNada");
}

TEST(CompanyConnections, DefaultToTheSessionsDatabase) {
  TestServer world;
  world.UseCompany("0001");
  ConnectionPtr connection;
  std::string database;
  ASSERT_TRUE(AbreGeral(world.Context(), connection, database));
  EXPECT_EQ(database, "Korvel0001");
  EXPECT_EQ(connection->Database(), "Korvel0001");
  EXPECT_TRUE(AbreConnectionLOCAL_bln(world.Context(), connection));

  world.session.gBaseDados = "KorvelNada";
  EXPECT_FALSE(AbreConnectionLOCAL_bln(world.Context(), connection));
  EXPECT_EQ(connection, nullptr);
  ASSERT_EQ(world.dialogs.messages.size(), 1u);
  EXPECT_EQ(world.dialogs.messages[0].icon, toolkit::Icon::Warning);
  EXPECT_EQ(world.dialogs.LastText(), "Ocorreu um erro ao tentar abrir uma conecção (Local)");
}

class SourceConnections : public testing::Test {
 protected:
  SourceConnections() {
    world_.UseCompany("0001");
    world_.Run(
        world_.session.gBaseDados,
        "create table ParamGeral (NumRegisto int identity(1,1), Servidor_Lunder varchar(50) null, "
        "Login_Lunder varchar(50) null, Password_Lunder varchar(50) null, DBase_Lunder varchar(50) null)");
  }
  void Point(std::string_view server, std::string_view database) {
    world_.Run(world_.session.gBaseDados, "delete from ParamGeral");
    world_.Run(world_.session.gBaseDados,
               "insert into ParamGeral (Servidor_Lunder,Login_Lunder,DBase_Lunder) values ('" +
                   std::string(server) + "','sa','" + std::string(database) + "')");
  }
  bool Open(bool isConfig = false, bool showMessage = true) {
    return AbreConnection_bln(world_.Context(), connection_, kLunder, isConfig, showMessage);
  }

  TestServer world_;
  ConnectionPtr connection_;
};

TEST_F(SourceConnections, LieWhereTheParametersSay) {
  world_.Run("master", "create database LunderX");
  world_.Run("master", "create database LunderConfig");
  Point(world_.Name(), "LunderX");
  ASSERT_TRUE(Open());
  EXPECT_EQ(connection_->Database(), "LunderX");
  ASSERT_TRUE(Open(true));
  EXPECT_EQ(connection_->Database(), "LunderConfig");
}

TEST_F(SourceConnections, SayWhichOneCannotBeReached) {
  Point(world_.Name(), "LunderNada");
  EXPECT_FALSE(Open(false, false));
  EXPECT_TRUE(world_.dialogs.messages.empty());
  EXPECT_FALSE(Open());
  EXPECT_EQ(world_.dialogs.LastText(), "Não foi possível estabelecer ligação com a empresa LunderNada!\n[" +
                                           world_.session.gErroDescricao + "]");
}

TEST_F(SourceConnections, AreQuietWithoutAPlace) {
  EXPECT_FALSE(Open());  // no row at all
  Point("", "LunderX");
  EXPECT_FALSE(Open());
  Point(world_.Name(), " ");
  EXPECT_FALSE(Open());
  EXPECT_TRUE(world_.dialogs.messages.empty());
}

}  // namespace
}  // namespace korvel::session
