#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "databases/companies.h"
#include "databases/company_upgrade.h"
#include "databases/config_upgrade.h"
#include "databases/installations.h"
#include "databases/upgrade_all.h"
#include "session/connections.h"
#include "session/failures.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

using toolkit::Icon;

/// Runs `work(context)` as that installation's own login.
template <typename Work>
bool As(const session::Context& context, const Installation& installation, Work&& work) {
  session::SessionRecord session = SessionOf(context.session, installation);
  session.gBaseDados = CompanyDatabase(installation.code);
  return work(session::Context{session, context.servers, context.dialogs, context.progress, context.settings,
                               context.clock});
}

bool UpgradeCompanyOf(const session::Context& context, const Installation& installation, UpgradeRun& run) {
  const std::string database = CompanyDatabase(installation.code);
  return As(context, installation, [&](const session::Context& own) {
    session::ConnectionPtr company;
    if (session::OpenSessionDatabase(own, company, database)) {
      session::FechaConection(company);
      return ActDBaseExecuta(own, database, run).ran;
    }
    context.dialogs.Message(Icon::Warning,
                            fmt::format("Não foi possivel actualizar a Empresa -> {}\nServidor -> {}",
                                        installation.code, installation.server));
    return false;
  });
}

bool UpgradeConfigOf(const session::Context& context, const Installation& installation, UpgradeRun& run) {
  return As(context, installation, [&](const session::Context& own) {
    session::ConnectionPtr config;
    if (session::OpenSessionDatabase(own, config, session::kConfigDatabase)) {
      return ActDBaseExecutaConfig(own, *config, run).ran;
    }
    context.dialogs.Message(
        Icon::Warning,
        fmt::format("Não foi possivel actualizar a Empresa Config no Servidor -> {}", installation.server));
    return false;
  });
}

/// The first installation of each server; the rows stand in the order of their servers.
std::vector<Installation> OnePerServer(std::vector<Installation> all) {
  const auto same = [](const Installation& a, const Installation& b) {
    return toolkit::SameIgnoringCase(a.server, b.server);
  };
  all.erase(std::unique(all.begin(), all.end(), same), all.end());
  return all;
}

bool UpgradeInstallations(const session::Context& context, const std::vector<Installation>& all) {
  const auto servers = OnePerServer(all);
  const toolkit::ProgressScope scope(context.progress, "Actualização de Campos em Todas as Bases de Dados",
                                     static_cast<std::int64_t>(all.size() + servers.size()));
  UpgradeRun run;
  std::int64_t done = 0;
  bool good = true;
  for (const Installation& installation : all) {
    context.progress.Show(++done, CompanyDatabase(installation.code));
    good = UpgradeCompanyOf(context, installation, run) && good;
  }
  for (const Installation& installation : servers) {
    context.progress.Show(++done, session::kConfigDatabase);
    good = UpgradeConfigOf(context, installation, run) && good;
  }
  return good;
}

}  // namespace

bool ActualizaCampos(const session::Context& context) {
  context.dialogs.Message(Icon::Warning, "Neste momento ninguem deve estar a operar no Korvel");
  return session::Reported(context, false, [&] {
    session::ConnectionPtr config;
    if (!session::AbreConfig(context, config)) return false;
    const auto all = Installations(*config);
    session::FechaConection(config);
    return UpgradeInstallations(context, all);
  });
}

}  // namespace korvel::databases
