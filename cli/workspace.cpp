#include "cli/workspace.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/failures.h"
#include "data/error.h"
#include "security/base_rights.h"
#include "security/right_rows.h"
#include "security/rights.h"
#include "session/entry/login.h"
#include "session/entry/main_window.h"
#include "session/entry/user_synchronisation.h"
#include "toolkit/regional.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

constexpr std::string_view kMaster = "master";

void TakeRegional(session::SessionRecord& session, const toolkit::Regional& values) {
  session.gSepDecimal = values.decimalSeparator;
  session.gSepMilhar = values.thousandsSeparator;
  session.gAgrupamento = values.grouping;
  session.gFormatoData = values.shortDate;
  session.gSepData = values.dateSeparator;
  session.gSepHora = values.timeSeparator;
}

bool IsFailure(std::int32_t number, data::Failure failure) {
  return number == static_cast<std::int32_t>(failure);
}

}  // namespace

Workspace::Workspace(const CommandEnvironment& environment, const GlobalOptions& options, bool makesServer,
                     const NeededRight& right)
    : environment_(environment),
      options_(options),
      right_(right),
      dialogs_(environment.err, options.sim),
      progress_(environment.err, environment.errIsTerminal, environment.interrupted) {
  servers_.embeddedFolder = environment.serversFolder;
  servers_.makesEmbedded = makesServer;
  servers_.odbcDriver = environment.settings.Read("Servers", "OdbcDriver").value_or(servers_.odbcDriver);
  session_.gServidor = toolkit::Upper(options.servidor);
  session_.gLogin = toolkit::Upper(options.login);
  session_.gPassword = options.password;
  session_.gAutenticacaoWindows = options.windows;
  dialogs_.AnswerLogins({options.login, options.password});
  session_.gCmdLogin = session_.gLogin;
  TakeRegional(session_, toolkit::LoadRegional(environment.settings));
}

session::Context Workspace::Context() {
  return {session_, servers_, dialogs_, progress_, environment_.settings, environment_.clock};
}

std::string Workspace::LoginRefusal() const {
  if (toolkit::IsBlank(session_.gServidor)) return "Não definiu o Servidor";
  if (!session_.gAutenticacaoWindows && toolkit::IsBlank(session_.gLogin))
    return "Login ou Password Incorrectos";
  if (IsFailure(session_.gErroNumero, data::Failure::WrongLogin)) {
    return session_.gAutenticacaoWindows
               ? "O Utilizador Corrente Não Dispõe de Permissão para Entrar no Sistema!"
               : "Login ou Password Incorrectos";
  }
  if (IsFailure(session_.gErroNumero, data::Failure::NoServer)) {
    return fmt::format("O Servidor Indicado Não Existe ou o Acesso Foi Negado! ({}: {})", session_.gServidor,
                       session_.gErroDescricao);
  }
  return fmt::format("{} - {}", session_.gErroDescricao, session_.gErroNumero);
}

session::ConnectionPtr Workspace::Open(std::string_view database) {
  session::ConnectionPtr connection;
  const bool opened = session::CreateDBConnection(Context(), connection, session_.gServidor, database,
                                                  session_.gLogin, session_.gPassword);
  if (!opened) throw Refusal(database == kMaster ? LoginRefusal() : session_.gErroDescricao);
  return connection;
}

void Workspace::Login() {
  Open(kMaster);
  const session::LoginFields fields{.machine = {},
                                    .server = options_.servidor,
                                    .login = options_.login,
                                    .password = options_.password,
                                    .windows = options_.windows};
  const auto context = Context();
  const bool entered = session::Authenticate(context, fields) && session::ReachConfiguration(context) &&
                       session::SynchroniseUsers(context) && selection_.Load(context);
  if (!entered) throw Refused();
}

void Workspace::LoginAsAdministrator() {
  Login();
  if (!selection_.HasAdminMenus()) throw Refusal("o Seu Login não lhe permite esta tarefa !");
}

std::string Workspace::ListedCompany() const {
  if (!options_.empresa) throw UsageError("Falta a opção --empresa.");
  const std::string_view code = toolkit::Trim(*options_.empresa);
  if (code.empty()) throw Refusal("Não definiu a Empresa!");
  const auto found = std::ranges::find_if(Companies(), [&](const session::CompanyLine& company) {
    return toolkit::SameIgnoringCase(company.code, code);
  });
  if (found == Companies().end()) {
    throw Refusal(fmt::format("A empresa {} não existe em {}, ou o login {} não a vê.", code,
                              session_.gServidor, session_.gLogin));
  }
  return found->code;
}

bool Workspace::DeleteListedCompany() {
  selection_.Select(ListedCompany());
  return selection_.EliminarEmpresa(Context());
}

void Workspace::EnsureBaseRights() {
  const auto config = Open(session::kConfigDatabase);
  if (security::ReadRights(*config, security::kBaseSet).empty())
    security::CreateBaseRights(Context(), *config);
}

void Workspace::EnterCompany() {
  if (!options_.empresa) throw UsageError("Falta a opção --empresa.");
  Login();
  session_.gCmdEmpresa = ListedCompany();
  selection_.Select(session_.gCmdEmpresa);
  if (!selection_.Selecionar(Context())) throw Refused();
  session::LoadMainWindow(Context());
  RequireRight();
}

/// What a window would ask before it opens, and before its button does its work.
void Workspace::RequireRight() {
  if (right_.form.empty()) return;
  const bool allowed =
      security::MayOpenForm(Context(), right_.form) &&
      (right_.button.empty() || security::Acessos_bln(Context(), right_.form, right_.button, right_.writes));
  if (!allowed) throw Refused();
}

}  // namespace korvel::cli
