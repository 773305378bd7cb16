
#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

/// A server with logins: "ana" is db_owner of BASE, "eva" has a user without roles there, "rui" has none.
class EmbeddedLogins : public EmbeddedServerTest {
 protected:
  EmbeddedLogins() {
    connection->Execute("create table T (a int) insert T values (1)");
    for (const std::string login : {"ana", "eva", "rui"})
      connection->Execute("exec sp_addlogin '" + login + "','x'");
    connection->Execute("exec sp_adduser 'ana','ana' exec sp_addrolemember 'db_owner ', 'ana'");
    connection->Execute("exec sp_adduser 'eva','eva'");
  }

  /// What opening gives: "open", or the native number.
  std::string Opening(std::string_view login, std::string_view password, std::string_view database) {
    try {
      OpenAs(login, password, database);
    } catch (const Error& error) {
      return std::to_string(error.Native());
    }
    return "open";
  }

  /// Some columns of a row set by their names, as Rows writes them.
  static std::string Columns(Connection& from, std::string_view sql, std::vector<std::string_view> names) {
    std::string text;
    for (Recordset rows = from.Query(sql); !rows.Eof(); rows.MoveNext()) {
      text += text.empty() ? "" : "/";
      for (std::size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "" : "|") + (rows.IsNull(names[i]) ? "NULL" : std::string(rows.Text(names[i])));
    }
    return text;
  }
};

TEST_F(EmbeddedLogins, EnterWithTheirPasswordWhereTheyHaveAUser) {
  const struct {
    std::string login;
    std::string password;
    std::string database;
    std::string result;
  } cases[] = {
      {"ana", "x", "BASE", "open"},
      {"ANA ", "x", "base", "open"},
      {"ana", "X", "BASE", "18456"},
      {"ana", "", "BASE", "18456"},
      {"ana", "x ", "BASE", "18456"},
      {"eva", "x", "BASE", "open"},
      {"rui", "x", "BASE", "4060"},
      {"rui", "x", "master", "open"},
      {"rui", "x", "", "open"},
      {"rui", "x", "NaoHa", "4060"},
      {"", "", "master", "18456"},
      {" ", "", "master", "18456"},
      {std::string(5000, 'a'), "x", "BASE", "18456"},
      {"dbo", "", "BASE", "18456"},
      {"BUILTIN\\Administrators", "", "BASE", "18456"},
      {"ana' or '1'='1", "x", "BASE", "18456"},
  };
  for (const auto& entry : cases)
    EXPECT_EQ(Opening(entry.login, entry.password, entry.database), entry.result)
        << entry.login << " " << entry.database;
  const auto rui = OpenAs("rui", "x", "master");
  EXPECT_EQ(ErrorOf(*rui, "use BASE"), "916 42000");
  EXPECT_EQ(Rows(*rui, "select db_name(), user_name(), suser_sname()"), "master|guest|rui");
}

TEST_F(EmbeddedLogins, StatementsOfAdministrationRunAsWritten) {
  ExpectRows(*connection,
             {{"Create Login [zé] With Password='a;b''c', Check_Policy =OFF ", ""},
              {"sp_addsrvrolemember 'zé', sysadmin", ""},
              {"sp_addsrvrolemember 'ana' , 'dbcreator'", ""},
              {"select name, sysadmin, dbcreator, hasaccess, isntname from master..syslogins order by name",
               "ana|0|1|1|0/BUILTIN\\Administrators|1|0|1|1/eva|0|0|1|0/rui|0|0|1|0/sa|1|0|1|0/zé|1|0|1|0"},
              {"select is_srvrolemember('sysadmin','zé'), is_srvrolemember('DBCreator','ana'), "
               "is_srvrolemember('diskadmin','ana'), is_srvrolemember('nada'), is_srvrolemember ('sysadmin')",
               "1|1|0|NULL|1"},
              {"sp_dropsrvrolemember 'zé' , 'sysadmin'", ""},
              {"select is_srvrolemember('sysadmin','zé')", "0"},
              {"sp_droplogin 'zé'", ""},
              {"exec sp_adduser 'rui','rui','db_datareader'", ""},
              {"sp_droprolemember 'db_owner','ana'", ""},
              {"sp_dropuser 'eva'", ""},
              {"use master exec sp_adduser 'rui','rui' exec sp_addrolemember 'db_owner', 'rui'", ""},
              {"select user_name()", "dbo"}});
  EXPECT_EQ(Columns(*connection, "sp_helpsrvrolemember 'sysadmin'", {"ServerRole", "membername"}),
            "sysadmin|BUILTIN\\Administrators/sysadmin|sa");
  EXPECT_EQ(
      Columns(*connection, "use BASE exec sp_helpuser", {"UserName", "GroupName", "LoginName", "DefDBName"}),
      "dbo|db_owner|sa|master/ana|public|ana|master/rui|db_datareader|rui|master");
  EXPECT_EQ(Columns(*connection, "sp_helpuser 'rui'", {"LoginName"}), "rui");
  EXPECT_EQ(Columns(*connection, "sp_helprolemember 'db_datareader'", {"MemberName"}), "rui");
  EXPECT_EQ(Rows(*connection, "select name from sysusers where islogin=1 and issqlrole=0"), "dbo/ana/rui");
  EXPECT_EQ(Columns(*OpenAs("rui", "x", "BASE"), "select 1 as a", {"a"}), "1");
}

