#include "databases/config_upgrade.h"

#include <fmt/format.h>

#include <array>

#include "data/sql_text.h"
#include "databases/config_procedures.h"
#include "databases/config_schema.h"
#include "databases/integrity.h"
#include "databases/schema_upgrade.h"
#include "databases/sql_admin.h"
#include "databases/version.h"
#include "databases/version_check.h"
#include "databases/widening.h"
#include "session/connections.h"
#include "session/failures.h"
#include "session/lookups.h"

namespace korvel::databases {

namespace {

void CreateProcedures(data::Connection& config, PassedOver& passedOver) {
  passedOver.Run(config, kProcedureSettings);
  for (const ProcedureDefinition& procedure : ConfigProcedures()) {
    passedOver.Run(config, fmt::format("Drop procedure {}", procedure.name));
    passedOver.Run(config, procedure.text);
    passedOver.Run(config, kProcedureSettings);
  }
}

void RunStages(data::Connection& config, PassedOver& passedOver) {
  for (const Stage stage : kStages) {
    CreateTables(config, ConfigSchema(), stage, passedOver);
    if (stage == Stage::Base) CreateProcedures(config, passedOver);
    ChangeColumns(config, ConfigSchema(), stage, passedOver);
  }
}

/// The widening drops keys that stand on logins; those that every configuration database has come back.
void RestoreKeys(data::Connection& config, PassedOver& passedOver) {
  for (const TableDefinition& table : ConfigSchema()) {
    for (const KeyDefinition& key : table.keys) passedOver.Run(config, AddKeyStatement(table, key));
  }
}

/// Whether the user wants to go on with foreign tables about. Only servers with that object are looked at.
bool IntegrityConfirmed(const session::Context& context, data::Connection& master) {
  if (!session::VerSeExiste(master, "Select Name from SysObjects Where Name='ActUtil'")) return true;
  if (VerificaObjectos(context, master)) return true;
  constexpr std::array<std::string_view, 2> kButtons{"Voltar", "Continuar"};
  return context.dialogs.Ask("A Integridade dos Objectos não está confirmada!", kButtons) == 1;
}

void WidenLogins(const session::Context& context, data::Connection& master, data::Connection& config,
                 PassedOver& passedOver) {
  const bool go = session::Reported(context, false, [&] { return IntegrityConfirmed(context, master); });
  if (!go) return;
  WidenLoginColumns(config, passedOver);
  RestoreKeys(config, passedOver);
}

/// Another process may be at it too: what it has made is as good.
bool CreateEmpty(const session::Context& context) {
  session::ConnectionPtr master;
  if (!session::OpenSessionDatabase(context, master, "master")) {
    session::ShowConnectionError(context);
    return false;
  }
  return session::Reported(context, false, [&] {
    if (CheckDatabase(*master, session::kConfigDatabase)) return true;
    try {
      master->Execute("Create Database KorvelConfig");
    } catch (const data::Error& error) {
      if (error.Native() != kDatabaseExists) throw;
    }
    return true;
  });
}

}  // namespace

UpgradeResult ActDBaseExecutaConfig(const session::Context& context, data::Connection& config,
                                    UpgradeRun& run) {
  session::ConnectionPtr master;
  if (!session::OpenSessionDatabase(context, master, "master")) {
    session::ShowConnectionError(context);
    return {};
  }
  ChangeCompatibility(context, *master, config.Database(), run);
  PassedOver passedOver;
  RunStages(config, passedOver);
  passedOver.Run(config, "Update Entidade Set Versao=" + data::Quoted(SchemaVersion()));
  WriteVersion(config, passedOver);
  WidenLogins(context, *master, config, passedOver);
  return {true, passedOver.Failures()};
}

UpgradeResult ActDBaseExecutaConfig(const session::Context& context, data::Connection& config) {
  UpgradeRun run;
  return ActDBaseExecutaConfig(context, config, run);
}

bool EnsureConfigDatabase(const session::Context& context) {
  if (!CreateEmpty(context)) return false;
  session::ConnectionPtr config;
  if (!session::OpenSessionDatabase(context, config, session::kConfigDatabase)) {
    context.dialogs.Message(
        toolkit::Icon::Critical,
        fmt::format("{}\nUnable to Create Stored Procedures", context.session.gErroDescricao),
        "Erro na Ligação a KorvelConfig!");
    return false;
  }
  return !ConfigVersion(*config).empty() || ActDBaseExecutaConfig(context, *config).ran;
}

std::string ConfigVersion(data::Connection& config) {
  const std::string version = DatabaseVersion(config);
  if (!version.empty()) return version;
  return data::ToText(session::GetFieldValue(config, "Select Versao from Entidade", "Versao"));
}

}  // namespace korvel::databases
