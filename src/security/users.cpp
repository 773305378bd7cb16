#include "security/users.h"

#include <fmt/format.h>

#include <array>
#include <span>

#include "data/collated_map.h"
#include "databases/logins.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::security {

namespace {

using session::Context;
using toolkit::Icon;

constexpr std::string_view kServiceAccount = "sa";

AccountKind KindOf(const data::Recordset& login) {
  if (login.Integer("IsNtGroup") == 1) return AccountKind::WindowsGroup;
  const bool windows = login.Integer("IsNtName") == 1 || login.Integer("IsNtUser") == 1;
  return windows ? AccountKind::WindowsUser : AccountKind::Sql;
}

/// Which of the known logins see all companies.
data::CollatedMap<bool> ReadAllCompanies(data::Connection& config) {
  data::CollatedMap<bool> all;
  auto rows = config.Query("Select LoginName,AllDataBases from UserManagement");
  for (; !rows.Eof(); rows.MoveNext()) all[rows.Text("LoginName")] = rows.Integer("AllDataBases") == 1;
  return all;
}

bool IsServiceAccount(std::string_view login) {
  return toolkit::SameIgnoringCase(toolkit::Trim(login), kServiceAccount);
}

bool IsInUse(const Context& context, std::string_view login) {
  return toolkit::SameIgnoringCase(toolkit::Trim(login), context.session.gLogin);
}

bool IsAdministrator(const Context& context, std::string_view refusal) {
  if (databases::ValidarLoginSysAdmin(context)) return true;
  context.dialogs.Message(Icon::Warning, refusal);
  return false;
}

/// A reason not to touch a login.
struct Refusal {
  bool applies;
  std::string_view text;
};

bool Refused(const Context& context, std::span<const Refusal> refusals, std::string_view title) {
  for (const Refusal& refusal : refusals) {
    if (!refusal.applies) continue;
    context.dialogs.Message(Icon::Warning, refusal.text, title);
    return true;
  }
  return false;
}

void DeleteRows(data::Connection& config, std::string_view login) {
  data::Transaction transaction(config);
  config.Execute("Delete from UserManagement Where LoginName=?", {login});
  config.Execute("Delete from UserDatabases Where LoginName=?", {login});
  transaction.Commit();
}

}  // namespace

std::string_view KindText(const UserLine& user) {
  constexpr std::array<std::array<std::string_view, 2>, 3> kTexts{{
      {"Ut. SQL Server - Algumas BD", "Ut. SQL Server - Todas BD"},
      {"Grupo WinNT - Algumas BD", "Grupo WinNT - Todas BD"},
      {"Ut. NT - Algumas BD", "Ut. NT - Todas BD"},
  }};
  return kTexts[static_cast<std::size_t>(user.kind)][user.allCompanies ? 1 : 0];
}

std::vector<UserLine> ListUsers(data::Connection& master, data::Connection& config) {
  const data::CollatedMap<bool> all = ReadAllCompanies(config);
  std::vector<UserLine> users;
  auto rows = master.Query(
      "Select LoginName, IsNtName, IsNtGroup, IsNtUser, sysadmin  from SysLogins Order By LoginName");
  for (; !rows.Eof(); rows.MoveNext()) {
    const bool* allCompanies = all.Find(rows.Text("LoginName"));
    users.push_back({std::string(rows.Text("LoginName")), KindOf(rows), allCompanies && *allCompanies,
                     rows.Integer("sysadmin") == 1});
  }
  return users;
}

bool MayCreateUser(const Context& context) {
  return IsAdministrator(context, "o Seu Login não lhe permite esta tarefa !");
}

bool MayChangeUser(const Context& context, std::string_view login) {
  const std::array refusals{
      Refusal{IsInUse(context, login), "Não Pode Alterar a Conta em Uso."},
      Refusal{IsServiceAccount(login), "Não Pode Alterar a Conta de Serviço do Sistema!"}};
  return IsAdministrator(context, "o Seu Login não lhe permite esta tarefa !") &&
         !Refused(context, refusals, "Atenção:");
}

bool MayDeleteUser(const Context& context, std::string_view login) {
  const std::array refusals{Refusal{IsServiceAccount(login), "Não pode eliminar esta Conta!"},
                            Refusal{IsInUse(context, login), "Não pode eliminar a conta em uso !"}};
  return IsAdministrator(context, "O seu Login não lhe permite fazer esta tarefa!") &&
         !Refused(context, refusals, {});
}

bool EliminaUtilizador(const Context& context, std::string_view login) {
  if (!MayDeleteUser(context, login)) return false;
  if (!context.dialogs.ConfirmDeletion("Confirmar Eliminação :",
                                       fmt::format("Eliminar o Utilizador {}", login))) {
    return false;
  }
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) return false;
  databases::DeleteUserFromAllDatabases(context, login);
  if (!databases::DeleteLogin(context, login)) {
    session::ShowConnectionError(context);
    return false;
  }
  DeleteRows(*config, login);
  return true;
}

}  // namespace korvel::security
