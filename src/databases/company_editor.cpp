#include "databases/company_editor.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "databases/attempts.h"
#include "databases/logins.h"
#include "databases/server_states.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

using toolkit::Icon;

constexpr std::array<std::string_view, 2> kYesNo{"Sim", "Não"};
constexpr std::string_view kServerAdministrator = "sa";

bool Confirmed(const session::Context& context, std::string_view question) {
  return context.dialogs.Ask(question, kYesNo) == 0;
}

/// Those that see all companies are ticked.
std::vector<CompanyUser> AllUsers(data::Connection& config) {
  std::vector<CompanyUser> users;
  auto rows = config.Query("Select LoginName, AllDatabases from UserManagement Order By LoginName");
  for (; !rows.Eof(); rows.MoveNext())
    users.push_back({std::string(rows.Text("LoginName")), rows.Integer("AllDatabases") == 1});
  return users;
}

std::vector<std::string> Admitted(data::Connection& config, std::string_view database) {
  std::vector<std::string> logins;
  auto rows =
      config.Query("Select LoginName from UserDatabases Where Db_Name =? Order By LoginName", {database});
  for (; !rows.Eof(); rows.MoveNext()) logins.emplace_back(rows.Text("LoginName"));
  return logins;
}

bool Holds(const std::vector<std::string>& logins, std::string_view login) {
  return std::ranges::any_of(logins,
                             [&](const std::string& held) { return toolkit::SameIgnoringCase(held, login); });
}

bool SeesAllDatabases(data::Connection& config, std::string_view login) {
  const auto row = config.Query("Select AllDatabases from UserManagement Where LoginName=?", {login});
  return !row.Eof() && row.Integer("AllDatabases") == 1;
}

/// The server lets a Windows account in by itself, its own administrator has the run of it.
bool NeedsDatabaseUser(data::Connection& config, std::string_view login) {
  if (toolkit::SameIgnoringCase(login, kServerAdministrator)) return false;
  const auto row = config.Query(
      "Select (IsNtName + IsNtGroup) as WindowsUser from master..syslogins where name = ?", {login});
  return row.Eof() || row.Integer("WindowsUser") == 0;
}

/// A code that is refused is corrected where it was typed.
std::string TypedCode(const session::Context& context, std::string_view typed) {
  std::string code = CheckedCode(context, typed);
  if (code.empty()) context.dialogs.Focus("txtCodigo");
  return code;
}

/// What follows a member that reports by the error outputs.
bool Shown(const session::Context& context, bool done) {
  if (!done) session::ShowConnectionError(context);
  return done;
}

bool LetIn(const session::Context& context, data::Connection& config, const std::string& login,
           const std::string& database) {
  if (!SeesAllDatabases(config, login) && !Holds(Admitted(config, database), login)) {
    config.Execute("Insert Into UserDatabases (LoginName, Db_Name) Values (?, ?)", {login, database});
  }
  if (!NeedsDatabaseUser(config, login)) return true;
  return Shown(context, AddOwnerToDB(context, session::kConfigDatabase, login) &&
                            AddOwnerToDB(context, database, login));
}

bool PutOut(const session::Context& context, data::Connection& config, const std::string& login,
            const std::string& code) {
  const std::string database = CompanyDatabase(code);
  config.Execute("delete from acessos where utilizador=? and empresa=?", {login, code});
  config.Execute("Delete from UserDatabases Where LoginName=? and Db_Name=?", {login, database});
  // A Windows account, or one that sees all companies, may have no user of its own here.
  if (!CheckUserInDB(context, database, login)) return true;
  return Shown(context, DropUserFromDB(context, database, login));
}

bool LetInTicked(const session::Context& context, data::Connection& config, const CompanyCard& card,
                 const std::string& code) {
  return std::ranges::all_of(card.users, [&](const CompanyUser& user) {
    return !user.ticked || LetIn(context, config, user.login, CompanyDatabase(code));
  });
}

/// Only users whose tick has changed are touched.
bool ChangeUsers(const session::Context& context, data::Connection& config, const CompanyCard& card,
                 const std::string& code) {
  const std::string database = CompanyDatabase(code);
  const auto before = Admitted(config, database);
  return std::ranges::all_of(card.users, [&](const CompanyUser& user) {
    if (user.ticked == Holds(before, user.login)) return true;
    return user.ticked ? LetIn(context, config, user.login, database)
                       : PutOut(context, config, user.login, code);
  });
}

