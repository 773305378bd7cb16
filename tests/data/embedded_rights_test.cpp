#include <set>

#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

/// A login "eva" with a user in BASE, which holds a table and a view; she has what each test gives her.
class EmbeddedRights : public EmbeddedServerTest {
 protected:
  EmbeddedRights() {
    connection->Execute("create table T (a int) insert T values (1)");
    connection->Execute("create view V as select a from T");
    connection->Execute("create procedure P as insert T values (9)");
    connection->Execute("exec sp_addlogin 'eva','x' exec sp_adduser 'eva','eva'");
    eva = OpenAs("eva", "x", "BASE");
  }

  /// The statements of `all` that she may run, by their keys; nothing that they do stays.
  std::string Allowed() {
    const struct {
      const char* key;
      const char* sql;
    } all[] = {{"select", "select a from T"},
               {"view", "select count(*) from V"},
               {"insert", "insert T values (2)"},
               {"update", "update T set a=3"},
               {"delete", "delete from T where a=7"},
               {"create", "create table N (a int)"},
               {"alter", "alter table T add b int"},
               {"index", "create index I on T (a)"},
               {"drop", "drop table T"},
               {"truncate", "truncate table T"},
               {"procedure", "create procedure N as select 1"},
               {"exec", "exec P"}};
    std::string allowed;
    for (const auto& entry : all) {
      if (!eva->InTransaction()) eva->BeginTrans();
      const std::string result = ErrorOf(*eva, entry.sql);
      if (result == "ok") allowed += std::string(allowed.empty() ? "" : " ") + entry.key;
      if (result != "ok") refusals.insert(result);
      eva->RollbackTrans();
    }
    return allowed;
  }

  std::unique_ptr<Connection> eva;
  std::set<std::string> refusals;
};

TEST_F(EmbeddedRights, EachRoleOfADatabaseGivesWhatItNames) {
  const struct {
    std::vector<std::string> roles;
    std::string allowed;
  } cases[] = {
      {{}, ""},
      {{"db_datareader"}, "select view"},
      {{"db_datawriter"}, "insert update"},
      {{"db_datareader", "db_datawriter"}, "select view insert update delete"},
      {{"db_ddladmin"}, "create alter index drop truncate procedure"},
      {{"db_accessadmin", "db_securityadmin", "db_backupoperator"}, ""},
      {{"db_owner "}, "select view insert update delete create alter index drop truncate procedure exec"},
      {{"db_owner", "db_denydatareader"}, "insert update create alter index drop truncate procedure exec"},
      {{"db_owner", "db_denydatawriter"}, "select view create alter index drop truncate procedure exec"},
  };
  for (const auto& entry : cases) {
    for (const std::string& role : entry.roles) connection->Execute("sp_addrolemember '" + role + "', 'eva'");
    EXPECT_EQ(Allowed(), entry.allowed) << testing::PrintToString(entry.roles);
    for (const std::string& role : entry.roles) connection->Execute("sp_droprolemember '" + role + "','eva'");
  }
  EXPECT_EQ(Allowed(), "");
  EXPECT_EQ(refusals, (std::set<std::string>{"229 42000", "262 42000", "3704 42000"}));
}

TEST_F(EmbeddedRights, ARightTakenAwayIsGoneAtTheNextStatementKeptOrNot) {
  connection->Execute(
      "exec sp_addrolemember 'db_datareader','eva' exec sp_addrolemember 'db_datawriter','eva'");
  const std::vector<std::string_view> columns{"a"};
  const auto batch = eva->OpenBatch("T", columns);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Rows(*eva, "select a from T where a=1"), "1");
    EXPECT_EQ(eva->Execute("update T set a=1 where a=1"), 1);
  }
  connection->Execute("exec sp_droprolemember 'db_datawriter','eva'");
  EXPECT_EQ(ErrorOf(*eva, "update T set a=1 where a=1"), "229 42000");
  EXPECT_THROW(batch->Add(std::vector<Parameter>{5}), Error);
  EXPECT_THROW(eva->OpenBatch("T", columns), Error);
  EXPECT_EQ(Rows(*eva, "select a from T where a=1"), "1");
  connection->Execute("exec sp_dropuser 'eva'");
  EXPECT_EQ(ErrorOf(*eva, "select a from T where a=1"), "916 42000");
  EXPECT_EQ(Rows(*connection, "select count(*) from T"), "1");
}

