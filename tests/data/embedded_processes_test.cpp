#include <atomic>
#include <chrono>
#include <thread>

#include <fmt/format.h>

#include "data/embedded_fixture.h"
#include "support/in_process.h"

namespace korvel::data {
namespace {

using Clock = std::chrono::steady_clock;

class EmbeddedProcesses : public EmbeddedServerTest {
 protected:
  /// A process of its own that has done its work and waits to be killed.
  struct Other : test::InProcess {
    explicit Other(const std::function<void()>& work)
        : InProcess([&](const std::function<void()>& ready) {
            work();
            ready();
            while (true) pause();
            return 0;
          }) {
      EXPECT_TRUE(WaitUntilReady());
    }
  };

  /// The spid of another connection.
  static std::string Spid(Connection& of) { return Rows(of, "select @@spid"); }

  std::string Count(std::string_view condition) {
    return Rows(*master, "select count(*) from sysprocesses where " + std::string(condition));
  }

  static void ExpectDead(Connection& dead) {
    EXPECT_FALSE(dead.IsOpen());
    try {
      dead.Execute("select 1");
      ADD_FAILURE();
    } catch (const Error& error) {
      EXPECT_EQ(error.Kind(), Failure::NoServer);
      EXPECT_EQ(error.Native(), 596);
      EXPECT_EQ(error.SqlState(), "08S01");
    }
  }

