#include "databases/upgrade_all.h"

#include <fmt/format.h>

#include <array>

#include "databases/companies.h"
#include "databases/company_upgrade.h"
#include "databases/config_upgrade.h"
#include "databases/version.h"
#include "databases/version_check.h"
#include "session/connections.h"
#include "toolkit/progress_scope.h"

namespace korvel::databases {

namespace {

using toolkit::Icon;

constexpr std::array<std::string_view, 2> kNoYes{"Não", "Sim"};

bool UpgradeConfig(const session::Context& context, UpgradeRun& run) {
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) {
    session::ShowConnectionError(context);
    return false;
  }
  return ActDBaseExecutaConfig(context, *config, run).ran;
}

bool IsNewer(const session::Context& context, std::string_view database) {
  session::ConnectionPtr company;
  return session::OpenSessionDatabase(context, company, database) &&
         DatabaseVersion(*company) > SchemaVersion();
}

void ShowNewer(const session::Context& context, std::string_view code) {
  context.dialogs.Message(
      Icon::Warning, fmt::format("Não pode Actualizar a Empresa {} porque têm o aplicativo desactualizado!\n"
                                 "Saia por favor e actualize o programa!",
                                 code));
}

/// The billing database of each company gets its column, whichever company the session is in.
bool UpgradeOne(const session::Context& context, const std::string& database, UpgradeRun& run) {
  session::SessionRecord session = context.session;
  session.gBaseDados = database;
  const session::Context own{session,          context.servers,  context.dialogs,
                             context.progress, context.settings, context.clock};
  return ActDBaseExecuta(own, database, run).ran;
}

}  // namespace

bool UpgradeCompanies(const session::Context& context, std::span<const std::string> codes) {
  const toolkit::ProgressScope scope(context.progress, "Actualização",
                                     static_cast<std::int64_t>(codes.size()) + 1);
  std::int64_t done = 0;
  UpgradeRun run;
  context.progress.Show(++done, session::kConfigDatabase);
  bool all = UpgradeConfig(context, run);
  for (const std::string& code : codes) {
    const std::string database = CompanyDatabase(code);
    context.progress.Show(++done, database);
    if (IsNewer(context, database)) {
      ShowNewer(context, code);
      return false;
    }
    all = UpgradeOne(context, database, run) && all;
  }
  context.dialogs.Message(Icon::Information, "Actualização Efectuada!");
  return all;
}

bool AskAndUpgradeCompanies(const session::Context& context, std::string_view selected,
                            std::span<const std::string> listed) {
  constexpr std::array<std::string_view, 2> kScopes{"A Empresa Seleccionada", "Todas as Empresas"};
  context.dialogs.Message(Icon::Warning,
                          "Esta rotina efectua operações de sistema nas bases de dados , pelo que não devem "
                          "estar outros utilizadores a usa-las!");
  if (context.dialogs.Ask("Confirma?", kNoYes) != 1) return false;
  if (context.dialogs.Ask("Actualizar?", kScopes) == 1) return UpgradeCompanies(context, listed);
  return !selected.empty() && UpgradeCompanies(context, std::array{std::string(selected)});
}

bool ActualizaDBase(const session::Context& context) {
  const bool interactive = context.session.gCmdLogin.empty();
  if (interactive && context.dialogs.Ask("Confirma a Actualização da Base de Dados ?", kNoYes) != 1) {
    return false;
  }
  UpgradeRun run;
  const std::string database = context.session.gBaseDados;
  const bool company = ActDBaseExecuta(context, database, run).ran;
  const bool config = UpgradeConfig(context, run);
  context.dialogs.Message(Icon::Information, "Fim de Actualização");
  return company && config;
}

}  // namespace korvel::databases