TEST_F(EmbeddedRights, MasterIsOpenToAllAndItsTablesToNone) {
  connection->Execute("use master create table M (a int)");
  ExpectErrors(*eva, {{"use master", "ok"},
                      {"select * from M", "229 42000"},
                      {"insert M values (1)", "229 42000"},
                      {"create table N (a int)", "262 42000"},
                      {"drop table M", "3704 42000"}});
  EXPECT_EQ(Rows(*eva, "select name from sysdatabases"), "master/BASE");
  EXPECT_EQ(Rows(*eva, "select count(*) from master..syslogins where name='sa'"), "1");
  EXPECT_EQ(Rows(*eva, "select count(*) from sysprocesses where loginame='eva'"), "1");
}

TEST_F(EmbeddedRights, RolesOfTheServerGiveWhatTheyName) {
  connection->Execute("exec sp_addlogin 'alvo','x'");
  const auto victim = OpenAs("alvo", "x", "master");
  const std::string kill = "kill " + Rows(*victim, "select @@spid");
  const struct {
    std::string_view role;
    std::string sql;
    std::string_view refusal;
  } cases[] = {
      {"dbcreator", "create database NOVA", "262 42000"},
      {"dbcreator", "use master drop database NOVA", "3701 42000"},
      {"dbcreator", "alter database BASE set read_write", "5011 42000"},
      {"securityadmin", "sp_addlogin 'novo','x'", "15247 42000"},
      {"securityadmin", "create login outro with password='x'", "15247 42000"},
      {"securityadmin", "sp_password NULL,'y','novo'", "15247 42000"},
      {"securityadmin", "sp_droplogin 'novo'", "15247 42000"},
      {"securityadmin", "drop login outro", "15247 42000"},
      {"securityadmin", "sp_grantlogin 'M\\u'", "15247 42000"},
      {"serveradmin", "sp_configure 'xp_cmdshell', 1", "15247 42000"},
      {"diskadmin", "sp_addumpdevice 'disk','D','d.dat'", "15247 42000"},
      {"setupadmin", "sp_addsrvrolemember 'alvo','setupadmin'", "15247 42000"},
      {"processadmin", kill, "6102 42000"},
  };
  connection->Execute("create database NOVA");
  for (const auto& entry : cases) EXPECT_EQ(ErrorOf(*eva, entry.sql), entry.refusal) << entry.sql;
  connection->Execute("drop database NOVA");
  for (const auto& entry : cases) {
    const std::string role(entry.role);
    connection->Execute("sp_addsrvrolemember 'eva','" + role + "'");
    EXPECT_EQ(ErrorOf(*eva, entry.sql), "ok") << entry.sql;
    connection->Execute("sp_dropsrvrolemember 'eva','" + role + "'");
  }
  connection->Execute("sp_addsrvrolemember 'eva','securityadmin'");
  // An administrator of logins is not above a sysadmin.
  ExpectErrors(*eva, {{"sp_password NULL,'y','sa'", "15247 42000"},
                      {"sp_addsrvrolemember 'eva','sysadmin'", "15247 42000"},
                      {"use BASE exec sp_addrolemember 'db_owner','eva'", "15247 42000"}});
}