TEST_F(EmbeddedLogins, RefuseWhatTheServerRefuses) {
  ExpectErrors(*connection,
               {{"sp_addlogin 'ana','y'", "15025 42000"},
                {"Create Login [ana] With Password='y'", "15025 42000"},
                {"Create Login [x\\y] With Password='y'", "15006 42000"},
                {"sp_grantlogin 'semMaquina'", "15407 42000"},
                {"sp_droplogin 'nada'", "15007 42000"},
                {"sp_droplogin 'sa'", "15405 42000"},
                {"sp_revokelogin 'BUILTIN\\Administrators'", "15405 42000"},
                {"sp_dropsrvrolemember 'sa','sysadmin'", "15405 42000"},
                {"sp_addsrvrolemember 'ana','chefe'", "15402 42000"},
                {"sp_adduser 'nada'", "15007 42000"},
                {"sp_adduser 'sa'", "15063 42000"},
                {"sp_adduser 'eva','eva2'", "15063 42000"},
                {"sp_adduser 'rui','ana'", "15023 42000"},
                {"sp_adduser 'rui','db_owner'", "15023 42000"},
                {"sp_dropuser 'rui'", "15008 42000"},
                {"sp_dropuser 'dbo'", "15405 42000"},
                {"sp_helpuser 'rui'", "15198 42000"},
                {"sp_addrolemember 'chefes','ana'", "15014 42000"},
                {"sp_changedbowner 'ana'", "15110 42000"},
                {"use master exec sp_changedbowner 'rui'", "15109 42000"},
                {"begin tran exec sp_addlogin 'novo','x' commit", "15002 42000"},
                {"rollback", "ok"},
                {"use BASE exec sp_changedbowner 'rui' exec sp_droplogin 'rui'", "15174 42000"}});
  const auto eva = OpenAs("eva", "x", "BASE");
  EXPECT_EQ(ErrorOf(*connection, "sp_droplogin 'eva'"), "15434 42000");
  eva->Close();
  EXPECT_EQ(ErrorOf(*connection, "sp_droplogin 'eva'"), "ok");
  // Its user stays behind without a login, and does not serve another of the same name.
  EXPECT_EQ(ErrorOf(*connection, "sp_addlogin 'eva','x'"), "ok");
  EXPECT_EQ(Opening("eva", "x", "BASE"), "4060");
}

TEST_F(EmbeddedLogins, NamesThatCouldDoHarmAreRefused) {
  const std::string names[] = {"",
                               " ",
                               "a'b",
                               "a\"b",
                               "a[b",
                               "a]b",
                               "a;b",
                               "x\ny",
                               std::string("a\0b", 3),
                               std::string(129, 'n'),
                               "\x7F",
                               "sa'; drop--"};
  for (const std::string& name : names) {
    EXPECT_EQ(ErrorOf(*connection, "exec sp_addlogin ?, 'x'", std::vector<Parameter>{name}), "15006 42000")
        << name;
    EXPECT_EQ(ErrorOf(*connection, "exec sp_grantlogin ?", std::vector<Parameter>{"M\\" + name + "'"}),
              "15006 42000")
        << name;
    EXPECT_EQ(ErrorOf(*connection, "exec sp_adduser 'rui', ?", std::vector<Parameter>{name + "'"}),
              "15006 42000")
        << name;
  }
  EXPECT_EQ(ErrorOf(*connection, "sp_addlogin ?, 'x'", std::vector<Parameter>{std::string(128, 'n')}), "ok");
  EXPECT_EQ(Rows(*connection, "select count(*) from syslogins"), "6");
}