void ChangeRow(const session::Context& context, data::Connection& config, const NewCompany& company,
               const std::string& code) {
  data::Transaction transaction(config);
  config.Execute(
      "update empresas set descricao=?,utilizador=?,acessoPrincipal=?, AcessoIndependente=?  where codigo=?",
      {company.description, context.session.gLogin, company.main, company.independent, code});
  if (company.main) config.Execute("update empresas set acessoprincipal=0 where codigo<>?", {code});
  transaction.Commit();
}

/// Opens the Config role and runs `work(config)`; what fails is shown.
template <typename Work>
bool OnConfig(const session::Context& context, Work&& work) {
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) {
    session::ShowConnectionError(context);
    return false;
  }
  return session::Reported(context, false, [&] { return work(*config); });
}

void DeleteRights(data::Connection& config, const std::string& code) {
  config.Execute("delete from acessos where empresa=?", {code});
  // Whoever creates a company of that code later says anew who may see it.
  config.Execute("Delete from UserDatabases Where Db_Name=?", {CompanyDatabase(code)});
}

}  // namespace

CompanyCard NewCompanyCard(data::Connection& config) {
  CompanyCard card;
  card.company.code = NextCompanyCode(config);
  card.users = AllUsers(config);
  return card;
}

std::optional<CompanyCard> LoadCompanyCard(data::Connection& config, std::string_view code) {
  CompanyCard card;
  {
    const auto row = config.Query("select * from empresas where codigo=?", {code});
    if (row.Eof()) return std::nullopt;
    card.company = {std::string(row.Text("Codigo")), std::string(row.Text("Descricao")),
                    row.Integer("AcessoPrincipal") == 1, row.Integer("AcessoIndependente") == 1};
  }
  card.users = AllUsers(config);
  const auto admitted = Admitted(config, CompanyDatabase(code));
  for (CompanyUser& user : card.users) user.ticked = Holds(admitted, user.login);
  return card;
}

bool CreateFromCard(const session::Context& context, const CompanyCard& card) {
  const std::string code = TypedCode(context, card.company.code);
  if (code.empty() || !Confirmed(context, "Confirma a Criação?")) return false;
  if (!CreateCompany(context, card.company)) return false;
  return OnConfig(context,
                  [&](data::Connection& config) { return LetInTicked(context, config, card, code); });
}

bool ChangeFromCard(const session::Context& context, const CompanyCard& card) {
  const std::string code = TypedCode(context, card.company.code);
  if (code.empty() || !Confirmed(context, "Confirma a Alteração?")) return false;
  return OnConfig(context, [&](data::Connection& config) {
    ChangeRow(context, config, card.company, code);
    return ChangeUsers(context, config, card, code);
  });
}

bool SwitchInstallMark(const session::Context& context) {
  constexpr int kMarked = 99;
  return OnConfig(context, [&](data::Connection& config) {
    const bool marked =
        data::ToText(session::GetFieldValue(config, "Select IsNull(SetForms,0) as SetForms From Entidade",
                                            "SetForms")) == std::to_string(kMarked);
    config.Execute("Update Entidade Set SetForms =?", {marked ? 0 : kMarked});
    context.dialogs.Message(Icon::Information, "Verificação Concluida");
    return true;
  });
}

bool DeleteCompany(const session::Context& context, std::string_view code) {
  const std::string full = CheckedCode(context, code);
  if (full.empty()) return false;
  const toolkit::ProgressScope scope(context.progress, "Eliminar a Empresa " + full, 0);
  SetInfoInSelEmpresas(context, "Eliminar a Base de Dados");
  const bool deleted = AttemptOn(context, "master", [&](data::Connection& master) {
    DeleteDatabase(master, CompanyDatabase(full), full);
  });
  if (!deleted) {
    context.dialogs.Message(Icon::Critical,
                            fmt::format("Não foi possivel Eliminar a Empresa!\n{}\n{}",
                                        context.session.gErroNumero, context.session.gErroDescricao));
    return false;
  }
  SetInfoInSelEmpresas(context, "Eliminar os Acessos");
  return OnConfig(context, [&](data::Connection& config) {
    DeleteRights(config, full);
    return true;
  });
}

}  // namespace korvel::databases
