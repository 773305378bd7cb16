#include "session/entry/login.h"

#include <fmt/format.h>

#include <array>

#include "data/connect.h"
#include "data/error.h"
#include "databases/config_upgrade.h"
#include "databases/logins.h"
#include "session/connections.h"
#include "session/entry/user_synchronisation.h"
#include "session/failures.h"
#include "toolkit/machine.h"
#include "toolkit/text.h"

namespace korvel::session {
namespace {

using toolkit::Icon;

constexpr std::string_view kServers = "Servers";
constexpr std::string_view kMachineName = "MachineName";
constexpr std::string_view kName = "Name";
constexpr std::string_view kLogin = "Login";
constexpr std::string_view kAdministrator = "sa";  // of a new server
constexpr std::array<std::string_view, 2> kYesNo{"&Sim", "&Não"};
constexpr std::string_view kWindows = "WinAuthetication";  // misspelt in every installation's settings

std::string Setting(const Context& context, std::string_view section, std::string_view key) {
  return context.settings.Read(section, key).value_or(std::string());
}

/// What a refused login is told, and where it is corrected.
struct Refusal {
  std::string text;
  std::string_view field;
};

bool IsFailure(const SessionRecord& session, data::Failure failure) {
  return session.gErroNumero == static_cast<std::int32_t>(failure);
}

std::string ErrorLine(const SessionRecord& session) {
  return fmt::format("{} - {}", session.gErroDescricao, session.gErroNumero);
}

/// A blank server or login is not even tried; it reads as one that the server does not take.
Refusal WhyRefused(const SessionRecord& session, const LoginFields& fields) {
  const bool noLogin = !fields.windows && toolkit::IsBlank(fields.login);
  if (toolkit::IsBlank(fields.server) || (!noLogin && IsFailure(session, data::Failure::NoServer))) {
    return {"O Servidor Indicado Não Existe ou o Acesso Foi Negado!", "txtServer"};
  }
  if (!noLogin && !IsFailure(session, data::Failure::WrongLogin)) return {ErrorLine(session), "txtServer"};
  if (fields.windows) {
    return {"O Utilizador Corrente Não Dispõe de Permissão para Entrar no Sistema!", "txtLogin"};
  }
  return {"Login ou Password Incorrectos", "txtPassword"};
}

void Refuse(const Context& context, const Refusal& refusal) {
  context.dialogs.Message(Icon::Critical, refusal.text);
  context.dialogs.Focus(refusal.field);
}

/// The operating system's user, by the names that the server has for it. False when the server does not say what it may.
bool TakeWindowsLogin(const Context& context, data::Connection& master) {
  const databases::WindowsName name = databases::SQL_GetLoginName(master);
  context.session.gGrupoWindows = name.account;
  context.session.gLogin = name.login;
  context.session.gPassword.clear();
  if (!name.account.empty()) return true;
  context.dialogs.Message(Icon::Critical, "Não Foi Possível Determinar as Permissões do Utilizador!",
                          "Contacte o Administrador do Sistema:");
  return false;
}

void TakeSqlLogin(SessionRecord& session, const LoginFields& fields) {
  session.gGrupoWindows.clear();
  session.gLogin = toolkit::Upper(fields.login);
  session.gPassword = fields.password;
}

/// What the form proposes next time. A store that cannot be written is shown, and keeps nobody out.
void KeepLogin(const Context& context, const LoginFields& fields) {
  Reported(context, false, [&] {
    context.settings.Write(kServers, kName, fields.server);
    context.settings.Write(kServers, kLogin, fields.windows ? std::string_view() : fields.login);
    return true;
  });
}

}  // namespace

LoginFields LoadLogin(const Context& context) {
  LoginFields fields;
  fields.server = Setting(context, kServers, kName);
  fields.login = Setting(context, kServers, kLogin);
  fields.machine = Setting(context, kMachineName, kName);
  if (toolkit::IsBlank(fields.machine)) fields.machine = toolkit::GetMachineName();
  fields.windows = Setting(context, kServers, kWindows) == "1";
  context.session.gAutenticacaoWindows = fields.windows;
  if (!toolkit::IsBlank(fields.server)) context.dialogs.Focus("txtLogin");
  return fields;
}

void KeepMachine(const Context& context, std::string_view machine) {
  context.settings.Write(kMachineName, kName, machine);
}

void KeepAuthentication(const Context& context, const LoginFields& fields) {
  context.settings.Write(kServers, kWindows, fields.windows ? "1" : "0");
  context.session.gAutenticacaoWindows = fields.windows;
  const bool toLogin = !toolkit::IsBlank(fields.server) && !fields.windows;
  context.dialogs.Focus(toLogin ? "txtLogin" : "txtServer");
}

bool OfferServer(const Context& context, const LoginFields& fields) {
  return Reported(context, false, [&] {
    const std::string server = toolkit::Upper(fields.server);
    if (!data::IsMissingEmbedded(context.servers, server)) return true;
    const std::string question = fmt::format(
        "O servidor {} ainda não existe.\nDeseja criá-lo, com o administrador \"{}\" e a password em branco?",
        server, kAdministrator);
    if (context.dialogs.Ask(question, kYesNo) != 0) {
      context.dialogs.Focus("txtServer");
      return false;
    }
    data::ServerSettings making = context.servers;
    making.makesEmbedded = true;
    data::Connect(making, BuildConnectionString(server, "master", kAdministrator, false), "",
                  kTimeoutSeconds);
    return true;
  });
}

bool Login(const Context& context, const LoginFields& fields) {
  return Reported(context, false, [&] {
    if (!Authenticate(context, fields) || !ReachConfiguration(context)) return false;
    KeepLogin(context, fields);
    return SynchroniseUsers(context);
  });
}

bool Authenticate(const Context& context, const LoginFields& fields) {
  SessionRecord& session = context.session;
  session.gServidor = toolkit::Upper(fields.server);
  session.gAutenticacaoWindows = fields.windows;
  ConnectionPtr master;
  if (!CreateDBConnection(context, master, session.gServidor, "master", fields.login, fields.password)) {
    Refuse(context, WhyRefused(session, fields));
    return false;
  }
  if (!fields.windows) {
    TakeSqlLogin(session, fields);
  } else if (!TakeWindowsLogin(context, *master)) {
    return false;
  }
  session.gUtilizador = session.gLogin;
  session.gSysAdmin = databases::SQL_CheckLoginSysAdmin(*master);
  return true;
}

bool ReachConfiguration(const Context& context) {
  const SessionRecord& session = context.session;
  if (session.gSysAdmin) return databases::EnsureConfigDatabase(context);
  ConnectionPtr config;
  if (AbreConfig(context, config)) return true;
  context.dialogs.Message(Icon::Critical, IsFailure(session, data::Failure::NoServer)
                                              ? "Não Foi Possível Estabelecer a Ligação à Base de Dados!"
                                              : ErrorLine(session));
  return false;
}

bool RequestLogin(const Context& context, bool checkSysAdmin) {
  const auto typed = context.dialogs.AskLogin("Login", context.session.gLogin);
  if (!typed) return false;
  if (!ValidateLogin(context, context.session.gServidor, "master", typed->login, typed->password))
    return false;
  return !checkSysAdmin || databases::ValidarLoginSysAdmin(context, typed->login, typed->password);
}

}  // namespace korvel::session
