#pragma once

#include <string>

#include "data/embedded/session.h"
#include "data/embedded/tree.h"

/// Statements about the files of databases. `file` is what the statement names; blank for a device.
namespace korvel::data::embedded {

/// Throws 911, 3021 inside a transaction, 3206 for a device that is not there, and what WriteBackup throws.
void Apply(const BackUpDatabase& backup, const std::string& file, Session& session);
/// Puts a backup in the place of a database, or makes it; a kill leaves the old one or the new one.
/// Throws as Apply of BackUpDatabase and as ReadBackup, and 3101 or 3102 while it is used, 3108 for master,
/// 3154 when the backup is another database's and nothing says REPLACE.
void Apply(const RestoreDatabase& restore, const std::string& file, Session& session);
/// Throws 2526 for a command that is not known, 2501 for a table that is not there, 8946 for a damaged file.
void Apply(const Dbcc& dbcc, Session& session);

}  // namespace korvel::data::embedded
