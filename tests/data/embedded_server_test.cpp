#include <chrono>

#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

class EmbeddedServer : public EmbeddedServerTest {
 protected:
  /// What opening gives: "open", or the error as "native number".
  std::string Opening(std::string_view server, std::string_view login, std::string_view password,
                      std::string_view database) {
    try {
      OpenAs(login, password, database, server);
    } catch (const Error& error) {
      return std::to_string(error.Native()) + " " +
             std::to_string(static_cast<std::uint32_t>(error.Kind()) & 0xFFF);
    }
    return "open";
  }
};

TEST_F(EmbeddedServer, LetsInWhomItKnows) {
  EXPECT_EQ(Opening("teste", "sa", "", "base"), "open");
  EXPECT_EQ(Opening("TESTE", "Sa", "errada", "BASE"), "18456 3661");
  EXPECT_EQ(Opening("TESTE", "sa", "", "Nada"), "4060 5");
  EXPECT_EQ(Opening("OUTRO", "sa", "", "BASE"), "17 5");
  EXPECT_EQ(Opening("OUTRO", "sa", "x", "master"), "17 5");
  EXPECT_FALSE(std::filesystem::exists(folder / "OUTRO"));
  EXPECT_EQ(Opening("OUTRO", "sa", "", "master"), "open");
  const auto own =
      Connect(settings, "Integrated Security=SSPI;Initial Catalog=BASE;Data Source=(LOCALDB)\\TESTE", "", 5);
  EXPECT_EQ(Rows(*own, "select is_srvrolemember('sysadmin') where SUser_SName() like '%\\%'"), "1");
}

TEST_F(EmbeddedServer, RefusesNamesThatCouldLeaveTheFolder) {
  for (const std::string_view name : {"..", ".", "a/b", "a\\b", "../x", "a.b", " ", "x\n", "", "a\tb"}) {
    EXPECT_NE(Opening(name, "sa", "", "master"), "open") << name;
  }
  for (const std::string name : {"..", "a/b", "../x", "a.b", " x", "x\n", "a\\b"}) {
    EXPECT_EQ(ErrorOf(*connection, "create database [" + name + "]"), "1038 42000") << name;
  }
  EXPECT_EQ(Rows(*connection, "select name from sysdatabases"), "master/BASE");
}

TEST_F(EmbeddedServer, DropsADatabaseThatNobodyUses) {
  connection->Execute("use master create database Nova");
  const auto user = Open("nova");
  EXPECT_EQ(ErrorOf(*connection, "drop database Nova"), "3702 42000");
  EXPECT_EQ(Rows(*user, "select db_name()"), "Nova");
  user->Close();
  EXPECT_FALSE(user->IsOpen());
  EXPECT_EQ(ErrorOf(*connection, "drop database NOVA"), "ok");
  EXPECT_EQ(ErrorOf(*connection, "use Nova"), "911 42000");
  EXPECT_FALSE(std::filesystem::exists(folder / "TESTE/data/NOVA.mdf"));
  EXPECT_EQ(ErrorOf(*connection, "create database Nova use Nova create table T (a int)"), "ok");
}

TEST_F(EmbeddedServer, WritersWaitAndReadersDoNot) {
  connection->Execute("create table T (a int) insert T values (1)");
  Transaction transaction(*connection);
  connection->Execute("update T set a=2");
  const auto other = Open("BASE", 1);
  EXPECT_EQ(Rows(*other, "select a from T"), "1");
  try {
    other->Execute("update T set a=3");
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Kind(), Failure::Timeout);
    EXPECT_EQ(error.SqlState(), "HYT00");
  }
  transaction.Commit();
  EXPECT_EQ(other->Execute("update T set a=a+1"), 1);
  EXPECT_EQ(Rows(*connection, "select a from T"), "3");
}

TEST_F(EmbeddedServer, AStatementEndsAtItsTimeLimit) {
  const auto hasty = Open("BASE", 1);
  hasty->Execute("create table T (a int) insert T values (1),(2),(3),(4),(5),(6),(7),(8),(9),(10)");
  const auto start = std::chrono::steady_clock::now();
  try {
    hasty->Execute("select count(*) from T a, T b, T c, T d, T e, T f, T g, T h, T i, T j");
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Kind(), Failure::Timeout);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
  EXPECT_EQ(Rows(*hasty, "select count(*) from T"), "10");
}

