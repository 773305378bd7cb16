#pragma once

#include <string>
#include <string_view>

#include "session/connections.h"

namespace korvel::databases {

/// Writes the one backup file of a database, over the earlier one: "Back<database>.dat" in the folder "backup" beside
/// that of the server's data, through a device of the same name. False with the error outputs set.
bool BackUpDatabase(const session::Context& context, std::string_view database);

/// Puts a database back from its device, or from "Back<database>.dat" in `folder` when that is not blank, and says so.
/// `folder` is a path of the server's, its last separator included. All other users must be out. False with the error
/// outputs set.
bool RestoreSQLDatabase(const session::Context& context, std::string_view database,
                        std::string_view folder = {});

/// "Back<database>.dat".
std::string BackupFile(std::string_view database);
/// Where the backups of a server lie, its last separator included: the folder "backup" in place of the one that holds
/// `dataFile`. Paths are the server's, with "\" or "/" as they come.
std::string BackupFolder(std::string_view dataFile);

/// Checks counts, indexes and statistics of all tables of a database. Shows the tables whose indexes could not be
/// rebuilt, if any. False when the database did not open or another check failed, which was shown.
bool VerificaBaseDados(const session::Context& context, const std::string& database);
/// The same on an open connection: a line for each table whose indexes could not be rebuilt. Throws data::Error for
/// another check that fails, and toolkit::Cancelled.
std::string IndexFaults(data::Connection& connection, std::string_view database, toolkit::Progress& progress);

}  // namespace korvel::databases
