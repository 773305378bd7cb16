#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "data/connect.h"
#include "support/temp_folder.h"

namespace korvel::data {

/// An embedded server in a folder of its own with one database, BASE, that `connection` has open.
class EmbeddedServerTest : public ::testing::Test {
 protected:
  EmbeddedServerTest();

  std::unique_ptr<Connection> Open(std::string_view database = "BASE", int timeoutSeconds = 5);
  std::unique_ptr<Connection> OpenAs(std::string_view login, std::string_view password,
                                     std::string_view database, std::string_view server = "TESTE");

  /// Runs `work` in a process of its own.
  static pid_t Start(const std::function<void()>& work);
  /// Its exit code; kBroken for one that threw or that a signal ended.
  static int Wait(pid_t child);
  static void RunAndKill(const std::function<void()>& work, std::chrono::microseconds after);
  static constexpr int kBroken = 100;

  /// Lets processes run the same statements at once, each over a connection of its own, and counts how many succeeded.
  /// No connection may be open meanwhile.
  int MadeByRacers(int processes, std::string_view database, const std::vector<std::string>& statements);

  test::TempFolder folder;
  ServerSettings settings;
  std::unique_ptr<Connection> connection;
};

/// Every row set of a batch as text: values apart by "|", rows by "/", row sets by " // ", NULL as "NULL".
std::string Rows(Connection& connection, std::string_view sql, Parameters parameters = {});
/// "native sqlstate" of the error that a batch gives, "ok" for none.
std::string ErrorOf(Connection& connection, std::string_view sql, Parameters parameters = {});
/// The pieces of a text between the marks.
std::vector<std::string> Pieces(const std::string& text, char mark = '|');
/// Runs a script whose batches stand apart by lines that hold GO.
void RunScript(Connection& connection, const std::string& script);

struct QueryCase {
  std::string_view sql;
  std::string_view rows;
};
void ExpectRows(Connection& connection, const std::vector<QueryCase>& cases);
void ExpectErrors(Connection& connection, const std::vector<QueryCase>& cases);

}  // namespace korvel::data