TEST_F(EmbeddedLogins, PasswordsOfAnyFormAreKeptAndChanged) {
  for (const std::string& password : {std::string("Açúcar 100%"), std::string("';--"), std::string("a\0b", 3),
                                      std::string(128, '\xC3'), std::string("\"x\"[y]"), std::string()}) {
    connection->Execute("exec sp_password NULL, ?, 'ana'", {std::string_view(password)});
    EXPECT_EQ(Opening("ana", password, "BASE"), "open") << password;
    EXPECT_EQ(Opening("ana", password + "x", "BASE"), "18456") << password;
  }
  const auto ana = OpenAs("ana", "", "BASE");
  ExpectErrors(*ana, {{"sp_password 'errada' , 'nova'", "15211 42000"},
                      {"sp_password NULL , 'nova'", "15247 42000"},
                      {"sp_password '' , 'nova' , 'sa'", "15247 42000"},
                      {"sp_password NULL , 'nova' , 'naoha'", "15247 42000"},
                      {"sp_password '' , 'nova'", "ok"},
                      {"sp_password 'nova' , 'outra' , 'ANA'", "ok"}});
  EXPECT_EQ(Opening("ana", "", "BASE"), "18456");
  EXPECT_EQ(Opening("ana", "nova", "BASE"), "18456");
  EXPECT_EQ(Opening("ana", "outra", "BASE"), "open");
  EXPECT_EQ(ErrorOf(*connection, "Alter Login [ana] With Password='z' Old_Password='outra'"), "ok");
  EXPECT_EQ(Opening("ana", "z", "BASE"), "open");
}

TEST_F(EmbeddedLogins, AccountsOfTheSystemEnterWhenTheOwnerOrAdded) {
  const auto own =
      Connect(settings, "Integrated Security=SSPI;Initial Catalog=BASE;Data Source=(LOCALDB)\\TESTE", "", 5);
  const std::string name = Rows(*own, "Select SUser_SName() as LoginName");
  EXPECT_EQ(Columns(*own, "xp_logininfo [" + name + "]",
                    {"account name", "type", "privilege", "mapped login name", "permission path"}),
            name + "|user|admin|" + name + "|NULL");
  EXPECT_EQ(Rows(*own, "create database DELE use DELE create table D (a int) select user_name()"), "dbo");
  EXPECT_EQ(ErrorOf(*own, "Create Login [OUTRA\\zeca] From Windows"), "ok");
  EXPECT_EQ(ErrorOf(*own, "sp_grantlogin 'OUTRA\\zeca'"), "15025 42000");
  EXPECT_EQ(Opening("OUTRA\\zeca", "", "master"), "18456");
  EXPECT_EQ(Rows(*own,
                 "select loginname, isntname , isntgroup, hasaccess, sysadmin from master.dbo.syslogins "
                 "Where (isntgroup=1 or isntname=1) and loginname<>suser_sname() order by loginname"),
            "BUILTIN\\Administrators|1|1|1|1/OUTRA\\zeca|1|0|1|0");
  EXPECT_EQ(Rows(*own, "select isntname,isntgroup,sysadmin from syslogins where name=suser_sname()"),
            "1|0|1");
  EXPECT_EQ(ErrorOf(*own, "sp_revokelogin 'OUTRA\\zeca'"), "ok");
}

TEST_F(EmbeddedLogins, TwoProcessesMakeOneLogin) {
  connection.reset();
  EXPECT_EQ(MadeByRacers(3, "master",
                         {"sp_addlogin 'p0','x'", "sp_addlogin 'p1','x'", "sp_addlogin 'p2','x'",
                          "sp_addlogin 'p3','x'"}),
            4);
  EXPECT_EQ(Rows(*Open("master"), "select count(*) from syslogins where name like 'p%'"), "4");
}

}  // namespace
}  // namespace korvel::data
