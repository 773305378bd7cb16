#include <gtest/gtest.h>

#include <chrono>

#include "contract/contract.h"
#include "data/odbc/open.h"
#include "support/tds/tds_server.h"
#include "support/temp_folder.h"

namespace korvel::test {
namespace {

using data::Connection;
using data::Failure;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// The ODBC driver with FreeTDS against a server that fails in every way that a server can.
class ServerFaults : public testing::Test {
 protected:
  ServerFaults() {
    Open("master")->Execute("create database Base");
    const auto db = Open();
    db->Execute("create table t (n int primary key, s varchar(200))");
    const std::string_view columns[] = {"n", "s"};
    const auto batch = db->OpenBatch("t", columns);
    for (int n = 0; n < kRows; ++n) batch->Add(std::vector<data::Parameter>{n, std::string_view(kText)});
    batch->Finish();
  }

  std::unique_ptr<Connection> Open(std::string_view database = "Base", int timeoutSeconds = 60,
                                   std::string_view login = "sa", std::string_view password = "") {
    return data::OpenOdbc("FreeTDS", {server.Address(), std::string(database), std::string(login), false, {}},
                          password, timeoutSeconds);
  }
  /// Reads the whole table; the rows that arrived.
  static int ReadAll(Connection& db) {
    int n = 0;
    for (auto rows = db.Query("select * from t order by n"); !rows.Eof(); rows.MoveNext(), ++n) {
      EXPECT_EQ(rows.Integer("n"), n);
      EXPECT_EQ(rows.Text("s"), kText);
    }
    return n;
  }
  static void ExpectDead(Connection& db) {
    EXPECT_FALSE(db.IsOpen());
    ExpectFailure([&] { db.Execute("select 1"); }, Failure::NoServer);
  }

  static constexpr int kRows = 4000;
  static inline const std::string kText = std::string(150, 'x');
  TempFolder folder;
  tds::TdsServer server{folder.Path(), "FALHAS"};
};

TEST_F(ServerFaults, LoginsAreRefusedForTheirOwnReasons) {
  const struct {
    const char* what;
    const char* database;
    const char* login;
    const char* password;
    Failure failure;
    int native;
  } cases[] = {{"wrong password", "Base", "sa", "errada", Failure::WrongLogin, 18456},
               {"braces in a password", "Base", "sa", "}a;b{=", Failure::WrongLogin, 18456},
               {"unknown login", "Base", "ninguem", "", Failure::WrongLogin, 18456},
               {"unknown database", "NaoHa", "sa", "", Failure::NoServer, 4060}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    ExpectFailure([&] { Open(each.database, 60, each.login, each.password); }, each.failure, each.native);
  }
  server.Switches().refuseLogins = true;
  ExpectFailure([&] { Open(); }, Failure::WrongLogin);
}

TEST_F(ServerFaults, AServerThatStopsLeavesDeadConnections) {
  const auto idle = Open();
  const auto writing = Open();
  writing->BeginTrans();
  writing->Execute("delete from t");
  server.Stop();
  for (Connection* db : {idle.get(), writing.get()}) {
    ExpectFailure([&] { db->Execute("select 1"); }, Failure::NoServer);
    ExpectDead(*db);
  }
  EXPECT_TRUE(ErrorOf([&] { writing->CommitTrans(); })) << "a lost commit must not look like one";
  const auto start = std::chrono::steady_clock::now();
  ExpectFailure([&] { Open(); }, Failure::NoServer);
  EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(8)) << "a closed port is known at once";
}

TEST_F(ServerFaults, AKilledSessionRollsBackAndIsSeen) {
  const auto db = Open();
  db->BeginTrans();
  db->Execute("delete from t");
  server.CutConnections();
  EXPECT_TRUE(ErrorOf([&] { db->Execute("delete from t"); }));
  ExpectDead(*db);
  EXPECT_EQ(ReadAll(*Open()), kRows) << "nothing was kept, and new clients are served";
}

TEST_F(ServerFaults, AKillStatementEndsAnotherSession) {
  const auto db = Open();
  const std::int64_t spid = db->Query("select @@spid as n").Integer("n");
  db->BeginTrans();
  db->Execute("delete from t where n=0");
  const auto administrator = Open("master");
  administrator->Execute("kill " + std::to_string(spid));
  EXPECT_TRUE(ErrorOf([&] { db->Execute("delete from t where n=1"); }));
  ExpectDead(*db);
  EXPECT_EQ(ReadAll(*Open()), kRows) << "what the killed one had done is undone";
}

TEST_F(ServerFaults, AnAnswerCutInTheMiddleIsNeverAWholeOne) {
  const auto expectCut = [this](std::atomic<std::int64_t>& place, std::int64_t at) {
    SCOPED_TRACE(at);
    const auto db = Open();
    place = at;
    ExpectFailure([&] { ReadAll(*db); }, Failure::NoServer);
    place = -1;
    ExpectDead(*db);
  };
  for (const int row : {0, 1, 999, 1000, kRows - 1}) expectCut(server.Switches().cutInRow, row);
  for (const int bytes : {0, 1, 7, 8, 9, 40, 4095, 4096, 4097, 60'000})
    expectCut(server.Switches().cutAfterBytes, bytes);
  EXPECT_EQ(ReadAll(*Open()), kRows);
}

TEST_F(ServerFaults, AnAnswerTooLateIsATimeout) {
  const auto db = Open("Base", 1);
  server.Switches().answerDelay = 20'000;
  const auto start = std::chrono::steady_clock::now();
  ExpectFailure([&] { db->Execute("update t set s='y'"); }, Failure::Timeout);
  EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(6));
  server.Switches().answerDelay = 0;
  EXPECT_EQ(ReadAll(*Open()), kRows) << "what came too late has not run";
  if (db->IsOpen()) {
    EXPECT_EQ(ReadAll(*db), kRows) << "a connection that stays open works";
  }
}

TEST_F(ServerFaults, ALoginWithoutAnAnswerEndsInTime) {
  server.Switches().answerDelay = 20'000;
  const auto start = std::chrono::steady_clock::now();
  ExpectFailure([&] { Open("Base", 1); }, Failure::NoServer);
  EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(6));
  server.Switches().answerDelay = 0;
  EXPECT_EQ(Open()->Database(), "Base");
}

TEST_F(ServerFaults, ASlowReaderMayGiveUpAtAnyRow) {
  const auto db = Open();
  for (const int wanted : {0, 1, 1500}) {
    SCOPED_TRACE(wanted);
    {
      auto rows = db->Query("select * from t order by n");
      for (int n = 0; n < wanted; ++n) rows.MoveNext();
    }
    EXPECT_EQ(db->Query("select count(*) as n from t").Integer("n"), kRows);
  }
}

TEST_F(ServerFaults, ClientsThatGoAreForgotten) {
  for (int i = 0; i < 3; ++i) {
    const auto db = Open();
    auto rows = db->Query("select * from t");
    db->Close();
  }
  const auto end = std::chrono::steady_clock::now() + seconds(10);
  while (server.Connections() > 0 && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(milliseconds(5));
  }
  EXPECT_EQ(server.Connections(), 0U);
}

}  // namespace
}  // namespace korvel::test
