#include "session/entry/company_list.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

#include "data/collation.h"
#include "databases/companies.h"
#include "databases/default_hosts.h"
#include "databases/sql_admin.h"
#include "databases/version_check.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::session {
namespace {

using toolkit::Icon;

constexpr std::size_t kCodeLength = 4;

/// The company code at the end of a database's name.
std::string CodeOf(std::string_view database) {
  return std::string(database.substr(database.size() - std::min(database.size(), kCodeLength)));
}

/// Which companies a user sees: all, or those of these codes.
struct Allowed {
  bool all = false;
  std::vector<std::string> codes;
};

std::optional<Allowed> FindAllowed(data::Connection& config, const std::string& login) {
  Allowed allowed;
  {
    const auto user = config.Query("Select * from UserManagement Where LoginName=?", {login});
    if (user.Eof()) return std::nullopt;
    allowed.all = user.Integer("AllDatabases") == 1;
  }
  if (allowed.all) return allowed;
  auto rows = config.Query("Select * from UserDatabases Where LoginName=?", {login});
  for (; !rows.Eof(); rows.MoveNext()) allowed.codes.push_back(CodeOf(rows.Text("Db_Name")));
  return allowed;
}

/// " and ( ... )" with a mark for each code; a user without any gets a condition that no company meets.
std::string Filter(const Allowed& allowed) {
  if (allowed.all) return {};
  if (allowed.codes.empty()) return " and ( Empresas.Codigo='')";
  std::string conditions;
  for (std::size_t i = 0; i < allowed.codes.size(); ++i)
    conditions += fmt::format("{} Empresas.Codigo=? ", i == 0 ? "" : " or ");
  return fmt::format(" and ({})", conditions);
}

CompanyLine ReadLine(const data::Recordset& row) {
  return {.code = std::string(row.Text("Codigo")),
          .description = std::string(row.Text("Descricao")),
          .numRegisto = row.Integer("NumRegisto"),
          .main = row.Integer("AcessoPrincipal") == 1,
          .independent = row.Integer("AcessoIndependente") == 1};
}

CompanyLines ReadLines(data::Connection& config, const Allowed& allowed) {
  const std::vector<data::Parameter> codes(allowed.codes.begin(), allowed.codes.end());
  auto rows = config.Query(
      fmt::format("Select * from Empresas Where NumRegisto > 0 {} Order By Codigo", Filter(allowed)), codes);
  CompanyLines lines;
  for (; !rows.Eof(); rows.MoveNext()) lines.push_back(ReadLine(rows));
  return lines;
}

/// State and version of a company. One whose state cannot be asked for, or that does not open, stays in the list
/// without them.
void LookAt(const Context& context, data::Connection& master, CompanyLine& line) {
  const std::string database = databases::CompanyDatabase(line.code);
  try {
    line.readOnly = databases::CheckForReadOnly(master, database);
    ConnectionPtr company;
    if (OpenSessionDatabase(context, company, database))
      line.version = databases::ShownVersion(databases::DatabaseVersion(*company));
  } catch (const data::Error&) {
    line.version.clear();
  }
}

ConnectionPtr OpenMaster(const Context& context) {
  ConnectionPtr master;
  if (OpenSessionDatabase(context, master, "master")) return master;
  context.dialogs.Message(
      Icon::Critical, fmt::format("Não foi possivel abrir o MASTER!\n{}\n{}", context.session.gErroDescricao,
                                  context.session.gErroNumero));
  return nullptr;
}

/// The name under which the user's rows stand: his Windows account's, or his login.
const std::string& ManagedLogin(const SessionRecord& session) {
  return session.gAutenticacaoWindows ? session.gGrupoWindows : session.gLogin;
}

std::string HostOr(std::string_view host, std::string_view usual) {
  return std::string(toolkit::IsBlank(host) ? usual : host);
}

}  // namespace

void ReadEntity(const Context& context, data::Connection& config) {
  const auto row = config.Query("select * from Entidade");
  SessionRecord& session = context.session;
  const auto text = [&](std::string_view column) {
    return row.Eof() ? std::string() : std::string(row.Text(column));
  };
  session.gNomeEntidade = text("NomeEntidade");
  session.gFtpServer = HostOr(text("FtpServer"), databases::kDefaultFtpHost);
  session.gSmtpServer = HostOr(text("SMTPServer"), databases::kDefaultSmtpHost);
}

std::optional<CompanyLines> ListCompanies(const Context& context) {
  SessionRecord& session = context.session;
  session.gListaEmpresas.clear();
  ConnectionPtr config;
  if (!AbreConfig(context, config)) {
    ShowConnectionError(context);
    return std::nullopt;
  }
  ReadEntity(context, *config);
  const auto allowed = FindAllowed(*config, ManagedLogin(session));
  if (!allowed) {
    context.dialogs.Message(Icon::Critical, "Não Foi Possível Aceder à Informação do Utilizador!",
                            "Atenção:");
    return std::nullopt;
  }
  CompanyLines lines = ReadLines(*config, *allowed);
  const auto master = OpenMaster(context);
  if (!master) return std::nullopt;
  for (CompanyLine& line : lines) {
    session.gListaEmpresas += fmt::format("{0}:{0} - {1};", line.code, line.description);
    LookAt(context, *master, line);
  }
  return lines;
}

CompanyLines ListCompaniesOfOlderTable(const Context& context, data::Connection& config) {
  CompanyLines lines;
  {
    auto rows = config.Query("select * from empresas order by codigo");
    for (; !rows.Eof(); rows.MoveNext()) lines.push_back(ReadLine(rows));
  }
  if (context.session.gSysAdmin) return lines;
  std::unordered_set<std::string> allowed;
  auto rows = config.Query("select * from usersempresas where login=?", {context.session.gLogin});
  for (; !rows.Eof(); rows.MoveNext()) allowed.insert(data::CollationKey(rows.Text("dbname")));
  std::erase_if(lines, [&](const CompanyLine& line) {
    return !allowed.contains(data::CollationKey(databases::CompanyDatabase(line.code)));
  });
  return lines;
}

}  // namespace korvel::session
