#include "databases/server_states.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/company_lock.h"
#include "databases/sql_admin.h"
#include "support/in_process.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

using testing::Contains;

class ServerStates : public testing::Test {
 protected:
  ServerStates() { server.UseCompany("0001"); }

  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(ServerStates, SingleUserModeNeedsThatNobodyElseIsThere) {
  const auto master = server.Open();
  EXPECT_TRUE(TrySingleUserMode(*master, "Korvel0001"));
  {
    const auto other = server.Open("Korvel0001");
    EXPECT_FALSE(TrySingleUserMode(*master, "Korvel0001"));
  }
  EXPECT_TRUE(TrySingleUserMode(*master, "Korvel0001"));
  const auto first = server.Open("Korvel0001");
  const auto second = server.Open("Korvel0001");
}

TEST_F(ServerStates, StatementsOfEachKindOfServer) {
  const struct {
    std::string version;
    std::vector<std::string> sent;
  } cases[] = {
      {"7.00.623",
       {"sp_dboption Korvel0001,'single user',true", "sp_dboption Korvel0001,'single user',false",
        "sp_dboption 'Korvel0001','read only','true'", "sp_dboption 'Korvel0001','read only'"}},
      {"8.00.2039",
       {"Alter Database Korvel0001 Set Single_User", "Alter Database Korvel0001 Set Multi_User",
        "Alter DataBase Korvel0001 Set READ_ONLY",
        "Select DatabasePropertyex('Korvel0001','Updateability') as MRet"}},
  };
  for (const auto& c : cases) {
    test::TestServer old;
    old.servers.embeddedVersion = c.version;
    old.UseCompany("0001");
    const auto master = old.Open();
    EXPECT_TRUE(TrySingleUserMode(*master, "Korvel0001")) << c.version;
    SetReadOnly(*master, "Korvel0001", true);
    EXPECT_TRUE(CheckForReadOnly(*master, "Korvel0001")) << c.version;
    EXPECT_THROW(old.Run("Korvel0001", "create table T (N int)"), data::Error) << c.version;
    SetReadOnly(*master, "Korvel0001", false);
    EXPECT_FALSE(CheckForReadOnly(*master, "Korvel0001")) << c.version;
    EXPECT_THAT(old.statements, testing::IsSupersetOf(c.sent)) << c.version;
  }
}

TEST_F(ServerStates, HostileNamesAreRefused) {
  const auto master = server.Open();
  const std::string hostile = "Korvel0001 Set READ_ONLY; drop database Korvel0001";
  EXPECT_THROW(SetSingleUserMode(*master, hostile, true), data::Error);
  EXPECT_FALSE(TrySingleUserMode(*master, hostile));
  EXPECT_THROW(SetReadOnly(*master, hostile, true), data::Error);
  EXPECT_THROW(CheckForReadOnly(*master, hostile), data::Error);
  EXPECT_THROW(ActivaLock(*master, hostile), data::Error);
  EXPECT_THROW(SQLCheckLock(*master, hostile), data::Error);
  EXPECT_FALSE(KillAllProcessesInCurrentMachine(context, hostile));
}

TEST_F(ServerStates, CompanyIsBlockedAndFreed) {
  server.dialogs.answers = {1, 0, 0};
  EXPECT_FALSE(SwitchCompanyBlocked(context, "0001")) << "not wanted";
  EXPECT_TRUE(SwitchCompanyBlocked(context, "0001"));
  EXPECT_EQ(server.dialogs.LastText(), "Só poderá Efectuar Consultas aos Movimentos Já Efectuados!");
  EXPECT_THROW(server.Run("Korvel0001", "create table T (N int)"), data::Error);
  EXPECT_TRUE(SwitchCompanyBlocked(context, "0001"));
  server.Run("Korvel0001", "create table T (N int)");
}

TEST_F(ServerStates, CompanyInUseIsNotBlocked) {
  const auto other = server.Open("Korvel0001");
  EXPECT_FALSE(SetCompanyBlocked(context, "0001", true));
  EXPECT_EQ(server.dialogs.LastText(),
            "Não é Possível Mudar o Estado da Base de Dados:\nExistem Outros Utilizadores Ligados à Base de "
            "Dados!");
  EXPECT_FALSE(CheckForReadOnly(*server.Open(), "Korvel0001"));
  EXPECT_TRUE(SetCompanyBlocked(context, "0001", false)) << "it is free already";
}

TEST_F(ServerStates, LockIsSeenByOthersAndGoesWithItsProcess) {
  EXPECT_FALSE(SQLCheckLock(*server.Open("Korvel0001"), "fecho"));
  test::InProcess holder([&](const std::function<void()>& ready) {
    const auto own = server.Open("Korvel0001");
    ActivaLock(*own, "fecho");
    ready();
    ::pause();
    return 0;
  });
  ASSERT_TRUE(holder.WaitUntilReady());
  const auto other = server.Open("Korvel0001");
  EXPECT_TRUE(SQLCheckLock(*other, "fecho"));
  EXPECT_FALSE(SQLCheckLock(*other, "outro"));
  holder.Kill();
  EXPECT_FALSE(SQLCheckLock(*other, "fecho"));
  ActivaLock(*other, "fecho");
  DesActivaLock(*other, "fecho");
  EXPECT_FALSE(SQLCheckTable(*other, "_fecho"));
}

/// Keeps the lines of progress.
class ProgressLines final : public toolkit::Progress {
 public:
  void Begin(std::string_view, std::int64_t) override {}
  bool Show(std::int64_t, std::string_view detail) override {
    lines.emplace_back(detail);
    return true;
  }
  void End() override {}

  std::vector<std::string> lines;
};

TEST_F(ServerStates, ProcessesOfThisMachineAreEndedButOnesOwn) {
  char host[256] = {};
  ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
  server.settings.Write("MachineName", "Name", host);
  const auto company = server.Open("Korvel0001");
  const auto elsewhere = server.Open("master");
  const std::string id = std::to_string(company->Query("select @@spid").Integer(0));
  ProgressLines progress;
  EXPECT_TRUE(KillAllProcessesInCurrentMachine(
      {server.session, server.servers, server.dialogs, progress, server.settings, server.clock},
      "Korvel0001"));
  EXPECT_EQ(progress.lines,
            (std::vector<std::string>{"Kill Proc - Open Processes", "Kill Proc - Open Success",
                                      "Kill Proc - Procs To Kill", "Kill Proc - Load Proc ID= " + id,
                                      "Kill Proc - Kill Procs", "Kill Proc - Killing Proc: " + id}));
  EXPECT_THROW(company->Query("select name from sysobjects"), data::Error);
  EXPECT_NO_THROW(elsewhere->Query("select name from sysdatabases"));
  EXPECT_TRUE(TrySingleUserMode(*elsewhere, "Korvel0001"));
}

}  // namespace
}  // namespace korvel::databases
