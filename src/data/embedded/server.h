#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection_string.h"
#include "data/embedded/database_states.h"
#include "data/embedded/devices.h"
#include "data/embedded/logins.h"
#include "data/embedded/open.h"
#include "data/embedded/store.h"

namespace korvel::data::embedded {

/// A server's folder, entered by one login: the list of databases and logins, kept in the file of `master`.
class Server {
 public:
  /// Makes the server when it is absent, `host` says so and `wanted` asks for master. Throws Error: NoServer,
  /// WrongLogin (18456).
  Server(const EmbeddedHost& host, const ConnectionString& wanted, std::string_view password,
         int timeoutSeconds);

  const std::string& Name() const { return name_; }
  /// "9.00.5000.00", as the settings say.
  const std::string& Version() const { return version_; }
  /// Who entered, as he was then; RolesNow() are his server roles at this moment, nothing once the login has gone.
  const LoginEntry& Login() const { return login_; }
  std::optional<unsigned> RolesNow();
  int TimeoutSeconds() const { return timeoutSeconds_; }

  DeviceList Devices() { return DeviceList(*master_); }
  LoginList Logins() { return LoginList(*master_); }
  DatabaseList States() { return DatabaseList(*master_); }
  /// A number that moves with every change of logins and of databases' states, whichever process makes it.
  std::int64_t Changes();
  /// Where the connections of all processes are listed.
  std::filesystem::path ProcessFile() const { return folder_ / "processes"; }

  /// master first, then the others in the order in which they were made.
  std::vector<DatabaseEntry> Databases() { return States().All(); }
  /// Nothing when there is no such database.
  std::optional<DatabaseEntry> FindDatabase(std::string_view database);
  /// Opens a database of the list. Throws Error.
  std::unique_ptr<Store> OpenDatabase(const DatabaseEntry& entry);
  /// Where the database of that name is kept, or would be.
  std::filesystem::path FileOf(std::string_view database) const;
  /// Where backups go that name no other folder.
  std::filesystem::path BackupFolder() const;

  /// Whole or not at all, also when the process is killed. It belongs to the login. Throws 1801 when it is there
  /// already.
  void CreateDatabase(std::string_view database);
  /// Puts a whole and closed file in the place of a database, whole or not at all; one that is not listed is made.
  /// Throws 3101 when a connection has it open.
  void PlaceDatabase(std::string_view database, const std::filesystem::path& whole);
  /// Nobody may be using it.
  void DropDatabase(const DatabaseEntry& entry);

 private:
  void Enter(const ConnectionString& wanted, std::string_view password);
  bool EnterWithPassword(std::string_view name, std::string_view password);
  bool EnterAsSystemUser();
  LoginEntry AddOwner(const std::string& account);
  void MakeMaster();
  void CloseLogs(const DatabaseEntry& entry);

  std::string name_;
  std::string version_;
  std::filesystem::path folder_;
  int timeoutSeconds_;
  LoginEntry login_;
  bool ownsFolder_ = false;
  std::unique_ptr<Store> master_;
  Prepared changes_;
};

/// Whether a name can be a server's or a database's: letters, digits, "_", "-", "$", "#" and inner blanks.
bool IsServableName(std::string_view name);
/// As of data::IsMissing.
bool IsMissing(const EmbeddedHost& host);

}  // namespace korvel::data::embedded
