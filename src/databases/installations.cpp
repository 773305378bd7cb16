#include "databases/installations.h"

#include "databases/sql_admin.h"
#include "toolkit/scramble.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

Installation ReadInstallation(const data::Recordset& rows) {
  const auto text = [&](std::string_view column) {
    return rows.Has(column) ? std::string(toolkit::Trim(rows.Text(column))) : std::string();
  };
  return {text("codigo"),   text("Nome"),  text("Ano"),
          text("server"),   text("uid"),   toolkit::Decrypt(rows.Text("pwd")),
          text("database"), text("tipodb")};
}

bool IsSingleFile(const Installation& installation) {
  return toolkit::SameIgnoringCase(installation.kind, "MDB");
}

}  // namespace

std::vector<Installation> Installations(data::Connection& config) {
  std::vector<Installation> all;
  if (!SQLCheckTable(config, "FirmasImo")) return all;
  auto rows = config.Query("select * from firmasImo order by server,codigo");
  for (; !rows.Eof(); rows.MoveNext()) all.push_back(ReadInstallation(rows));
  return all;
}

std::optional<Installation> FindInstallation(data::Connection& config, std::string_view code) {
  if (!SQLCheckTable(config, "FirmasImo")) return std::nullopt;
  const auto rows = config.Query("select * from firmasImo where codigo=?", {code});
  if (rows.Eof()) return std::nullopt;
  return ReadInstallation(rows);
}

std::string FindEmpresa(data::Connection& config, std::string_view code) {
  const auto found = FindInstallation(config, code);
  return found && !IsSingleFile(*found) ? found->name : std::string();
}

bool CreateConnection(const session::Context& context, session::ConnectionPtr& connection,
                      data::Connection& config, std::string_view code) {
  const auto found = FindInstallation(config, code);
  if (!found || IsSingleFile(*found)) return false;
  return session::CreateDBConnection(context, connection, found->server, found->database, found->login,
                                     found->password);
}

session::SessionRecord SessionOf(const session::SessionRecord& session, const Installation& installation) {
  session::SessionRecord other = session;
  other.gServidor = installation.server;
  other.gLogin = installation.login;
  other.gPassword = installation.password;
  other.gAutenticacaoWindows = false;
  return other;
}

}  // namespace korvel::databases
