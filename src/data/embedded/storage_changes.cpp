#include "data/embedded/storage_changes.h"

#include <filesystem>
#include <utility>

#include <fmt/format.h>

#include "data/embedded/backup.h"
#include "data/embedded/catalogue.h"
#include "data/embedded/errors.h"
#include "data/embedded/files.h"
#include "data/embedded/parser.h"

namespace korvel::data::embedded {
namespace {

namespace fs = std::filesystem;

void RequireOutside(const Session& session) {
  if (session.Values().transactionCount == 0) return;
  throw Failed(Code::BackupInTransaction, "Um backup ou a sua reposição não são permitidos numa transacção");
}

/// A relative name is one in the server's own folder of backups.
fs::path FileOf(const BackupTarget& target, const std::string& file, Session& session) {
  if (target.device.empty()) return session.Host().BackupFolder() / file;
  const auto device = session.Host().Devices().Find(target.device);
  if (!device) {
    throw Failed(Code::NoDevice, fmt::format("O dispositivo de backup '{}' não existe", target.device));
  }
  return session.Host().BackupFolder() / device->file;
}

/// Removed with the object, unless it has been put in its place.
class Copy {
 public:
  explicit Copy(fs::path path) : path_(std::move(path)) {}
  ~Copy() { RemoveDatabaseFiles(path_); }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;
  const fs::path& Path() const { return path_; }

