#pragma once

#include <string>

#include "databases/upgrade_run.h"
#include "session/context.h"

namespace korvel::databases {

/// Brings a company database to the shape that this program needs: every statement each time, in order, each
/// failure passed over. No one else should work on the database meanwhile; nothing is locked. A read-only database is
/// made writable for it, and read-only again afterwards. Adds a column to the company's billing database too, found
/// through the parameters of `gBaseDados`, which becomes `database` when it is blank.
UpgradeResult ActDBaseExecuta(const session::Context& context, const std::string& database, UpgradeRun& run);
/// As a run of its own.
UpgradeResult ActDBaseExecuta(const session::Context& context, const std::string& database);

}  // namespace korvel::databases
