#pragma once

#include <string>

#include "databases/upgrade_run.h"
#include "session/context.h"

namespace korvel::databases {

/// Brings `KorvelConfig`, to which `config` stands open, to the shape that this program needs: tables, procedures,
/// columns, version, widened login columns. Every statement runs each time, each failure is passed over. When the
/// integrity check finds foreign tables, "Voltar" leaves the login columns as they are.
UpgradeResult ActDBaseExecutaConfig(const session::Context& context, data::Connection& config,
                                    UpgradeRun& run);
/// As a run of its own.
UpgradeResult ActDBaseExecutaConfig(const session::Context& context, data::Connection& config);

/// Makes `KorvelConfig` where it is missing, as the first administrator's login does, and upgrades it then; so it does
/// one that an interrupted creation left without its version. True when it is there; a failure has been shown.
bool EnsureConfigDatabase(const session::Context& context);

/// The version of `KorvelConfig`: of `Actualiza`, or of `Entidade` in older ones; "" for none.
std::string ConfigVersion(data::Connection& config);

}  // namespace korvel::databases
