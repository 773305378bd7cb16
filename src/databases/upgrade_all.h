#pragma once

#include <span>
#include <string>
#include <string_view>

#include "session/context.h"

/// Upgrades of several databases of the session's server.
namespace korvel::databases {

/// Upgrades `KorvelConfig` and then the companies of those codes, in their order, with progress. A company that is newer
/// than the program stops the run, which is said; one that does not open is shown and passed over. At the end
/// "Actualização Efectuada!" is said. True when all were upgraded.
bool UpgradeCompanies(const session::Context& context, std::span<const std::string> codes);

/// `mnuacttodas`: warns, asks whether and what, and upgrades the company selected or all of `listed`. False when it was
/// not wanted too.
bool AskAndUpgradeCompanies(const session::Context& context, std::string_view selected,
                            std::span<const std::string> listed);

/// The main window's `ActualizaDBase`: the company in use and `KorvelConfig`, asked for unless the run is unattended.
bool ActualizaDBase(const session::Context& context);

/// Where the system's servers are told that hold companies of other installations, `FirmasImo` of `KorvelConfig`: upgrades
/// the company of each of its rows with the row's own login, then `KorvelConfig` of each server. Nothing happens
/// without that table. What cannot be upgraded is shown and passed over. True when all were.
bool ActualizaCampos(const session::Context& context);

}  // namespace korvel::databases
