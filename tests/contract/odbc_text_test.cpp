#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

#include "contract/contract.h"
#include "data/odbc/connection_text.h"
#include "data/odbc/diagnostics.h"
#include "data/odbc/open.h"
#include "support/temp_folder.h"

namespace korvel::test {
namespace {

using data::ConnectionString;
using data::Failure;
using data::odbc::ConnectionText;
using data::odbc::Diagnostic;
using data::odbc::ServerAddress;
using data::odbc::Stage;
using data::odbc::ToError;

TEST(OdbcText, ServersAreNamedInManyWays) {
  const struct {
    const char* server;
    const char* host;
    const char* port;
  } cases[] = {{"anfitriao", "anfitriao", "1433"},      {"10.0.0.1,1500", "10.0.0.1", "1500"},
               {"anfitriao:1500", "anfitriao", "1500"}, {"PC\\SQLEXPRESS", "PC\\SQLEXPRESS", ""},
               {"PC\\SQLEXPRESS,1500", "PC", "1500"},   {".", "localhost", "1433"},
               {"(local),1500", "localhost", "1500"},   {"anfitriao:x", "anfitriao:x", "1433"},
               {"anfitriao,", "anfitriao,", "1433"}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.server);
    const ServerAddress address = ServerAddress::Parse(each.server);
    EXPECT_EQ(address.host, each.host);
    EXPECT_EQ(address.port, each.port);
  }
}

TEST(OdbcText, NoValuePassesForAKeyword) {
  const ConnectionString target{"servidor", "base;UID=x", "o}dono", false};
  EXPECT_EQ(ConnectionText("FreeTDS", target, "a;b}c={"),
            "Driver=FreeTDS;Server=servidor;Port=1433;TDS_Version=7.4;ClientCharset=UTF-8;"
            "Database={base;UID=x};APP=Korvel;UID=o}dono;PWD={a;b}c={};");
  EXPECT_EQ(ConnectionText("ODBC Driver 18", target, "a;b}c={"),
            "Driver={ODBC Driver 18};Server=servidor,1433;Database={base;UID=x};APP=Korvel;UID={o}}dono};"
            "PWD={a;b}}c={};");
  EXPECT_NE(ConnectionText("FreeTDS", target, "ç").find("PWD=\xE7;"), std::string::npos);
  for (const char* refused : {"x};APP=y", "5 €"}) {
    const auto error = ErrorOf([&] { ConnectionText("FreeTDS", target, refused); });
    ASSERT_TRUE(error) << refused;
    EXPECT_EQ(error->Kind(), Failure::WrongLogin);
    EXPECT_EQ(std::string(error->what()).find(refused), std::string::npos);
  }
  const ConnectionString trusted{"servidor,1500", "", "ignorado", true};
  EXPECT_EQ(ConnectionText("ODBC Driver 18", trusted, "ignorada"),
            "Driver={ODBC Driver 18};Server=servidor,1500;APP=Korvel;Trusted_Connection=Yes;");
}

struct Told {
  std::vector<Diagnostic> records;
  Failure failure;
  int native;
  const char* text;
};

void ExpectTold(Stage stage, const std::vector<Told>& cases) {
  for (const Told& each : cases) {
    SCOPED_TRACE(each.text);
    const data::Error error = ToError(each.records, stage);
    EXPECT_EQ(error.Kind(), each.failure);
    EXPECT_EQ(error.Native(), each.native);
    EXPECT_STREQ(error.what(), each.text);
  }
}

TEST(OdbcText, TheTellingRecordIsChosen) {
  const Diagnostic unable{"08001", 0, "Unable to connect"};
  ExpectTold(
      Stage::Connecting,
      {{{{"42000", 18456, "[FreeTDS][SQL Server]Login failed"}, unable},
        Failure::WrongLogin,
        18456,
        "Login failed"},
       {{{"28000", 18456, "Login failed"}, {"42000", 4060, "[Microsoft][ODBC][SQL Server]No database"}},
        Failure::NoServer,
        4060,
        "No database"},
       {{{"08S01", 20009, "Closed port"}, unable}, Failure::NoServer, 20009, "Closed port"},
       {{{"HYT00", 0, "Silent host"}, unable}, Failure::NoServer, 0, "Silent host"},
       {{unable, {"08004", 911, "Unknown database"}}, Failure::NoServer, 911, "Unknown database"}});
  ExpectTold(
      Stage::Running,
      {{{{"01000", 3621, "Terminated"}, {"23000", 2627, "Duplicate"}}, Failure::Integrity, 2627, "Duplicate"},
       {{{"HYT00", 0, "Timeout expired"}}, Failure::Timeout, 0, "Timeout expired"},
       {{{"42S02", 1, "State alone"}}, Failure::NoTable, 1, "State alone"},
       {{{"08S01", 20006, "Lost in the middle"}}, Failure::NoServer, 20006, "Lost in the middle"},
       {{}, Failure::NoServer, 0, "O servidor não respondeu"}});
}

/// A port of this machine where nobody listens.
int ClosedPort() {
  const int probe = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  bind(probe, reinterpret_cast<sockaddr*>(&address), size);
  getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size);
  close(probe);
  return ntohs(address.sin_port);
}

TEST(OdbcOpen, UnreachableServersFailWithinTheTimeout) {
  const std::pair<std::string, std::string> cases[] = {
      {"FreeTDS", "127.0.0.1," + std::to_string(ClosedPort())},
      {"FreeTDS", "nao-existe.invalid"},
      {"driver que não há", "127.0.0.1"},
  };
  for (const auto& [driver, server] : cases) {
    SCOPED_TRACE(driver + " " + server);
    const auto start = std::chrono::steady_clock::now();
    const auto error = ErrorOf([&] {
      data::OpenOdbc(driver, {server, "master", "sa", false}, "segredo", 5);
    });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Failure::NoServer) << error->what();
    EXPECT_THAT(error->what(), testing::Not(testing::HasSubstr("segredo")));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
  }
}

TEST(OdbcOpen, AHostilePasswordChangesNeitherDriverNorDatabase) {
  const TempFolder folder;
  const ConnectionString target{"servidor", (folder / "certa.db").string(), "sa", false};
  const auto connection = data::OpenOdbc("/usr/lib/x86_64-linux-gnu/odbc/libsqlite3odbc.so", target,
                                         "x};Driver={/nao/ha.so};Database=/nao/ha.db;y={", 5);
  connection->Execute("create table t (n int)");
  EXPECT_TRUE(std::filesystem::exists(folder / "certa.db"));
}

}  // namespace
}  // namespace korvel::test
