#include "databases/version_check.h"

#include <fmt/format.h>

#include <algorithm>

#include "databases/companies.h"
#include "databases/config_upgrade.h"
#include "databases/logins.h"
#include "databases/version.h"
#include "session/connections.h"
#include "session/lookups.h"
#include "session/records.h"
#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

using toolkit::Icon;

constexpr std::string_view kUpgradeNeeded =
    "A Versão do Aplicativo Requer que seja efectuada a Actualização de Base de Dados!";

bool Open(const session::Context& context, session::ConnectionPtr& connection, std::string_view code) {
  const bool opened = toolkit::IsBlank(code)
                          ? session::AbreConfig(context, connection)
                          : session::OpenSessionDatabase(context, connection, CompanyDatabase(code));
  if (!opened) session::ShowConnectionError(context);
  return opened;
}

void TellWhoUpgrades(const session::Context& context, bool company) {
  if (!ValidarLoginSysAdmin(context)) {
    context.dialogs.Message(Icon::Information, "Contacte o Administrador do Sistema antes de Operar.");
    return;
  }
  context.dialogs.Message(
      Icon::Information,
      fmt::format("{}Na Selecção de Empresas, Execute Utilitários -> Actualizar Todas as Empresas.",
                  company ? "Recomendamos que Actualize Todas as Bases de Dados:\n" : ""),
      "Informação:");
}

void TellDifference(const session::Context& context, const VersionQuestion& question,
                    const std::string& version) {
  toolkit::Dialogs& dialogs = context.dialogs;
  if (version.empty()) {
    dialogs.Message(Icon::Warning, kUpgradeNeeded, "Atenção:");
  } else if (version > SchemaVersion()) {
    dialogs.Message(Icon::Warning, "A Versão do Aplicativo Encontra-se Desactualizada!");
    dialogs.Message(Icon::Information, "Contacte o Administrador do Sistema!");
  } else {
    dialogs.Message(Icon::Warning,
                    fmt::format("{}{}", kUpgradeNeeded, question.mainModule ? " do Módulo Principal" : ""));
    TellWhoUpgrades(context, !toolkit::IsBlank(question.code));
  }
}

}  // namespace

bool VerificaVersao(const session::Context& context, const VersionQuestion& question) {
  session::ConnectionPtr connection;
  if (!Open(context, connection, question.code)) return false;
  const std::string version =
      toolkit::IsBlank(question.code) ? ConfigVersion(*connection) : DatabaseVersion(*connection);
  // The server lets go of a database only when its connections stand in another one.
  session::RunSQL(*connection, "Use master");
  session::FechaConection(connection);
  if (version == SchemaVersion()) return true;
  if (!question.silent) TellDifference(context, question, version);
  return false;
}

std::string DatabaseVersion(data::Connection& connection) {
  const auto version = session::GetFieldValue(connection, "Select Versao from Actualiza", "Versao");
  return std::string(toolkit::Trim(data::ToText(version)));
}

std::string ShownVersion(std::string_view digits) {
  if (toolkit::IsBlank(digits)) return {};
  constexpr std::size_t kWidth = 4;
  constexpr std::size_t kParts = 3;
  std::string shown;
  for (std::size_t part = 0; part < kParts; ++part) {
    const std::string_view piece = digits.substr(std::min(part * kWidth, digits.size()), kWidth);
    shown += fmt::format("{}{}", part == 0 ? "" : ".", toolkit::NumericPrefix(piece).Whole());
  }
  return shown;
}

}  // namespace korvel::databases
