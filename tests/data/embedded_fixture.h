#pragma once

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
/// Runs a script whose batches stand apart by lines that hold GO.
void RunScript(Connection& connection, const std::string& script);

struct QueryCase {
  std::string_view sql;
  std::string_view rows;
};
void ExpectRows(Connection& connection, const std::vector<QueryCase>& cases);
void ExpectErrors(Connection& connection, const std::vector<QueryCase>& cases);

}  // namespace korvel::data
