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
#include "data/embedded/files.h"
#include "data/embedded/password.h"
#include "data/embedded/roles.h"

namespace korvel::data::embedded {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestName = 100;

constexpr std::string_view kDataFolder = "data";
constexpr std::string_view kBackupFolder = "backup";

std::string UpperName(std::string_view name) {
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

fs::path FileIn(const fs::path& server, std::string_view database) {
  return server / kDataFolder / (UpperName(database) + ".mdf");
}

Error NoServer(std::string_view name) {
  return Error(Failure::NoServer, 17, "08001",
               fmt::format("O servidor {} não existe ou o acesso foi negado", name));
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

bool IsMissing(const EmbeddedHost& host) {
  return IsServableName(host.name) && !fs::exists(FileIn(host.folder / UpperName(host.name), kMaster));
}

Server::Server(const EmbeddedHost& host, const ConnectionString& wanted, std::string_view password,
               int timeoutSeconds)
    : name_(UpperName(host.name)), version_(host.version), timeoutSeconds_(timeoutSeconds) {
  if (!IsServableName(host.name)) throw NoServer(host.name);
  folder_ = host.folder / name_;
  if (!fs::exists(FileOf(kMaster))) {
    const bool administrator =
        wanted.integratedSecurity || (SameName(wanted.login, kAdministrator) && password.empty());
    const bool asked = host.missing == MissingServer::Make && SameName(wanted.database, kMaster);
    if (!asked || !administrator) throw NoServer(name_);
    MakeMaster();
  }
  master_ =
      std::make_unique<Store>(FileOf(kMaster), std::string(kMaster), OpenMode::Existing, timeoutSeconds);
  changes_ = master_->Prepare("PRAGMA user_version");
  Enter(wanted, password);
}

fs::path Server::FileOf(std::string_view database) const {
  return FileIn(folder_, database);
}

fs::path Server::BackupFolder() const {
  return fs::absolute(folder_ / kBackupFolder);
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
  RemoveDatabaseFiles(temporary);
  {
    Store store(temporary, std::string(kMaster), OpenMode::Create, timeoutSeconds_);
    store.Run("PRAGMA journal_mode=WAL");
    AtomicWrite write(store);
    Catalogue::Create(store);
    DatabaseList::Create(store);
    LoginList::Create(store);
    DeviceList::Create(store);
    write.Keep();
  }
  // A link fails when another process was first; then that one's server stands.
  fs::create_hard_link(temporary, FileOf(kMaster), failure);
  RemoveDatabaseFiles(temporary);
  SyncFolder(folder_ / kDataFolder);
  if (!fs::exists(FileOf(kMaster))) throw NoServer(name_);
}

void Server::Enter(const ConnectionString& wanted, std::string_view password) {
  const std::string name = wanted.integratedSecurity ? SystemLogin() : wanted.login;
  if (wanted.integratedSecurity && EnterAsSystemUser()) return;
  if (!wanted.integratedSecurity && EnterWithPassword(name, password)) return;
  throw Failed(Code::LoginFailed, fmt::format("O início de sessão do utilizador '{}' falhou", name));
}

/// An unknown login costs as much time as a wrong password.
bool Server::EnterWithPassword(std::string_view name, std::string_view password) {
  const auto found = Logins().Find(name);
  const LoginEntry login = found && !found->windows ? *found : LoginEntry();
  if (!MatchesPassword(login.name, password, login.password)) return false;
  login_ = login;
  return true;
}

/// An account of the operating system enters when it was added; that of the folder's owner adds itself.
bool Server::EnterAsSystemUser() {
  ownsFolder_ = OwnedByThisUser(folder_);
  auto found = Logins().Find(SystemLogin());
  if (!found && ownsFolder_) found = AddOwner(SystemLogin());
  if (!found || !found->windows) return false;
  login_ = *found;
  return true;
}

/// A sysadmin by name, not by the owners' group alone: programs look for people in the list of logins.
LoginEntry Server::AddOwner(const std::string& account) {
  AtomicWrite write(*master_);
  LoginList logins = Logins();
  if (!logins.Find(account)) {
    logins.AddWindows(account);
    logins.SetRole(logins.Get(account), server_role::kSysAdmin, true);
  }
  write.Keep();
  return logins.Get(account);
}

std::optional<unsigned> Server::RolesNow() {
  if (ownsFolder_) return server_role::kSysAdmin;
  const auto found = Logins().FindSid(login_.sid);
  return found ? std::optional(found->roles) : std::nullopt;
}

std::int64_t Server::Changes() {
  const std::int64_t now = changes_.Step() ? changes_.Integer(0) : 0;
  changes_.Reset();
  return now;
}

std::optional<DatabaseEntry> Server::FindDatabase(std::string_view database) {
  return States().Find(database);
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
  RemoveDatabaseFiles(temporary);
  RemoveDatabaseFiles(file);
  {
    Store store(temporary, std::string(database), OpenMode::Create, timeoutSeconds_);
    store.Run("PRAGMA journal_mode=WAL");
    AtomicWrite tables(store);
    Catalogue::Create(store);
    tables.Keep();
  }
  fs::rename(temporary, file);
  SyncFolder(folder_ / kDataFolder);
  States().Add(database, login_.sid);
  write.Keep();
}

/// Brings a file to stand alone, without logs that would belong to what takes its place.
void Server::CloseLogs(const DatabaseEntry& entry) {
  try {
    // Leaving WAL mode takes the file for this connection alone.
    Store store(FileOf(entry.name), entry.name, OpenMode::Existing, 0);
    store.Run("PRAGMA journal_mode=DELETE");
  } catch (const Error& failure) {
    if (failure.Kind() == Failure::Timeout) {
      throw Failed(Code::RestoreInUse,
                   fmt::format("A base de dados '{}' está a ser usada por outros", entry.name));
    }
    if (failure.Native() == static_cast<int>(Code::DiskFull)) throw;
    // A damaged or missing file is what backups are for.
  }
  RemoveLogFiles(FileOf(entry.name));
}

void Server::PlaceDatabase(std::string_view database, const fs::path& whole) {
  if (!IsServableName(database)) throw Failed(Code::BadName, "O nome da base de dados não é válido");
  AtomicWrite write(*master_);
  const auto entry = FindDatabase(database);
  const fs::path file = FileOf(database);
  if (entry) {
    CloseLogs(*entry);
  } else {
    RemoveDatabaseFiles(file);
  }
  std::error_code failure;
  fs::rename(whole, file, failure);
  if (failure) {
    throw Failed(Code::BackupNotWritten,
                 fmt::format("O ficheiro da base de dados '{}' não pôde ser substituído", database));
  }
  SyncFolder(folder_ / kDataFolder);
  if (!entry) States().Add(database, login_.sid);
  write.Keep();
}

void Server::DropDatabase(const DatabaseEntry& entry) {
  States().Remove(entry.id);
  // A connection that was killed may still have the old files open, and finds nothing to write there.
  RemoveDatabaseFiles(FileOf(entry.name));
}

}  // namespace korvel::data::embedded
