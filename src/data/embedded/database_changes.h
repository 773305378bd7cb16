#pragma once

#include "data/embedded/session.h"
#include "data/embedded/tree.h"

/// What changes databases' states and ends processes, with the right that each needs. Statements and procedures share it.
namespace korvel::data::embedded {

/// A state that others would feel waits a second for them to leave. Throws 5011 without the right, 5058 for master, 5061
/// (5070 when it does not wait) while others have the database open, 5064 for the end of a single user mode that another
/// one has, 226 inside a transaction.
void Apply(const SetDatabaseState& change, Session& session);

/// What the process had open is rolled back. Throws 6102 without the right, 6104 for oneself, 6106 for none.
void Apply(const KillProcess& kill, Session& session);

}  // namespace korvel::data::embedded
