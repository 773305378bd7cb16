#include "data/embedded/server.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "data/embedded/catalogue.h"
#include "data/embedded/errors.h"
#include "data/embedded/password.h"

namespace korvel::data::embedded {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 100;
/// Identifiers below this are the server's own databases.
constexpr int kFirstDatabaseId = 5;

constexpr std::string_view kDataFolder = "data";
constexpr std::string_view kBackupFolder = "backup";

constexpr const char* kMasterTables = R"(
CREATE TABLE "$databases" (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL COLLATE NOCASE UNIQUE);
CREATE TABLE "$logins" (name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, password TEXT NOT NULL,
  sysadmin INTEGER NOT NULL) WITHOUT ROWID;
)";

std::string UpperName(std::string_view name) {
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

Error NoServer(std::string_view name) {
  return Error(Failure::NoServer, 17, "08001",
               fmt::format("O servidor {} não existe ou o acesso foi negado", name));
}

void RemoveFiles(const fs::path& file) {
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
    std::error_code ignored;  // what is not there needs no removing, and what stays is never listed
    fs::remove(file.string() + suffix, ignored);
  }
}

/// Puts a folder's entries on the disk.
void SyncFolder(const fs::path& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
  if (handle < 0) return;
  ::fsync(handle);
  ::close(handle);
}

bool OwnedByThisUser(const fs::path& folder) {
  struct stat status {};
  return ::stat(folder.c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

/// "MACHINE\user" of this process.
std::string SystemLogin() {
  std::array<char, 256> host{};
  if (::gethostname(host.data(), host.size() - 1) != 0) host = {"LOCAL"};
  const passwd* user = ::getpwuid(::geteuid());
  const std::string name = user != nullptr ? user->pw_name : std::to_string(::geteuid());
  return UpperName(host.data()) + "\\" + name;
}

}  // namespace

bool IsServableName(std::string_view name) {
  const auto fits = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '$' || c == '#' || c == ' ' || static_cast<signed char>(c) < 0;
  };
  return !name.empty() && name.size() <= kLongestName && name.front() != ' ' && name.back() != ' ' &&
         std::all_of(name.begin(), name.end(), fits);
}

Server::Server(const fs::path& serversFolder, std::string_view name, const ConnectionString& wanted,
               std::string_view password, int timeoutSeconds, MissingServer missing)
    : name_(UpperName(name)), timeoutSeconds_(timeoutSeconds) {
  if (!IsServableName(name)) throw NoServer(name);
  folder_ = serversFolder / name_;
  if (!fs::exists(FileOf(kMaster))) {
    const bool administrator = wanted.integratedSecurity ||
                               (UpperName(wanted.login) == UpperName(kAdministrator) && password.empty());
    const bool asked = missing == MissingServer::Make && UpperName(wanted.database) == UpperName(kMaster);
    if (!asked || !administrator) throw NoServer(name_);
    MakeMaster();
  }
  master_ =
      std::make_unique<Store>(FileOf(kMaster), std::string(kMaster), OpenMode::Existing, timeoutSeconds);
  Enter(wanted, password);
}

fs::path Server::FileOf(std::string_view database) const {
  return folder_ / kDataFolder / (UpperName(database) + ".mdf");
}

/// Made under another name and put in place with all its tables, so that nobody sees half a server.
void Server::MakeMaster() {
  std::error_code failure;
  for (const std::string_view part : {kDataFolder, kBackupFolder}) {
    fs::create_directories(folder_ / part, failure);
    if (failure) throw NoServer(name_);
  }
  fs::permissions(folder_, fs::perms::owner_all, failure);
  const fs::path temporary = FileOf(kMaster).string() + fmt::format(".{}", ::getpid());
  RemoveFiles(temporary);
  {
    Store store(temporary, std::string(kMaster), OpenMode::Create, timeoutSeconds_);
    store.Run("PRAGMA journal_mode=WAL");
    Catalogue::Create(store);
    store.Run(kMasterTables);
    store.Run(fmt::format("INSERT INTO sqlite_sequence (name, seq) VALUES ('$databases', {})",
                          kFirstDatabaseId - 1));
    store.Run(
        fmt::format(R"(INSERT INTO "$logins" VALUES ('{}', '{}', 1))", kAdministrator, HashPassword("")));
  }
  // A link fails when another process was first; then that one's server stands.
  fs::create_hard_link(temporary, FileOf(kMaster), failure);
  RemoveFiles(temporary);
  SyncFolder(folder_ / kDataFolder);
  if (!fs::exists(FileOf(kMaster))) throw NoServer(name_);
}

