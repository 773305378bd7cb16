#include "databases/logins.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/attempts.h"
#include "databases/canned_connection.h"
#include "databases/config_upgrade.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

using testing::Contains;

class Logins : public testing::Test {
 protected:
  Logins() { server.UseCompany("0001"); }

  /// The session as another login.
  void LogIn(std::string_view login, std::string_view password) {
    server.session.gLogin = login;
    server.session.gPassword = password;
  }
  bool Opens(std::string_view login, std::string_view password, std::string_view database = "master") {
    return session::ValidateLogin(context, server.Name(), database, login, password);
  }
  std::vector<std::string> LoginNames() {
    return server.Rows("master", "select name from syslogins order by name");
  }

  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(Logins, LiveFromCreationToTheirEnd) {
  ASSERT_TRUE(CreateLogin(context, "ANA", "p'; drop database Korvel0001 --", false));
  EXPECT_TRUE(Opens("ANA", "p'; drop database Korvel0001 --"));
  EXPECT_FALSE(ValidarLoginSysAdmin(context, "ANA", "p'; drop database Korvel0001 --"));
  EXPECT_TRUE(ChangePassword(context, "", "nova", "ANA"));
  EXPECT_FALSE(Opens("ANA", "p'; drop database Korvel0001 --"));
  EXPECT_TRUE(ChangePassword(context, "nova", "outra", "ANA"));
  EXPECT_FALSE(ChangePassword(context, "errada", "x", "ANA"));
  EXPECT_TRUE(Opens("ANA", "outra"));
  LogIn("ANA", "outra");
  EXPECT_FALSE(ChangePassword(context, "errada", "sua")) << "one's own password needs the old one";
  EXPECT_TRUE(ChangePassword(context, "outra", "sua"));
  LogIn("sa", "");
  EXPECT_TRUE(Opens("ANA", "sua"));
  EXPECT_TRUE(DeleteLogin(context, "ANA"));
  EXPECT_FALSE(Opens("ANA", "sua"));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
}

TEST_F(Logins, AdministratorsAreThoseOfTheServer) {
  ASSERT_TRUE(CreateLogin(context, "RUI", "r", true));
  EXPECT_TRUE(ValidarLoginSysAdmin(context, "rui", "r"));
  EXPECT_FALSE(ValidarLoginSysAdmin(context, "RUI", "errada"));
  EXPECT_TRUE(ValidarLoginSysAdmin(context)) << "blank: the session's own";
  EXPECT_TRUE(SQL_CheckLoginSysAdmin(*server.Open()));
  EXPECT_TRUE(SetServerRoleMember(context, "RUI", "sysadmin", false));
  EXPECT_FALSE(ValidarLoginSysAdmin(context, "RUI", "r"));
  server.session.gAutenticacaoWindows = true;
  EXPECT_TRUE(ValidarLoginSysAdmin(context, "ninguem", "")) << "not asked under Windows authentication";
}

TEST_F(Logins, OldServersAreAskedInTheirOwnWords) {
  const std::pair<const char*, const char*> cases[] = {
      {"8.00.2039", "sp_addlogin 'ANA','x'"},
      {"9.00.5000.00", "Create Login [ANA] With Password='x', Check_Policy =OFF "},
      {"16.0.1000", "Create Login [ANA] With Password='x', Check_Policy =OFF "},
  };
  for (const auto& [version, statement] : cases) {
    test::TestServer old;
    old.servers.embeddedVersion = version;
    ASSERT_TRUE(CreateLogin(old.Context(), "ANA", "x", false)) << version;
    EXPECT_THAT(old.statements, Contains(statement)) << version;
    EXPECT_TRUE(session::ValidateLogin(old.Context(), old.Name(), "master", "ANA", "x"));
  }
}

TEST_F(Logins, NamesThatCannotBeOnesAreRefusedBeforeAnythingIsSent) {
  const std::string hostile = "x] With Password='' drop database Korvel0001 --";
  const std::pair<const char*, std::function<bool()>> cases[] = {
      {"CreateLogin", [&] { return CreateLogin(context, hostile, "x", true); }},
      {"DeleteLogin", [&] { return DeleteLogin(context, hostile); }},
      {"ChangePassword", [&] { return ChangePassword(context, "", "x", hostile); }},
      {"SetServerRoleMember", [&] { return SetServerRoleMember(context, hostile, "sysadmin", true); }},
      {"SetServerRoleMember role", [&] { return SetServerRoleMember(context, "sa", hostile, true); }},
      {"SetDBRoleMember", [&] { return SetDBRoleMember(context, "Korvel0001", hostile, "db_owner", true); }},
      {"SetDBRoleMember base", [&] { return SetDBRoleMember(context, hostile, "sa", "db_owner", true); }},
      {"GrantAcess", [&] { return GrantAcess(context, "Korvel0001", hostile); }},
      {"GrantAcess base", [&] { return GrantAcess(context, hostile, "sa"); }},
      {"RevokeAccess", [&] { return RevokeAccess(context, "Korvel0001", hostile); }},
      {"AddOwnerToDB", [&] { return AddOwnerToDB(context, "Korvel0001", hostile); }},
      {"AddOwnerToDB base", [&] { return AddOwnerToDB(context, hostile, "sa"); }},
      {"DropUserFromDB", [&] { return DropUserFromDB(context, "Korvel0001", hostile); }},
      {"CheckUserInDB", [&] { return CheckUserInDB(context, "Korvel0001", hostile); }},
  };
  for (const auto& [member, call] : cases) {
    server.statements.clear();
    server.session.gErroDescricao.clear();
    EXPECT_FALSE(call()) << member;
    EXPECT_THAT(server.session.gErroDescricao, testing::HasSubstr(hostile)) << member;
    EXPECT_THAT(server.statements, testing::Not(Contains(testing::HasSubstr("drop database")))) << member;
  }
  DeleteUserFromAllDatabases(context, hostile);
  EXPECT_TRUE(Opens("sa", "", "Korvel0001"));
}

TEST_F(Logins, UsersOfADatabaseComeAndGo) {
  ASSERT_TRUE(CreateLogin(context, "ANA", "a", false));
  EXPECT_FALSE(CheckUserInDB(context, "Korvel0001", "ANA"));
  EXPECT_FALSE(Opens("ANA", "a", "Korvel0001"));
  EXPECT_TRUE(GrantAcess(context, "Korvel0001", "ANA"));
  EXPECT_TRUE(CheckUserInDB(context, "Korvel0001", "ANA"));
  EXPECT_TRUE(Opens("ANA", "a", "Korvel0001"));
  EXPECT_TRUE(RevokeAccess(context, "Korvel0001", "ANA"));
  EXPECT_FALSE(CheckUserInDB(context, "Korvel0001", "ANA"));
  for (int time = 0; time < 2; ++time) EXPECT_TRUE(AddOwnerToDB(context, "Korvel0001", "ANA"));
  EXPECT_TRUE(AddOwnerToDB(context, "Korvel0001", "sa")) << "the owner is in already";
  EXPECT_TRUE(DropUserFromDB(context, "Korvel0001", "ANA"));
  EXPECT_FALSE(DropUserFromDB(context, "Korvel0001", "ANA"));
}

TEST_F(Logins, UserLeavesEveryDatabaseAndTheAdministratorNone) {
  server.Run("master", "create database [Outra Base]");
  ASSERT_TRUE(CreateLogin(context, "ANA", "a", false));
  AddOwnerToDB(context, "Korvel0001", "ANA");
  AddOwnerToDB(context, "Outra Base", "ANA");
  DeleteUserFromAllDatabases(context, "ana");
  EXPECT_FALSE(CheckUserInDB(context, "Korvel0001", "ANA"));
  EXPECT_FALSE(CheckUserInDB(context, "Outra Base", "ANA"));
  server.statements.clear();
  DeleteUserFromAllDatabases(context, "sa");
  EXPECT_TRUE(server.statements.empty());
}

TEST_F(Logins, MissingRightIsTold) {
  ASSERT_TRUE(CreateLogin(context, "ANA", "a", false));
  ASSERT_TRUE(CreateLogin(context, "RUI", "r", false));
  AddOwnerToDB(context, "Korvel0001", "RUI");
  LogIn("ANA", "a");
  EXPECT_FALSE(DeleteLogin(context, "RUI"));
  EXPECT_EQ(server.dialogs.LastText(), "Sem Permissão para eliminar o Utilizador");
  EXPECT_FALSE(SetServerRoleMember(context, "ANA", "sysadmin", true));
  EXPECT_EQ(server.dialogs.LastText(), kNoPermission);
  server.dialogs.Clear();
  EXPECT_FALSE(CreateLogin(context, "ZE", "z", false));
  EXPECT_EQ(server.session.gErroDescricao, kNoPermission);
  EXPECT_FALSE(ChangePassword(context, "", "x", "RUI"));
  EXPECT_FALSE(AddOwnerToDB(context, "Korvel0001", "ANA"));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{}) << "these only report";
  LogIn("sa", "");
  EXPECT_THAT(LoginNames(), testing::Not(Contains("ZE")));
  EXPECT_TRUE(Opens("RUI", "r"));
}

