#include "session/entry/login.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/sql_admin.h"
#include "session/connections.h"
#include "session/entry/user_synchronisation.h"
#include "session_entry/entry_world.h"
#include "support/in_process.h"

namespace korvel::session {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using toolkit::Icon;

class LoginForm : public testing::Test {
 protected:
  test::EntryWorld world;
  test::TestServer& server = world.server;
  Context context = server.Context();
};

struct Refused {
  const char* server;
  std::string login;
  const char* password;
  const char* text;
  const char* focus;
};

TEST_F(LoginForm, SaysWhyAndWhereALoginIsRefused) {
  world.Prepare();
  world.AddLogin("ana");
  server.session = {};
  server.settings.values.clear();
  server.servers.makesEmbedded = false;
  const char* kNoServer = "O Servidor Indicado Não Existe ou o Acesso Foi Negado!";
  const char* kWrong = "Login ou Password Incorrectos";
  const std::string name = "(LOCALDB)\\TESTE";
  const Refused kRefused[] = {
      {"", "sa", "", kNoServer, "txtServer"},
      {"   ", "sa", "", kNoServer, "txtServer"},
      {"(LOCALDB)\\NENHUM", "sa", "", kNoServer, "txtServer"},
      {name.c_str(), "", "", kWrong, "txtPassword"},
      {name.c_str(), "   ", "", kWrong, "txtPassword"},
      {name.c_str(), "sa", "errada", kWrong, "txtPassword"},
      {name.c_str(), "ana", "", kWrong, "txtPassword"},
      {name.c_str(), "ana", "SEGREDO", kWrong, "txtPassword"},
      {name.c_str(), "ninguem", "segredo", kWrong, "txtPassword"},
      {name.c_str(), "sa' or '1'='1", "", kWrong, "txtPassword"},
      {name.c_str(), "sa;Integrated Security=SSPI", "", kWrong, "txtPassword"},
      {name.c_str(), std::string(5000, 'x'), "segredo", kWrong, "txtPassword"},
  };
  for (const Refused& refused : kRefused) {
    server.dialogs.Clear();
    EXPECT_FALSE(Login(context, {"", refused.server, refused.login, refused.password}));
    EXPECT_THAT(server.dialogs.Texts(), ElementsAre(refused.text)) << refused.login;
    EXPECT_EQ(server.dialogs.messages.back().icon, Icon::Critical);
    EXPECT_THAT(server.dialogs.focuses, ElementsAre(refused.focus)) << refused.login;
    EXPECT_EQ(server.session.gLogin, "");
    EXPECT_EQ(server.session.gPassword, "");
  }
  EXPECT_TRUE(server.settings.values.empty());
}

TEST_F(LoginForm, FirstAdministratorMakesTheConfiguration) {
  ASSERT_TRUE(Login(context, {"", "(localdb)\\teste", "Sa", ""}));
  EXPECT_EQ(server.session.gServidor, "(LOCALDB)\\TESTE");
  EXPECT_EQ(server.session.gLogin, "SA");
  EXPECT_EQ(server.session.gUtilizador, "SA");
  EXPECT_TRUE(server.session.gSysAdmin);
  EXPECT_EQ(server.settings.Read("Servers", "Name"), "(localdb)\\teste");
  EXPECT_EQ(server.settings.Read("Servers", "Login"), "Sa");
  EXPECT_THAT(world.Config("select LoginName,AdminTasks,AllDatabases from UserManagement"),
              testing::Contains("sa\t1\t1"));
  EXPECT_THAT(world.Config("select count(*) from Empresas"), ElementsAre("0"));
  EXPECT_THAT(server.dialogs.Texts(), ElementsAre());
}

TEST_F(LoginForm, AdministratorsMayBeTheFirstTogether) {
  {
    const auto enter = [this](const std::function<void()>&) { return world.LogIn("sa") ? 0 : 1; };
    test::InProcess first(enter), second(enter), third(enter);
    for (test::InProcess* other : {&first, &second, &third}) EXPECT_EQ(other->Wait(), 0);
  }
  ASSERT_TRUE(world.LogIn("sa")) << server.dialogs.LastText();
  EXPECT_THAT(world.Config("select AdminTasks from UserManagement where LoginName='sa'"), ElementsAre("1"));
  for (const char* table : {"Acessos", "Admins", "Empresas", "UserDatabases", "UsersEmpresas", "LogGeral",
                            "Configura", "Entidade"}) {
    EXPECT_TRUE(databases::SQLCheckTable(*server.Open("KorvelConfig"), table)) << table;
  }
}

class LockedSettings final : public toolkit::Settings {
 public:
  std::optional<std::string> Read(std::string_view, std::string_view) const override { return std::nullopt; }
  void Write(std::string_view, std::string_view, std::string_view) override {
    throw std::runtime_error("sem espaço");
  }
};

TEST_F(LoginForm, SettingsThatCannotBeKeptKeepNobodyOut) {
  LockedSettings settings;
  const Context locked{server.session,  server.servers, server.dialogs,
                       server.progress, settings,       server.clock};
  EXPECT_TRUE(Login(locked, {"", server.Name(), "sa", ""}));
  EXPECT_THAT(server.dialogs.Texts(), ElementsAre("sem espaço"));
}

TEST_F(LoginForm, OrdinaryLoginNeedsAnAdministratorBeforeIt) {
  ASSERT_TRUE(databases::CreateLogin(context, "ana", "segredo", false));
  server.dialogs.answers = {0, 1};
  EXPECT_FALSE(world.LogIn("ana", "segredo"));
  EXPECT_EQ(server.dialogs.LastText(), "Não Foi Possível Estabelecer a Ligação à Base de Dados!");
  EXPECT_FALSE(server.settings.Read("Servers", "Login"));
  EXPECT_THROW(world.LogIn("ana", "segredo"), EndProgram);
  ASSERT_TRUE(world.LogIn("sa"));
  EXPECT_EQ(server.One("master", "select count(*) from sysdatabases where name='KorvelConfig'"), "1");
}

TEST_F(LoginForm, KeepsUsersInStepWithTheServer) {
  world.Prepare();
  for (const char* login : {"ana", "bruno", "carla", "david"}) world.AddLogin(login);
  world.RunConfig(
      "insert into Admins (Uid) values ('BRUNO')\nGO\n"
      "insert into UsersEmpresas (Login,DBName) values ('carla','Korvel0001')\nGO\n"
      "insert into UsersEmpresas (Login,DBName) values ('CARLA','Korvel0002')\nGO\n"
      "insert into UsersEmpresas (Login,DBName) values ('carla','korvel0001')\nGO\n"
      "insert into UserManagement (LoginName,AdminTasks,AllDatabases) values ('DAVID',1,0)\nGO\n"
      "insert into UserManagement (LoginName,AdminTasks,AllDatabases) values ('D''Avila saiu',0,0)\nGO\n"
      "insert into UserDatabases (LoginName,Db_Name) values ('D''Avila saiu','Korvel0001')");
  ASSERT_TRUE(world.LogIn("ana", "segredo"));
  constexpr const char* kUsers =
      "select LoginName,AdminTasks,AllDatabases from UserManagement where LoginName in "
      "('ana','bruno','carla','david','sa','D''Avila saiu') order by LoginName";
  EXPECT_THAT(world.Config(kUsers),
              ElementsAre("ana\t0\t1", "bruno\t1\t1", "carla\t0\t0", "DAVID\t1\t0", "sa\t1\t1"));
  EXPECT_THAT(world.Config("select LoginName,Db_Name from UserDatabases order by Db_Name"),
              ElementsAre("carla\tKorvel0001", "carla\tKorvel0002"));

  server.statements.clear();
  ASSERT_TRUE(SynchroniseUsers(context));
  for (const std::string& statement : server.statements) {
    EXPECT_THAT(statement, testing::AnyOf(HasSubstr("elect"), HasSubstr("Use "))) << "nothing changed";
  }
  EXPECT_LT(server.statements.size(), 10u);

  world.LogIn("sa");
  ASSERT_TRUE(databases::DeleteLogin(context, "carla"));
  ASSERT_TRUE(world.LogIn("ana", "segredo"));
  EXPECT_THAT(world.Config("select * from UserDatabases"), ElementsAre());
  EXPECT_EQ(world.Config(kUsers).size(), 4u);
}

TEST_F(LoginForm, WindowsAuthenticationTakesTheServersNameForTheUser) {
  world.Prepare();
  world.AddLogin("ana");
  ASSERT_TRUE(world.LogIn("sa"));
  ASSERT_TRUE(Login(context, {.server = server.Name(), .login = "não conta", .windows = true}));
  EXPECT_TRUE(server.session.gAutenticacaoWindows);
  EXPECT_FALSE(server.session.gGrupoWindows.empty());
  EXPECT_THAT(server.session.gLogin, HasSubstr("\\"));
  EXPECT_EQ(server.session.gUtilizador, server.session.gLogin);
  EXPECT_EQ(server.session.gPassword, "");
  EXPECT_EQ(server.settings.Read("Servers", "Login"), "");
  server.session.gAutenticacaoWindows = false;
  server.session.gLogin = "sa";
  EXPECT_THAT(world.Config("select LoginName from UserManagement where LoginName='ana'"), ElementsAre("ana"))
      << "a login of the other way of authentication stays";
}

TEST_F(LoginForm, AsksForAnotherLoginWithoutTakingIt) {
  world.Prepare();
  world.AddLogin("ana");
  world.AddLogin("chefe", "senha", true);
  struct Asked {
    std::optional<toolkit::Credentials> typed;
    bool admin;
    bool passes;
  };
  const Asked kAsked[] = {{std::nullopt, false, false},        {{{"ana", "segredo"}}, false, true},
                          {{{"ana", "segredo"}}, true, false}, {{{"ana", "errada"}}, false, false},
                          {{{"", ""}}, true, false},           {{{"chefe", "senha"}}, true, true},
                          {{{"chefe", "errada"}}, true, false}};
  for (const Asked& asked : kAsked) {
    server.dialogs.logins = {asked.typed};
    EXPECT_EQ(RequestLogin(context, asked.admin), asked.passes)
        << (asked.typed ? asked.typed->login : "none");
    EXPECT_EQ(server.session.gLogin, "SA");
    EXPECT_EQ(server.session.gPassword, "");
  }
}

TEST_F(LoginForm, OpensWithWhatWasKept) {
  const LoginFields empty = LoadLogin(context);
  EXPECT_EQ(empty.server, "");
  EXPECT_FALSE(empty.machine.empty()) << "the machine's own name";
  EXPECT_FALSE(empty.windows);
  EXPECT_THAT(server.dialogs.focuses, ElementsAre());

  server.settings.Write("Servers", "Name", "Srv");
  server.settings.Write("Servers", "Login", "ana");
  KeepMachine(context, "POSTO 1");
  KeepAuthentication(context, {.server = "Srv", .windows = true});
  EXPECT_EQ(server.settings.Read("Servers", "WinAuthetication"), "1");
  const LoginFields kept = LoadLogin(context);
  EXPECT_EQ(kept.server, "Srv");
  EXPECT_EQ(kept.login, "ana");
  EXPECT_EQ(kept.machine, "POSTO 1");
  EXPECT_TRUE(kept.windows);
  EXPECT_TRUE(server.session.gAutenticacaoWindows);
  KeepAuthentication(context, {.server = "Srv"});
  KeepAuthentication(context, {});
  EXPECT_FALSE(server.session.gAutenticacaoWindows);
  EXPECT_THAT(server.dialogs.focuses, ElementsAre("txtServer", "txtLogin", "txtLogin", "txtServer"));
}

}  // namespace
}  // namespace korvel::session