TEST_F(EmbeddedRights, UsersAreManagedByThoseOfTheDatabase) {
  connection->Execute("exec sp_addlogin 'rui','x'");
  ExpectErrors(*eva, {{"sp_adduser 'rui'", "15247 42000"},
                      {"sp_dropuser 'eva'", "15247 42000"},
                      {"sp_addrolemember 'db_owner','eva'", "15247 42000"},
                      {"sp_changedbowner 'rui'", "15247 42000"}});
  connection->Execute("exec sp_addrolemember 'db_accessadmin','eva'");
  ExpectErrors(*eva, {{"sp_adduser 'rui'", "ok"},
                      {"sp_addrolemember 'db_owner','rui'", "15247 42000"},
                      {"sp_adduser 'rui','r2','db_owner'", "15247 42000"},
                      {"sp_dropuser 'rui'", "ok"}});
  connection->Execute("exec sp_addrolemember 'db_owner','eva'");
  ExpectErrors(*eva, {{"sp_adduser 'rui','rui','db_owner'", "ok"},
                      {"alter database BASE set read_write", "ok"},
                      {"sp_changedbowner 'rui'", "15247 42000"}});
  EXPECT_EQ(Rows(*OpenAs("rui", "x", "BASE"),
                 "select user_name(), is_member('db_owner'), is_member('db_ddladmin')"),
            "rui|1|0");
}

TEST_F(EmbeddedRights, BackupsHaveRolesOfTheirOwn) {
  EXPECT_EQ(ErrorOf(*eva, "backup database BASE to disk='b.dat' with init"), "262 42000");
  connection->Execute("exec sp_addrolemember 'db_backupoperator','eva'");
  EXPECT_EQ(ErrorOf(*eva, "backup database BASE to disk='b.dat' with init"), "ok");
  EXPECT_EQ(ErrorOf(*eva, "use master restore database BASE from disk='b.dat' with replace"), "262 42000");
  EXPECT_EQ(ErrorOf(*eva, "restore database OUTRA from disk='b.dat' with replace"), "262 42000");
  EXPECT_EQ(ErrorOf(*eva, "backup database master to disk='m.dat' with init"), "262 42000");
  // Users come back with the database by what they were: another login of the name is nobody there.
  eva->Close();
  connection->Execute("use master exec sp_droplogin 'eva' exec sp_addlogin 'eva','x'");
  connection->Execute("restore database BASE from disk='b.dat' with replace");
  EXPECT_EQ(Rows(*connection, "use BASE select name from sysusers where name='eva'"), "eva");
  EXPECT_THROW(OpenAs("eva", "x", "BASE"), Error);
}

TEST_F(EmbeddedRights, NoRowLeaksByAnotherStatement) {
  connection->Execute("exec sp_addrolemember 'db_datawriter','eva' create table U (a int)");
  for (const std::string_view sql :
       {"if exists (select a from T) select 1", "declare @a int set @a=(select max(a) from T)",
        "declare @a int select @a=a from T", "insert U select a from T",
        "update U set a=(select max(a) from T)", "update U set a=1 where exists (select 1 from V)",
        "select 1 where 1 in (select a from T)", "select (select max(a) from T)",
        "select 1 union all select a from V", "select x.n from (select count(*) as n from T) x",
        "delete U where a in (select a from T)"}) {
    EXPECT_EQ(ErrorOf(*eva, sql), "229 42000") << sql;
  }
}

TEST_F(EmbeddedRights, WhoMakesADatabaseOwnsIt) {
  connection->Execute("exec sp_addsrvrolemember 'eva','dbcreator'");
  EXPECT_EQ(Rows(*eva, "use master create database DELA use DELA create table D (a int) select user_name()"),
            "dbo");
  connection->Execute("exec sp_dropsrvrolemember 'eva','dbcreator'");
  EXPECT_EQ(Rows(*eva, "insert D values (1) select a from D"), "1");
  EXPECT_EQ(Rows(*connection, "use DELA select user_name() exec sp_changedbowner 'sa'"), "dbo");
  EXPECT_EQ(ErrorOf(*eva, "select a from D"), "916 42000");
}

}  // namespace
}  // namespace korvel::data