TEST_F(EmbeddedServer, ATransactionSpansTheDatabasesItUses) {
  connection->Execute(
      "use master create database Dois use Dois create table D (a int) use BASE create table B (a int)");
  {
    Transaction transaction(*connection);
    connection->Execute("insert B values (1) use Dois insert D values (1) use BASE");
  }
  EXPECT_EQ(Rows(*connection, "select count(*) from B use Dois select count(*) from D"), "0 // 0");
  connection->Execute("use BASE");
  Transaction transaction(*connection);
  connection->Execute("insert B values (1) use Dois insert D values (1)");
  transaction.Commit();
  EXPECT_EQ(Rows(*connection, "select count(*) from D use BASE select count(*) from B"), "1 // 1");
}

TEST_F(EmbeddedServer, SaysWhichDatabaseIsDamaged) {
  connection->Execute("use master");
  connection->Execute("create table T (a int)");
  const std::filesystem::path file = folder / "TESTE/data/BASE.mdf";
  const std::string sound = test::ReadFile(file);
  for (const std::string& bytes :
       {std::string(9000, 'x'), std::string(), sound.substr(0, 100),
        sound.substr(0, sound.size() / 2) + std::string(sound.size() / 2, '\xAA')}) {
    test::WriteFile(file, bytes);
    try {
      const auto opened = Open("BASE");
      Rows(*opened, "select * from sysobjects");
      ADD_FAILURE() << bytes.size();
    } catch (const Error& error) {
      EXPECT_EQ(error.Native(), 824) << bytes.size() << error.what();
      EXPECT_NE(std::string(error.what()).find("BASE"), std::string::npos) << error.what();
    }
  }
  EXPECT_EQ(ErrorOf(*connection, "drop database BASE"), "ok");
  test::WriteFile(folder / "TESTE/data/MASTER.mdf", std::string(5000, 'x'));
  EXPECT_EQ(Opening("TESTE", "sa", "", "master"), "824 5");
}

TEST_F(EmbeddedServer, AKillWhileDatabasesAreMadeLeavesWholeOnesOnly) {
  connection.reset();
  for (int i = 0; i < 12; ++i) {
    RunAndKill(
        [this] {
          const auto mine = Open("master");
          for (int n = 0; n < 100; ++n)
            mine->Execute("create database K" + std::to_string(n) + " drop database K0");
        },
        std::chrono::microseconds(4000 + 3500 * i));
    const auto master = Open("master");
    Recordset rows = master->Query("select name from sysdatabases");
    std::vector<std::string> names;
    for (; !rows.Eof(); rows.MoveNext()) names.emplace_back(rows.Text("name"));
    for (const std::string& name : names)
      EXPECT_EQ(Rows(*Open(name), "select count(*) from sysobjects"), "0") << name;
  }
  // A leftover of a killed creation does not stand in the way.
  test::WriteFile(folder / "TESTE/data/RESTO.mdf", "lixo");
  EXPECT_EQ(ErrorOf(*Open("master"), "create database Resto use Resto create table T (a int)"), "ok");
}

TEST_F(EmbeddedServer, AKillInsideATransactionLeavesTheEarlierState) {
  connection->Execute("create table T (a int, v varchar(200)) insert T values (1,'antes')");
  connection.reset();
  for (int i = 0; i < 4; ++i) {
    RunAndKill(
        [this] {
          const auto mine = Open();
          Transaction transaction(*mine);
          mine->Execute("delete from T");
          const std::vector<std::string_view> columns = {"a", "v"};
          const auto batch = mine->OpenBatch("T", columns);
          const std::string text(200, 'x');
          while (true) batch->Add(std::vector<Parameter>{1, text});
        },
        std::chrono::milliseconds(60 + 120 * i));
    EXPECT_EQ(Rows(*Open(), "select a,v from T"), "1|antes");
  }
}

TEST_F(EmbeddedServer, TwoProcessesMakeOneDatabase) {
  connection.reset();
  EXPECT_EQ(MadeByRacers(4, "master",
                         {"create database P1", "create database P2", "create database P3",
                          "create database P4", "create database P5"}),
            5);
  EXPECT_EQ(Rows(*Open("master"), "select count(*) from sysdatabases"), "7");
}

}  // namespace
}  // namespace korvel::data