 private:
  fs::path path_;
};

/// Makes a copy a database again, which must read as one.
void MakeDatabase(const fs::path& copy, const std::string& name) {
  Store store(copy, name, OpenMode::Existing, 0);
  Catalogue::MarkFile(store);
  Catalogue::Load(store);
}

void RequireUnused(const DatabaseEntry& entry, Session& session) {
  if (session.Current()->Id() == entry.id) {
    throw Failed(
        Code::RestoreOfOwn,
        fmt::format("A base de dados '{}' está a ser usada por esta ligação: use master", entry.name));
  }
  if (!session.Processes().OthersIn(static_cast<int>(entry.id)).empty()) {
    throw Failed(Code::RestoreInUse,
                 fmt::format("A base de dados '{}' está a ser usada por outros", entry.name));
  }
}

}  // namespace

void Apply(const BackUpDatabase& backup, const std::string& file, Session& session) {
  RequireOutside(session);
  const DatabaseEntry entry = session.GetDatabase(backup.database);
  session.RequireOver(Right::BackUp, entry);
  const fs::path target = FileOf(backup.target, file, session);
  const auto source = session.Host().OpenDatabase(entry);
  WriteBackup(*source, target, {entry.name, TicksNow()}, backup.init, [&session] { session.RequireAlive(); });
}

void Apply(const RestoreDatabase& restore, const std::string& file, Session& session) {
  RequireOutside(session);
  if (SameName(restore.database, kMaster)) {
    throw Failed(Code::RestoreOfMaster,
                 "A base de dados master não pode ser reposta com o servidor a trabalhar");
  }
  const auto entry = session.Host().FindDatabase(restore.database);
  if (entry) {
    session.RequireOver(Right::Restore, *entry);
  } else {
    session.Require(Right::CreateDatabase, "CREATE DATABASE");
  }
  const fs::path backup = FileOf(restore.target, file, session);
  const Copy copy(session.Host().FileOf(restore.database).string() +
                  fmt::format(".{}", session.Processes().Spid()));
  const BackupMark mark = ReadBackup(backup, copy.Path(), [&session] { session.RequireAlive(); });
  if (entry && !restore.replace && !SameName(mark.database, entry->name)) {
    throw Failed(Code::RestoreOfAnother,
                 fmt::format("O backup é da base de dados '{}' e não de '{}'", mark.database, entry->name));
  }
  MakeDatabase(copy.Path(), restore.database);
  const ProcessSlot::Gate gate(session.Processes());
  if (const auto now = session.Host().FindDatabase(restore.database)) RequireUnused(*now, session);
  session.Host().PlaceDatabase(restore.database, copy.Path());
}

namespace {

ObjectName TableOf(const Dbcc& dbcc, std::size_t argument) {
  return ParseObjectName(dbcc.arguments.at(argument));
}

const Object& RequireTable(const ObjectName& name, const Surroundings& around) {
  const Object* object = FindObject(name, around);
  if (object != nullptr && !object->view) return *object;
  throw Failed(Code::NoTableForDbcc, fmt::format("A tabela '{}' não existe", name.name));
}

/// Counts of rows are never kept here, so there is nothing to correct.
void UpdateUsage(const Dbcc& dbcc, Session& session) {
  const std::string& database = dbcc.arguments.at(0);
  const std::string name = database == "0" ? session.Current()->Name() : session.GetDatabase(database).name;
  const bool here = SameName(name, session.Current()->Name());
  if (here && dbcc.arguments.size() > 1) RequireTable(TableOf(dbcc, 1), session.Around());
}

/// All of a table's keys and indexes, also when one of them is named.
void Reindex(const Dbcc& dbcc, Session& session) {
  const Surroundings around = session.Around();
  const Object& table = RequireTable(TableOf(dbcc, 0), around);
  session.Require(Right::Alter, table.name);
  Store& file = session.Current()->File();
  AtomicWrite write(file);
  try {
    file.Run("REINDEX main." + QuoteName(table.name));
  } catch (const Error& failure) {
    if (failure.Kind() != Failure::Integrity) throw;
    throw Failed(Code::DuplicateOnCreate,
                 fmt::format("Um índice único da tabela '{}' tem chaves repetidas", table.name));
  }
  write.Keep();
}

void RequireSound(Store& file, std::string_view what, std::string_view check) {
  Prepared rows = file.Prepare(fmt::format("PRAGMA integrity_check{}", check));
  if (!rows.Step() || rows.Text(0) == "ok") return;
  throw Failed(Code::DamageFound, fmt::format("Há erros de consistência em '{}': {}", what, rows.Text(0)));
}

void CheckDatabase(const Dbcc& dbcc, Session& session) {
  const bool named = !dbcc.arguments.empty() && dbcc.arguments[0] != "0";
  const DatabaseEntry entry = session.GetDatabase(named ? dbcc.arguments[0] : session.Current()->Name());
  session.RequireOver(Right::AlterDatabase, entry);
  RequireSound(*session.Host().OpenDatabase(entry), entry.name, "(1)");
}

void CheckTable(const Dbcc& dbcc, Session& session) {
  const Surroundings around = session.Around();
  const Object& table = RequireTable(TableOf(dbcc, 0), around);
  session.Require(Right::Alter, table.name);
  RequireSound(session.Current()->File(), table.name, "(" + QuoteName(table.name) + ")");
}

void UpdateStatistics(const Dbcc& dbcc, Session& session) {
  RequireTable(TableOf(dbcc, 0), session.Around());
}

struct Command {
  std::string_view name;
  std::size_t required;  // arguments
  void (*run)(const Dbcc&, Session&);
};
constexpr Command kCommands[] = {
    {"updateusage", 1, UpdateUsage}, {"dbreindex", 1, Reindex},           {"checkdb", 0, CheckDatabase},
    {"checktable", 1, CheckTable},   {"statistics", 1, UpdateStatistics},
};

}  // namespace

void Apply(const Dbcc& dbcc, Session& session) {
  for (const Command& command : kCommands) {
    if (command.name != dbcc.command) continue;
    if (dbcc.arguments.size() >= command.required) return command.run(dbcc, session);
    throw Failed(Code::DbccArguments, fmt::format("DBCC {} precisa de argumentos", dbcc.command));
  }
  throw Failed(Code::NoDbcc, fmt::format("A instrução DBCC {} não é conhecida", dbcc.command));
}

}  // namespace korvel::data::embedded
