#include "databases/logins.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "databases/attempts.h"
#include "databases/names.h"
#include "databases/server_version.h"
#include "databases/sql_admin.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

using data::Quoted;
using toolkit::Icon;

bool IsMember(data::Connection& master, std::string_view role, std::string_view login) {
  auto members = master.Query(fmt::format("sp_helpsrvrolemember {}", Quoted(role)));
  for (; !members.Eof(); members.MoveNext()) {
    if (toolkit::SameIgnoringCase(toolkit::Trim(members.Text("membername")), login)) return true;
  }
  return false;
}

void AddLogin(data::Connection& master, std::string_view login, std::string_view password) {
  if (SQL_Version(master) >= kSqlServer2005) {
    master.Execute(
        fmt::format("Create Login [{}] With Password={}, Check_Policy =OFF ", login, Quoted(password)));
  } else {
    master.Execute(fmt::format("sp_addlogin {},{}", Quoted(login), Quoted(password)));
  }
}

std::string PasswordStatement(std::string_view oldPassword, std::string_view newPassword,
                              std::string_view login) {
  const std::string changed = Quoted(newPassword);
  if (toolkit::IsBlank(login)) return fmt::format("sp_password {} , {}", Quoted(oldPassword), changed);
  return fmt::format("sp_password {} , {} , {}", oldPassword.empty() ? "NULL" : Quoted(oldPassword), changed,
                     QuotedName(login));
}

/// What a member without the right shows.
bool ShownUnlessRefused(const session::Context& context, bool done) {
  if (!done && LacksRight(context.session)) context.dialogs.Message(Icon::Warning, kNoPermission);
  return done;
}

}  // namespace

bool IsLoginName(std::string_view name) {
  return IsName(name);
}

bool ValidarLoginSysAdmin(const session::Context& context, std::string_view login,
                          std::string_view password) {
  const session::SessionRecord& session = context.session;
  if (session.gAutenticacaoWindows) return true;
  const bool own = toolkit::IsBlank(login);
  const std::string asked(own ? session.gLogin : toolkit::Trim(login));
  session::ConnectionPtr master;
  if (!session::CreateDBConnection(context, master, session.gServidor, "master", asked,
                                   own ? session.gPassword : password)) {
    return false;
  }
  bool member = false;
  return Attempt(context, [&] { member = IsMember(*master, "sysadmin", asked); }) && member;
}

bool CreateLogin(const session::Context& context, std::string_view login, std::string_view password,
                 bool admin) {
  return AttemptOn(context, "master", [&](data::Connection& master) {
    RequireName(login);
    AddLogin(master, login, password);
    if (admin) master.Execute(fmt::format("sp_addsrvrolemember {}, sysadmin", Quoted(login)));
  });
}

bool DeleteLogin(const session::Context& context, std::string_view login) {
  if (!ValidarLoginSysAdmin(context)) {
    context.dialogs.Message(Icon::Warning, "Sem Permissão para eliminar o Utilizador");
    return false;
  }
  return AttemptOn(context, "master",
                   [&](data::Connection& master) { master.Execute("sp_droplogin " + QuotedName(login)); });
}

bool ChangePassword(const session::Context& context, std::string_view oldPassword,
                    std::string_view newPassword, std::string_view login) {
  return AttemptOn(context, "master", [&](data::Connection& master) {
    master.Execute(PasswordStatement(oldPassword, newPassword, login));
  });
}

bool SetServerRoleMember(const session::Context& context, std::string_view login, std::string_view role,
                         bool member) {
  const bool done = AttemptOn(context, "master", [&](data::Connection& master) {
    master.Execute("use master");
    master.Execute(fmt::format("sp_{}srvrolemember {} , {}", member ? "add" : "drop", QuotedName(login),
                               QuotedName(toolkit::Trim(role))));
  });
  return ShownUnlessRefused(context, done);
}

bool SetDBRoleMember(const session::Context& context, std::string_view database, std::string_view user,
                     std::string_view role, bool member) {
  const bool done = AttemptOn(context, "master", [&](data::Connection& master) {
    master.Execute("use " + AsName(database));
    master.Execute(fmt::format("sp_{}rolemember {} , {}", member ? "add" : "drop",
                               QuotedName(toolkit::Trim(role)), QuotedName(user)));
  });
  return ShownUnlessRefused(context, done);
}

WindowsName SQL_GetLoginName(data::Connection& master) {
  WindowsName name;
  if (const auto own = master.Query("Select SUser_SName() as LoginName"); !own.Eof()) {
    name.login = own.Text("LoginName");
  }
  try {
    const auto info = master.Query("xp_logininfo " + Quoted(name.login));
    if (!info.Eof()) name.account = info.Text("account name");
  } catch (const data::Error&) {
    // Without that information there is no account, which the login tells.
  }
  return name;
}

bool SQL_CheckLoginSysAdmin(data::Connection& master) {
  const auto answer = master.Query("select IS_SRVROLEMEMBER ('sysadmin') as SysAdmin");
  return !answer.Eof() && answer.Integer("SysAdmin") == 1;
}

bool isLoggedOn(data::Connection& master, std::string_view login) {
  const auto processes =
      master.Query(fmt::format("select * from sysprocesses where net_address<>' ' and upper(loginame)={}",
                               Quoted(toolkit::Upper(login))));
  return !processes.Eof();
}

}  // namespace korvel::databases
