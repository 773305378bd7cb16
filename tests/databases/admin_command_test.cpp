#include "databases/admin_command.h"

#include <gtest/gtest.h>

#include "databases/config_upgrade.h"
#include "databases/version.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

class AdminCommands : public testing::Test {
 protected:
  AdminCommands() {
    EnsureConfigDatabase(context);
    server.UseCompany("0001");
    server.UseCompany("0002");
    server.Run("master", "create database Outra");
    server.session.gBaseDados.clear();
  }

  bool Run(std::string_view line) {
    return RunAdminCommand(context, std::get<session::AdminCommand>(session::ParseCommandLine(line)),
                           server.folder / "Korvel.exe");
  }
  std::string ActDb(std::string_view database) {
    return fmt::format("<@>act_db<@>{}<@>0<@>sa<@><@>{}", server.Name(), database);
  }
  std::string Tables(std::string_view database) {
    return server.One(database, "select count(*) from sysobjects where xtype='U'");
  }
  void Break(std::string_view database, std::string_view table) {
    server.Run(database, fmt::format("drop table {}", table));
  }

  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(AdminCommands, UpgradesAllDatabasesOfTheSystemOrOne) {
  EXPECT_TRUE(Run(ActDb("x' or '1'='1"))) << "a name like any other";
  EXPECT_TRUE(Run(ActDb("Korvel0002")));
  EXPECT_EQ(Tables("Korvel0001"), "0");
  EXPECT_EQ(server.One("Korvel0002", "select Versao from Actualiza"), SchemaVersion());
  Break("KorvelConfig", "Configura");
  EXPECT_TRUE(Run(ActDb("")));
  EXPECT_EQ(server.One("Korvel0001", "select Versao from Actualiza"), SchemaVersion());
  EXPECT_EQ(server.One("KorvelConfig", "select count(*) from Configura"), "0");
  EXPECT_EQ(Tables("Outra"), "0");
}

TEST_F(AdminCommands, CompanyOfTheProgramsVersionIsLeftAlone) {
  Run(ActDb("Korvel0001"));
  Break("Korvel0001", "TabArmazens");
  const std::string tables = Tables("Korvel0001");
  Run(ActDb(""));
  EXPECT_EQ(Tables("Korvel0001"), tables);
  server.Run("Korvel0001", "update Actualiza set Versao='000000000001'");
  Run(ActDb(""));
  EXPECT_NE(Tables("Korvel0001"), tables);
}

TEST_F(AdminCommands, ServerThatDoesNotOpenEndsInSilence) {
  EXPECT_FALSE(Run("<@>ACT_DB<@>" + server.Name() + "<@>0<@>sa<@>errada"));
  EXPECT_FALSE(Run("<@>OUTRO<@>" + server.Name()));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
}

TEST_F(AdminCommands, MarkerTellsTheVersionThatRan) {
  EXPECT_TRUE(Run("<@>ACT_CHK"));
  const VersionNumbers version = ParsedVersion(ProgramVersion());
  const std::string name = fmt::format("Korvel{:02}{:02}{:03}.txt", version[0], version[1], version[2]);
  EXPECT_EQ(test::ReadFile(server.folder / name), "");
  session::AdminCommand command;
  command.command = "ACT_CHK";
  EXPECT_FALSE(RunAdminCommand(context, command, "/nao/existe/Korvel"));
}

}  // namespace
}  // namespace korvel::databases