  std::unique_ptr<Connection> master = Open("master");
};

TEST_F(EmbeddedProcesses, AreListedWithWhatTheyAre) {
  connection->Execute("exec sp_addlogin 'ana','x' exec sp_adduser 'ana','ana'");
  const auto ana = Connect(
      settings, "Application Name=Ensaio;User ID=ana;Initial Catalog=BASE;Data Source=(LOCALDB)\\TESTE", "x",
      5);
  EXPECT_EQ(Rows(*master,
                 "Select sysdatabases.name, loginame, program_name, sysprocesses.status, open_tran, "
                 "nt_username from SysProcesses Inner Join sysdatabases on sysdatabases.dbid = "
                 "sysprocesses.dbid order by loginame desc, sysdatabases.name"),
            "BASE|sa|Korvel|sleeping|0|/master|sa|Korvel|runnable|0|/BASE|ana|Ensaio|sleeping|0|");
  EXPECT_EQ(Count("net_address<>' ' and upper(loginame)='ANA' and hostname=host_name()"), "1");
  EXPECT_EQ(Rows(*ana, "select app_name(), user_name()"), "Ensaio|ana");
  EXPECT_EQ(Count("kpid=" + std::to_string(getpid())), "3");
  ana->Execute("use master");
  ana->BeginTrans();
  EXPECT_EQ(Rows(*master, "select dbid, open_tran from sysprocesses where loginame='ana'"), "1|1");
  ana->Close();
  EXPECT_EQ(Count("loginame='ana'"), "0");
  EXPECT_EQ(Rows(*master, "sp_who 'ana'"), "");
}

TEST_F(EmbeddedProcesses, TheirNumbersAreUsedAgainAndACrashFreesThem) {
  const std::string own = Spid(*master);
  connection.reset();
  {
    const Other other([this] {
      const auto mine = Open();
      mine->Execute("create table T (a int)");
      mine->BeginTrans();
      mine->Execute("insert T values (1)");
      new std::shared_ptr<Connection>(Open());  // stays open until the process dies
      new std::shared_ptr<Connection>(std::shared_ptr<Connection>(Open("master")));
    });
    EXPECT_EQ(Count("kpid=" + std::to_string(other.Id())), "2");
    EXPECT_EQ(ErrorOf(*master, "drop database BASE"), "3702 42000");
  }
  EXPECT_EQ(Count("spid<>" + own), "0");
  const auto next = Open();
  EXPECT_EQ(Spid(*next), own == "51" ? "52" : "51");
  next->Close();
  EXPECT_EQ(ErrorOf(*master, "drop database BASE"), "ok");
}

TEST_F(EmbeddedProcesses, SeeTablesWholeWhileAnotherMakesThem) {
  constexpr int kTables = 60;
  std::atomic<bool> made = false;
  std::jthread maker([&, other = Open()] {
    for (int i = 0; i < kTables; ++i)
      other->Execute(fmt::format("create table T{} (a int, b int not null primary key)", i));
    made = true;
  });
  while (!made) EXPECT_NO_THROW(Rows(*connection, "select count(*) from sysobjects where xtype='U'"));
  maker.join();
  EXPECT_EQ(Rows(*connection, "select count(*) from sysobjects where xtype='U'"), std::to_string(kTables));
}

TEST_F(EmbeddedProcesses, ALockIsATableChangedInAnOpenTransaction) {
  const auto locks = [this] {
    std::string names;
    for (Recordset rows = master->Query("sp_lock"); !rows.Eof(); rows.MoveNext()) {
      const auto id = rows.Text("OBJID");
      if (id != "0" && rows.Text("Mode") == "X")
        names += Rows(*Open(), "select a=isnull(object_name(" + std::string(id) + "),'' )") + " ";
    }
    return names;
  };
  connection->Execute("create table _Rui ( XXX nvarchar (10) NULL )");
  connection->Execute("insert into _Rui (xxx) values ('xxx')");
  EXPECT_EQ(locks(), "");
  connection->Execute("begin transaction");
  connection->Execute("update _Rui  set xxx='xxx'");
  EXPECT_EQ(locks(), "_Rui ");
  connection->Execute("commit transaction");
  EXPECT_EQ(locks(), "");
  connection->Execute("begin transaction update _Rui  set xxx='xxx'");
  EXPECT_EQ(locks(), "_Rui ");
  connection.reset();
  EXPECT_EQ(locks(), "");
  {
    const Other holder([this] {
      auto* mine = new std::unique_ptr<Connection>(Open());
      (*mine)->Execute("begin tran update _Rui set xxx='y'");
    });
    EXPECT_EQ(locks(), "_Rui ");
  }
  EXPECT_EQ(locks(), "");
}

TEST_F(EmbeddedProcesses, AKilledOneIsGoneAtOnceAndItsTransactionUndone) {
  connection->Execute("create table T (a int) insert T values (1)");
  const auto reader = Open();
  ExpectErrors(*master, {{"kill 9999", "6106 42000"}, {"kill 50", "6106 42000"}, {"kill -1", "6106 42000"}});
  EXPECT_EQ(ErrorOf(*master, "Kill " + Spid(*master)), "6104 42000");
  const std::string spid = Spid(*connection);
  connection->BeginTrans();
  connection->Execute("update T set a=2");
  EXPECT_EQ(ErrorOf(*master, "Kill " + spid), "ok");
  EXPECT_EQ(Count("spid=" + spid), "0");
  EXPECT_EQ(ErrorOf(*master, "Kill " + spid), "6106 42000");
  // Nobody calls the idle one, and its locks are gone all the same.
  EXPECT_EQ(reader->Execute("update T set a=a+10"), 1);
  ExpectDead(*connection);
  ExpectDead(*connection);
  EXPECT_EQ(Rows(*reader, "select a from T"), "11");
}

TEST_F(EmbeddedProcesses, ARunningStatementEndsWhenItIsKilled) {
  connection->Execute("create table T (a int) insert T values (1),(2),(3),(4),(5),(6),(7),(8),(9),(10)");
  const auto victim = Open("BASE", 60);
  const std::string spid = Spid(*victim);
  std::thread killer([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    master->Execute("Kill " + spid);
  });
  const auto start = Clock::now();
  EXPECT_EQ(ErrorOf(*victim,
                    "begin tran insert T values (11) "
                    "select count(*) from T a, T b, T c, T d, T e, T f, T g, T h, T i, T j"),
            "596 08S01");
  killer.join();
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(10));
  ExpectDead(*victim);
  EXPECT_EQ(Rows(*connection, "select count(*) from T"), "10");
  EXPECT_EQ(connection->Execute("delete from T where a=1"), 1);
}

TEST_F(EmbeddedProcesses, OneThatWaitsForALockEndsWhenItIsKilled) {
  connection->Execute("create table T (a int) insert T values (1)");
  const auto victim = Open("BASE", 60);
  const std::string spid = Spid(*victim);
  connection->BeginTrans();
  connection->Execute("update T set a=2");
  std::thread killer([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    master->Execute("Kill " + spid);
  });
  const auto start = Clock::now();
  EXPECT_EQ(ErrorOf(*victim, "update T set a=3"), "596 08S01");
  killer.join();
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(10));
  connection->CommitTrans();
  EXPECT_EQ(Rows(*connection, "select a from T"), "2");
}

