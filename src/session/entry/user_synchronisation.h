#pragma once

#include "session/context.h"

namespace korvel::session {

/// Brings `UserManagement` in step with the server's logins: those that have gone lose their rows, there and in
/// `UserDatabases`; new ones get theirs. One transaction; nothing is written when all is in step, nor by a login that may
/// not write there, which leaves it to the next one. False when the configuration does not open, which is shown. Throws
/// data::Error, and nothing has changed then.
bool SynchroniseUsers(const Context& context);

}  // namespace korvel::session
