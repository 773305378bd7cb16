#include "cli/workspace.h"

#include <fmt/format.h>

#include "cli/failures.h"
#include "data/error.h"
#include "data/sql_text.h"
#include "databases/companies.h"
#include "databases/sql_admin.h"
#include "periods/parameters.h"
#include "session/lookups.h"
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

Workspace::Workspace(const CommandEnvironment& environment, const GlobalOptions& options, bool makesServer)
    : environment_(environment),
      options_(options),
      dialogs_(environment.err, options.sim),
      progress_(environment.err, environment.errIsTerminal, environment.interrupted) {
  servers_.embeddedFolder = environment.serversFolder;
  servers_.makesEmbedded = makesServer;
  servers_.odbcDriver = environment.settings.Read("Servers", "OdbcDriver").value_or(servers_.odbcDriver);
  session_.gServidor = toolkit::Upper(options.servidor);
  session_.gLogin = toolkit::Upper(options.login);
  session_.gPassword = options.password;
  session_.gAutenticacaoWindows = options.windows;
  session_.gUtilizador = session_.gLogin;
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
}

void Workspace::EnterCompany() {
  if (!options_.empresa) throw UsageError("Falta a opção --empresa.");
  const std::string code(toolkit::Trim(*options_.empresa));
  if (code.empty()) throw Refusal("Não definiu a Empresa!");
  EnterCompany(code);
}

void Workspace::EnterCompany(std::string_view code) {
  const auto master = Open(kMaster);
  const std::string database = databases::CompanyDatabase(code);
  if (!databases::CheckDatabase(*master, database)) {
    throw Refusal(fmt::format("A empresa {} não existe em {}.", code, session_.gServidor));
  }
  session_.gCodEmpresa = session_.gCmdEmpresa = code;
  session_.gBaseDados = database;
  if (databases::CheckDatabase(*master, session::kConfigDatabase)) {
    const auto config = Open(session::kConfigDatabase);
    session_.gNomeEmpresa = session::LerCampoTabela(*config, "Empresas", "Descricao", {"Codigo", code});
    session_.gDescEmpresa = session_.gNomeEmpresa;
  }
  const auto company = OpenCompany();
  periods::LoadSessionParameters(Context(), *company);
}

}  // namespace korvel::cli