TEST_F(EmbeddedProcesses, AKilledReaderAndAKilledBatchStop) {
  connection->Execute("create table T (a int) insert T values (1),(2),(3)");
  const auto reader = Open();
  const std::string readerSpid = Spid(*reader);
  Recordset rows = reader->Query("select a from T");
  const auto writer = Open();
  const std::string writerSpid = Spid(*writer);
  const std::vector<std::string_view> columns{"a"};
  const auto batch = writer->OpenBatch("T", columns);
  batch->Add(std::vector<Parameter>{4});
  master->Execute("Kill " + readerSpid + " Kill " + writerSpid);
  EXPECT_THROW(rows.MoveNext(), Error);
  EXPECT_THROW(batch->Add(std::vector<Parameter>{5}), Error);
  EXPECT_FALSE(reader->IsOpen());
  EXPECT_FALSE(writer->IsOpen());
}

TEST_F(EmbeddedProcesses, ManyAtOnceHaveANumberEach) {
  std::vector<std::unique_ptr<Other>> others;
  for (int i = 0; i < 4; ++i) {
    others.push_back(std::make_unique<Other>([this] {
      for (int n = 0; n < 5; ++n) new std::unique_ptr<Connection>(Open("master", 20));
      for (int n = 0; n < 40; ++n) Open(n % 2 == 0 ? "BASE" : "master", 20);
    }));
  }
  EXPECT_EQ(Rows(*master, "select count(*), count(distinct spid) from sysprocesses"), "22|22");
  others.clear();
  EXPECT_EQ(Rows(*master, "select count(*) from sysprocesses"), "2");
}

TEST_F(EmbeddedProcesses, DatabasesComeAndGoWithoutMeetingEachOther) {
  connection.reset();
  const auto work = [this] {
    const auto mine = Open("master", 20);
    for (int n = 0; n < 12; ++n) {
      const std::string made = ErrorOf(*mine, "create database D");
      const std::string used = ErrorOf(*mine, "use D exec sp_helpuser use master");
      const std::string dropped = ErrorOf(*mine, "drop database D");
      if (used != "ok") mine->Execute("use master");
      const bool sound = (made == "ok" || made == "1801 42000") && (used == "ok" || used == "911 42000") &&
                         (dropped == "ok" || dropped == "3702 42000" || dropped == "3701 42S02");
      if (!sound) _exit(1);
    }
  };
  std::vector<pid_t> children;
  for (int i = 0; i < 3; ++i) children.push_back(Start(work));
  for (const pid_t child : children) EXPECT_EQ(Wait(child), 0);
  ErrorOf(*master, "drop database D");
  EXPECT_EQ(ErrorOf(*master, "create database D drop database D"), "ok");
}

TEST_F(EmbeddedProcesses, TheVersionIsWhatTheSettingsSay) {
  settings.embeddedVersion = "7.00.1063";
  const auto old = Open("master");
  EXPECT_EQ(Rows(*old, "xp_msver 'productversion' "), "2|ProductVersion|NULL|7.00.1063");
  EXPECT_NE(Rows(*old, "select charindex('7.00.1063', @@version)"), "0");
  EXPECT_EQ(Rows(*master, "xp_msver 'productversion' "), "2|ProductVersion|NULL|9.00.5000.00");
}

}  // namespace
}  // namespace korvel::data
