#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/connect.h"
#include "session/context.h"
#include "support/scripted_ports.h"
#include "support/tds/tds_server.h"
#include "support/temp_folder.h"

namespace korvel::test {

/// An embedded server in a folder of its own, with a session logged in to it as `sa` with a blank password,
/// and ports that tests script. Everything goes with the object; connections opened by Open must go first.
/// With the environment variable KORVEL_TESTES_TDS set, every connection takes the road of a SQL Server instead: ODBC and
/// FreeTDS to a TDS server that hands the statements to the embedded one.
class TestServer {
 public:
  explicit TestServer(std::string_view name = "TESTE");

  /// "(LOCALDB)\NAME", or "127.0.0.1,PORT" of the TDS server.
  const std::string& Name() const { return session.gServidor; }
  /// Refers to the members below.
  session::Context Context() { return {session, servers, dialogs, progress, settings, clock}; }

  /// Throws data::Error.
  std::unique_ptr<data::Connection> Open(std::string_view database = "master");
  /// Runs a script in a database, batch after batch, apart by lines that hold GO alone. Throws data::Error.
  void Run(std::string_view database, std::string_view script);
  /// The first row set of a query: one line a row, values apart by tabs, NULL as "NULL". Throws data::Error.
  std::vector<std::string> Rows(std::string_view database, std::string_view query);
  /// The first value of a query as Rows gives it, "" when it brings no row.
  std::string One(std::string_view database, std::string_view query);
  /// Makes a database if it is not there and makes it the session's company database.
  void UseCompany(std::string_view code);

  TempFolder folder;                        // the folder of embedded servers
  std::unique_ptr<tds::TdsServer> partner;  // the TDS server, where the environment asks for it
  data::ServerSettings servers;
  session::SessionRecord session;
  ScriptedDialogs dialogs;
  SilentProgress progress;
  MemorySettings settings;
  FixedClock clock;
  std::function<void(std::string_view statement)> onStatement;  // before each, on the thread that sends it
  std::vector<std::string> statements;  // every statement sent by any connection; clear it before counting
};

}  // namespace korvel::test