TEST_F(Logins, RolesOfADatabaseAreGivenAndTaken) {
  ASSERT_TRUE(CreateLogin(context, "ANA", "a", false));
  server.Run("Korvel0001", "create table T (N int)");
  ASSERT_TRUE(AddOwnerToDB(context, "Korvel0001", "ANA"));
  const auto reads = [&] {
    session::ConnectionPtr own;
    return session::CreateDBConnection(context, own, server.Name(), "Korvel0001", "ANA", "a") &&
           Attempt(context, [&] { own->Query("select * from T"); });
  };
  EXPECT_TRUE(reads());
  EXPECT_TRUE(SetDBRoleMember(context, "Korvel0001", "ANA", "db_owner ", false));
  EXPECT_FALSE(reads());
  EXPECT_TRUE(SetDBRoleMember(context, "Korvel0001", "ANA", "db_datareader", true));
  EXPECT_TRUE(reads());
}

TEST_F(Logins, ListMarksThoseThatSeeAllCompanies) {
  ASSERT_TRUE(EnsureConfigDatabase(context));
  CreateLogin(context, "ANA", "a", false);
  CreateLogin(context, "RUI", "r", false);
  server.Run("KorvelConfig",
             "insert into UserManagement (LoginName,AdminTasks,AllDatabases) values ('ana',0,1)\nGO\n"
             "insert into UserManagement (LoginName,AdminTasks,AllDatabases) values ('RUI',0,0)");
  std::map<std::string, bool> marks;
  for (const LoginLine& line : LoadUsersToListview(*server.Open())) marks[line.login] = line.allDatabases;
  EXPECT_TRUE(marks.at("ANA"));
  EXPECT_FALSE(marks.at("RUI"));
  EXPECT_FALSE(marks.contains("BUILTIN\\Administrators"));
  EXPECT_EQ(OldLoadUsersToListview(*server.Open()).size(), LoginNames().size());
}

