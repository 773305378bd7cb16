#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "data/embedded/store.h"

/// Backups: one database in one file. It is the database's own file as it was at one moment, and behind it a trailer of
/// 512 bytes, lines of text: the program's mark, the database, the moment (ticks, as datetime), the length of what
/// stands before the trailer, and the BLAKE2b-256 hash of that, the name and the moment. The copy has an application_id
/// of its own ("KORB"), so that neither a database is taken for a backup nor a backup for a database.
namespace korvel::data::embedded {

/// What a backup tells of itself.
struct BackupMark {
  std::string database;
  std::int64_t made = 0;
};

/// What a copy asks between its pieces; it ends the copy by throwing.
using KeepGoing = std::function<void()>;

/// Copies a database as it is now, while others read and write it. The copy is made beside `target` and takes its place
/// when it is on the disk; on failure what was there stays. With `replaces` an earlier backup gives way.
/// Throws Error: 3201 when the file cannot be made or may not be replaced, 3202 when it cannot be written.
void WriteBackup(Store& source, const std::filesystem::path& target, const BackupMark& mark, bool replaces,
                 const KeepGoing& keepGoing);

/// Checks a backup from its first to its last byte and copies the database in it to `copy`, synced and closed.
/// Throws Error: 3201 when it cannot be opened, 3241 when it is no whole backup of this system, 3202 when the copy cannot
/// be written; `copy` may be there then.
BackupMark ReadBackup(const std::filesystem::path& backup, const std::filesystem::path& copy,
                      const KeepGoing& keepGoing);

}  // namespace korvel::data::embedded
