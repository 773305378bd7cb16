#include "support/test_server.h"

#include <cstdlib>

#include "data/sql_text.h"
#include "session/connections.h"

namespace korvel::test {

namespace {

/// Takes one line, without its end, off the front of the text.
std::string_view TakeLine(std::string_view& text) {
  const auto end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::vector<std::string> Batches(std::string_view script) {
  std::vector<std::string> batches(1);
  while (!script.empty()) {
    const std::string_view line = TakeLine(script);
    if (line == "GO" || line == "go") {
      batches.emplace_back();
    } else {
      batches.back().append(line).append("\n");
    }
  }
  std::erase_if(batches,
                [](const std::string& batch) { return batch.find_first_not_of(" \t\r\n") == batch.npos; });
  return batches;
}

std::string RowLine(const data::Recordset& rows) {
  std::string line;
  for (std::size_t i = 0; i < rows.Fields().size(); ++i) {
    if (i > 0) line += '\t';
    line += rows.IsNull(i) ? std::string_view("NULL") : rows.Text(i);
  }
  return line;
}

}  // namespace

TestServer::TestServer(std::string_view name) {
  servers.embeddedFolder = folder.Path();
  servers.makesEmbedded = true;
  servers.observer = [this](std::string_view statement) {
    statements.emplace_back(statement);
    if (onStatement) onStatement(statement);
  };
  session.gServidor = "(LOCALDB)\\" + std::string(name);
  if (std::getenv("KORVEL_TESTES_TDS") != nullptr) {
    partner = std::make_unique<tds::TdsServer>(folder.Path(), std::string(name));
    session.gServidor = partner->Address();
  }
  session.gLogin = "sa";
  session.gUtilizador = "sa";
  Open("master");  // the first opening makes the server
}

std::unique_ptr<data::Connection> TestServer::Open(std::string_view database) {
  const std::string text = session::BuildConnectionString(session.gServidor, database, session.gLogin, false);
  return data::Connect(servers, text, session.gPassword, session::kTimeoutSeconds);
}

void TestServer::Run(std::string_view database, std::string_view script) {
  const auto connection = Open(database);
  for (const std::string& batch : Batches(script)) connection->Execute(batch);
}

std::vector<std::string> TestServer::Rows(std::string_view database, std::string_view query) {
  const auto connection = Open(database);
  std::vector<std::string> lines;
  for (data::Recordset rows = connection->Query(query); !rows.Eof(); rows.MoveNext())
    lines.push_back(RowLine(rows));
  return lines;
}

std::string TestServer::One(std::string_view database, std::string_view query) {
  const auto lines = Rows(database, query);
  return lines.empty() ? std::string() : lines.front().substr(0, lines.front().find('\t'));
}

void TestServer::UseCompany(std::string_view code) {
  session.gCodEmpresa = code;
  session.gBaseDados = "Korvel" + std::string(code);
  const std::string named = "select name from sysdatabases where name=" + data::Quoted(session.gBaseDados);
  if (Rows("master", named).empty()) Run("master", "create database [" + session.gBaseDados + "]");
}

}  // namespace korvel::test
