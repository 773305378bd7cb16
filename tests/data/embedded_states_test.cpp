#include <unistd.h>

#include <chrono>

#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

using Clock = std::chrono::steady_clock;

/// Two connections of BASE and one of master, so that states meet somebody who uses the database.
class EmbeddedStates : public EmbeddedServerTest {
 protected:
  EmbeddedStates() { connection->Execute("create table T (a int) insert T values (1)"); }

  std::string Property(std::string_view name) {
    return Rows(*master, "Select DatabasePropertyex('BASE','" + std::string(name) + "') as MRet");
  }

  std::unique_ptr<Connection> master = Open("master");
};

TEST_F(EmbeddedStates, AReadOnlyDatabaseIsRefusedToAllWhoWrite) {
  connection->Execute("use master");
  EXPECT_EQ(Property("Updateability"), "READ_WRITE");
  EXPECT_EQ(ErrorOf(*master, "Alter DataBase BASE Set READ_ONLY"), "ok");
  EXPECT_EQ(Property("Updateability"), "READ_ONLY");
  EXPECT_EQ(Rows(*master, "select status from sysdatabases where name='BASE'"), "1024");
  const auto user = Open();
  ExpectErrors(*user, {{"select a from T", "ok"},
                       {"insert T values (2)", "3906 42000"},
                       {"update T set a=2 where a=1", "3906 42000"},
                       {"delete T", "3906 42000"},
                       {"create table N (a int)", "3906 42000"},
                       {"drop table T", "3906 42000"},
                       {"truncate table T", "3906 42000"},
                       {"exec sp_adduser 'sa'", "3906 42000"}});
  const std::vector<std::string_view> columns{"a"};
  EXPECT_THROW(user->OpenBatch("T", columns), Error);
  // Others feel it whatever process they are.
  const auto other = [this] { _exit(ErrorOf(*Open(), "insert T values (2)") == "3906 42000" ? 0 : 1); };
  EXPECT_EQ(Wait(Start(other)), 0);
  EXPECT_EQ(ErrorOf(*master, "alter database BASE set read_write with no_wait"), "5070 42000");
  user->Close();
  EXPECT_EQ(ErrorOf(*master, "Alter DataBase BASE Set READ_WRITE"), "ok");
  EXPECT_EQ(ErrorOf(*connection, "use BASE insert T values (2)"), "ok");
}

TEST_F(EmbeddedStates, AStateWaitsBrieflyForThoseInside) {
  const auto start = Clock::now();
  ExpectErrors(*master, {{"Alter Database BASE Set Single_User", "5061 42000"},
                         {"Alter Database BASE Set READ_ONLY", "5061 42000"},
                         {"Alter Database BASE Set READ_ONLY with no_wait", "5070 42000"},
                         {"alter database master set read_only", "5058 42000"},
                         {"alter database NaoHa set read_only", "911 42000"},
                         {"begin tran alter database BASE set read_only commit", "226 42000"},
                         {"rollback", "ok"}});
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(ErrorOf(*master, "Alter Database BASE Set Single_User with rollback immediate"), "ok");
  EXPECT_FALSE(connection->IsOpen());
  EXPECT_EQ(Property("UserAccess"), "SINGLE_USER");
  EXPECT_EQ(ErrorOf(*master, "Alter Database BASE Set Multi_User"), "ok");
  // What a transaction keeps open counts, too.
  const auto holder = Open();
  holder->BeginTrans();
  holder->Execute("insert T values (7) use master");
  EXPECT_EQ(ErrorOf(*master, "Alter Database BASE Set READ_ONLY"), "5061 42000");
  holder->RollbackTrans();
  EXPECT_EQ(ErrorOf(*master, "Alter Database BASE Set READ_ONLY"), "ok");
}

TEST_F(EmbeddedStates, ASingleUserKeepsOthersOut) {
  EXPECT_EQ(ErrorOf(*connection, "alter database BASE set single_user"), "ok");
  EXPECT_EQ(ErrorOf(*master, "use BASE"), "924 42000");
  EXPECT_EQ(ErrorOf(*master, "select db_name()"), "ok");
  EXPECT_THROW(Open(), Error);
  EXPECT_EQ(ErrorOf(*master, "alter database BASE set multi_user"), "5064 42000");
  EXPECT_EQ(Rows(*connection, "select a from T"), "1");
  connection->Execute("use master");
  const auto next = Open();
  EXPECT_EQ(ErrorOf(*connection, "use BASE"), "924 42000");
  EXPECT_EQ(ErrorOf(*next, "alter database BASE set multi_user"), "ok");
  EXPECT_EQ(ErrorOf(*connection, "use BASE"), "ok");
}

TEST_F(EmbeddedStates, OlderStatementsDoTheSame) {
  connection->Execute("use master");
  ExpectRows(*master, {{"sp_dboption 'BASE','read only'", "read only|off"},
                       {"sp_dboption BASE,'read only','true'", ""},
                       {"sp_dboption 'BASE','read only'", "read only|on"},
                       {"select status from sysdatabases where name='BASE'", "1024"},
                       {"sp_dboption BASE,'read only','false'", ""},
                       {"sp_dboption BASE,'single user',true", ""},
                       {"select DatabasePropertyex('BASE','UserAccess')", "SINGLE_USER"},
                       {"sp_dboption BASE,'single user',False", ""},
                       {"sp_dbcmptlevel BASE, 70", ""},
                       {"select cmptlevel, status from sysdatabases where name='BASE'", "70|0"},
                       {"select DatabasePropertyex('NaoHa','Updateability')", "NULL"}});
  ExpectErrors(*master, {{"sp_dboption BASE,'nada','true'", "5058 42000"},
                         {"sp_dboption BASE,'read only','talvez'", "5058 42000"},
                         {"sp_dboption NaoHa,'read only'", "911 42000"},
                         {"sp_dbcmptlevel BASE, 100", "15416 42000"}});
}

TEST_F(EmbeddedStates, AnIdleOneThatWasKilledStandsInNobodysWay) {
  connection->BeginTrans();
  connection->Execute("update T set a=2");
  master->Execute("Kill " + Rows(*master, "select spid from sysprocesses where open_tran>0"));
  EXPECT_EQ(ErrorOf(*master, "drop database BASE"), "ok");
  EXPECT_EQ(ErrorOf(*master, "create database BASE use BASE create table T (b int) insert T values (5)"),
            "ok");
  EXPECT_EQ(ErrorOf(*connection, "update T set a=3"), "596 08S01");
  connection.reset();
  EXPECT_EQ(Rows(*master, "select b from T"), "5");
  EXPECT_EQ(Rows(*Open(), "select b from T"), "5");
}

}  // namespace
}  // namespace korvel::data