TEST(Administration, OldServersListTheirOwnGroupsToo) {
  test::CannedConnection master;
  master.answers["Select Name from Master..SysLogins"] = {
      {{"Name"}, {{"BUILTIN\\Administrators"}, {"builtin\\administradores"}, {"DOM\\grupo"}, {"sa"}}}};
  std::vector<std::string> names;
  for (const LoginLine& line : LoadUsersToListview(master)) names.push_back(line.login);
  EXPECT_EQ(names, (std::vector<std::string>{"DOM\\grupo", "sa"}));
}

TEST(Administration, NewOwnerLosesHisUserFirst) {
  test::CannedConnection connection;
  connection.answers["sp_helpuser"] = {{{"UserName", "GroupName", "LoginName"},
                                        {{"dbo", "db_owner", "ANA"},
                                         {"Ana Silva", "db_owner", "ana"},
                                         {"Ana Silva", "db_datareader", "ana"},
                                         {"RUI", "public", "RUI"}}}};
  ChangeDatabaseOwner(connection, "Korvel0001", "ANA");
  EXPECT_EQ(connection.sent, (std::vector<std::string>{"use Korvel0001", "sp_helpuser",
                                                       "sp_dropuser 'Ana Silva'", "sp_changedbowner 'ANA'"}));
  connection.sent.clear();
  ChangeDatabaseOwner(connection, "MSDB", "RUI");
  EXPECT_EQ(connection.sent, (std::vector<std::string>{"use MSDB", "sp_helpuser", "sp_dropuser RUI"}));
}

TEST_F(Logins, WhoIsConnected) {
  const auto master = server.Open();
  EXPECT_EQ(SQL_GetLoginName(*master).login, "sa");
  CreateLogin(context, "ANA", "a", false);
  EXPECT_FALSE(isLoggedOn(*master, "ana"));
  session::ConnectionPtr own;
  ASSERT_TRUE(session::CreateDBConnection(context, own, server.Name(), "master", "ANA", "a"));
  EXPECT_TRUE(isLoggedOn(*master, "ana"));
  own.reset();
  EXPECT_FALSE(isLoggedOn(*master, "ANA"));
}

}  // namespace
}  // namespace korvel::databases
