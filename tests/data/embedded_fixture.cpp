#include "data/embedded_fixture.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>
#include <thread>

namespace korvel::data {

EmbeddedServerTest::EmbeddedServerTest() {
  settings.embeddedFolder = folder.Path();
  settings.makesEmbedded = true;
  OpenAs("sa", "", "master")->Execute("create database BASE");
  connection = Open();
}

std::unique_ptr<Connection> EmbeddedServerTest::Open(std::string_view database, int timeoutSeconds) {
  return Connect(settings,
                 "User ID=SA;Initial Catalog=" + std::string(database) + ";Data Source=(LocalDB)\\teste", "",
                 timeoutSeconds);
}

std::unique_ptr<Connection> EmbeddedServerTest::OpenAs(std::string_view login, std::string_view password,
                                                       std::string_view database, std::string_view server) {
  const std::string text = "User ID=" + std::string(login) + ";Initial Catalog=" + std::string(database) +
                           ";Data Source=(LOCALDB)\\" + std::string(server);
  return Connect(settings, text, password, 5);
}

namespace {

std::string RowText(const Recordset& rows) {
  std::string text;
  for (std::size_t i = 0; i < rows.Fields().size(); ++i) {
    text += (i == 0 ? "" : "|") + (rows.IsNull(i) ? std::string("NULL") : std::string(rows.Text(i)));
  }
  return text;
}

}  // namespace

pid_t EmbeddedServerTest::Start(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child != 0) return child;
  try {
    work();
  } catch (...) {
    _exit(kBroken);
  }
  _exit(0);
}

int EmbeddedServerTest::Wait(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : kBroken;
}

void EmbeddedServerTest::RunAndKill(const std::function<void()>& work, std::chrono::microseconds after) {
  const pid_t child = Start(work);
  std::this_thread::sleep_for(after);
  kill(child, SIGKILL);
  Wait(child);
}

int EmbeddedServerTest::MadeByRacers(int processes, std::string_view database,
                                     const std::vector<std::string>& statements) {
  std::vector<pid_t> children;
  for (int i = 0; i < processes; ++i) {
    children.push_back(Start([&] {
      const auto mine = Open(database, 20);
      int made = 0;
      for (const std::string& statement : statements) made += ErrorOf(*mine, statement) == "ok" ? 1 : 0;
      _exit(made);
    }));
  }
  int total = 0;
  for (const pid_t child : children) total += Wait(child);
  return total;
}

std::string Rows(Connection& connection, std::string_view sql, Parameters parameters) {
  Recordset rows = connection.Query(sql, parameters);
  std::string text;
  bool first = true;
  do {
    if (rows.Fields().empty()) continue;
    text += first ? "" : " // ";
    first = false;
    for (bool start = true; !rows.Eof(); rows.MoveNext(), start = false)
      text += (start ? "" : "/") + RowText(rows);
  } while (rows.NextRecordset());
  return text;
}

std::string ErrorOf(Connection& connection, std::string_view sql, Parameters parameters) {
  try {
    Rows(connection, sql, parameters);
  } catch (const Error& error) {
    EXPECT_STRNE(error.what(), "") << sql;
    return std::to_string(error.Native()) + " " + error.SqlState();
  }
  return "ok";
}

std::vector<std::string> Pieces(const std::string& text, char mark) {
  std::istringstream all(text);
  std::vector<std::string> pieces;
  for (std::string piece; std::getline(all, piece, mark);) pieces.push_back(piece);
  return pieces;
}

void RunScript(Connection& connection, const std::string& script) {
  std::istringstream lines(script);
  std::string batch;
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (line != "GO") {
      batch += line + "\n";
      continue;
    }
    connection.Execute(batch);
    batch.clear();
  }
  connection.Execute(batch);
}

void ExpectRows(Connection& connection, const std::vector<QueryCase>& cases) {
  for (const QueryCase& entry : cases) {
    try {
      EXPECT_EQ(Rows(connection, entry.sql), entry.rows) << entry.sql;
    } catch (const Error& error) {
      ADD_FAILURE() << entry.sql << "\n" << error.Native() << " " << error.what();
    }
  }
}

void ExpectErrors(Connection& connection, const std::vector<QueryCase>& cases) {
  for (const QueryCase& entry : cases) EXPECT_EQ(ErrorOf(connection, entry.sql), entry.rows) << entry.sql;
}

}  // namespace korvel::data
