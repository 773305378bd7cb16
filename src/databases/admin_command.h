#pragma once

#include <filesystem>

#include "session/command_line.h"
#include "session/context.h"

namespace korvel::databases {

/// Runs what a command line of administration asks for, and comes back; the program ends then, whatever the result.
/// "ACT_DB" takes the command's login into the session and upgrades the database named, or all those of this system
/// whose version is not the program's; those that do not open are left out. "ACT_CHK" leaves ActChkFile() empty. False
/// for any other command and when nothing could be done; nothing is shown for it.
bool RunAdminCommand(const session::Context& context, const session::AdminCommand& command,
                     const std::filesystem::path& programFile);

/// The file that says that this version ran: beside the program, its name without extension, major and minor version on
/// two digits each, revision on three, ".txt".
std::filesystem::path ActChkFile(const std::filesystem::path& programFile);

}  // namespace korvel::databases