void Server::Enter(const ConnectionString& wanted, std::string_view password) {
  const std::string name = wanted.integratedSecurity ? SystemLogin() : wanted.login;
  const Error refused =
      Failed(Code::LoginFailed, fmt::format("O início de sessão do utilizador '{}' falhou", name));
  if (wanted.integratedSecurity) {
    if (!OwnedByThisUser(folder_)) throw refused;
    login_ = {name, true};
    return;
  }
  Prepared row = master_->Prepare(R"(SELECT name, password, sysadmin FROM "$logins" WHERE name=?1)");
  row.Bind(1, std::string_view(name));
  if (!row.Step() || !MatchesPassword(password, row.Text(1))) throw refused;
  login_ = {std::string(row.Text(0)), row.Integer(2) != 0};
}

std::vector<DatabaseEntry> Server::Databases() {
  std::vector<DatabaseEntry> entries{{1, std::string(kMaster)}};
  Prepared rows = master_->Prepare(R"(SELECT id, name FROM "$databases" ORDER BY id)");
  while (rows.Step()) entries.push_back({rows.Integer(0), std::string(rows.Text(1))});
  return entries;
}

std::vector<LoginEntry> Server::Logins() {
  std::vector<LoginEntry> entries;
  Prepared rows = master_->Prepare(R"(SELECT name, sysadmin FROM "$logins" ORDER BY name)");
  while (rows.Step()) entries.push_back({std::string(rows.Text(0)), rows.Integer(1) != 0});
  return entries;
}

std::optional<DatabaseEntry> Server::FindDatabase(std::string_view database) {
  for (DatabaseEntry& entry : Databases()) {
    if (SameName(entry.name, database)) return std::move(entry);
  }
  return std::nullopt;
}

std::unique_ptr<Store> Server::OpenDatabase(const DatabaseEntry& entry) {
  auto store = std::make_unique<Store>(FileOf(entry.name), entry.name, OpenMode::Existing, timeoutSeconds_);
  // Nothing changes as a rule; a DROP DATABASE that was killed half-way may have left the mode.
  store->Run("PRAGMA journal_mode=WAL");
  return store;
}

void Server::CreateDatabase(std::string_view database) {
  if (!IsServableName(database)) throw Failed(Code::BadName, "O nome da base de dados não é válido");
  // The write on master keeps others out until the new file stands in its place and is listed.
  AtomicWrite write(*master_);
  if (FindDatabase(database)) {
    throw Failed(Code::DatabaseExists, fmt::format("A base de dados '{}' já existe", database));
  }
  const fs::path file = FileOf(database);
  const fs::path temporary = file.string() + ".new";
  RemoveFiles(temporary);
  RemoveFiles(file);
  {
    Store store(temporary, std::string(database), OpenMode::Create, timeoutSeconds_);
    store.Run("PRAGMA journal_mode=WAL");
    Catalogue::Create(store);
  }
  fs::rename(temporary, file);
  SyncFolder(folder_ / kDataFolder);
  Prepared insert = master_->Prepare(R"(INSERT INTO "$databases" (name) VALUES (?1))");
  insert.Bind(1, database);
  insert.Run();
  write.Keep();
}

void Server::DropDatabase(std::string_view database) {
  AtomicWrite write(*master_);
  const auto entry = FindDatabase(database);
  if (!entry || entry->id < kFirstDatabaseId) {
    throw Failed(Code::NoObjectToDrop,
                 fmt::format("Não é possível eliminar a base de dados '{}', porque não existe", database));
  }
  try {
    // Leaving WAL mode takes the file for this connection alone: any other that has it open stands in the way.
    Store store(FileOf(entry->name), entry->name, OpenMode::Existing, 0);
    store.Run("PRAGMA journal_mode=DELETE");
    store.Run("BEGIN EXCLUSIVE");
  } catch (const Error& failure) {
    if (failure.Kind() == Failure::Timeout) {
      throw Failed(Code::InUse,
                   fmt::format("A base de dados '{}' está a ser usada e não pode ser eliminada", database));
    }
    // A damaged or missing file is no reason to keep its name on the list.
  }
  Prepared remove = master_->Prepare(R"(DELETE FROM "$databases" WHERE id=?1)");
  remove.Bind(1, entry->id);
  remove.Run();
  write.Keep();
  RemoveFiles(FileOf(entry->name));
}

}  // namespace korvel::data::embedded
