#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection_string.h"
#include "data/embedded/open.h"
#include "data/embedded/store.h"

namespace korvel::data::embedded {

/// Version that xp_msver tells.
constexpr std::string_view kProductVersion = "9.00.5000.00";
constexpr std::string_view kMaster = "master";
constexpr std::string_view kAdministrator = "sa";

struct DatabaseEntry {
  std::int64_t id = 0;
  std::string name;
};

struct LoginEntry {
  std::string name;
  bool sysAdmin = false;
};

/// A server's folder, entered by one login: the list of databases and logins, kept in the file of `master`.
class Server {
 public:
  /// Makes the server when it is absent, `missing` says so and `wanted` asks for master. Throws Error: NoServer, WrongLogin (18456).
  Server(const std::filesystem::path& serversFolder, std::string_view name, const ConnectionString& wanted,
         std::string_view password, int timeoutSeconds, MissingServer missing);

  const std::string& Name() const { return name_; }
  const LoginEntry& Login() const { return login_; }
  int TimeoutSeconds() const { return timeoutSeconds_; }

  /// master first, then the others in the order in which they were made.
  std::vector<DatabaseEntry> Databases();
  std::vector<LoginEntry> Logins();
  /// Nothing when there is no such database.
  std::optional<DatabaseEntry> FindDatabase(std::string_view database);
  /// Opens a database of the list. Throws Error.
  std::unique_ptr<Store> OpenDatabase(const DatabaseEntry& entry);
  /// Where the database of that name is kept, or would be.
  std::filesystem::path FileOf(std::string_view database) const;

  /// Whole or not at all, also when the process is killed. Throws 1801 when it is there already.
  void CreateDatabase(std::string_view database);
  /// Throws 3701 when there is none, 3702 when a connection uses it.
  void DropDatabase(std::string_view database);

 private:
  void Enter(const ConnectionString& wanted, std::string_view password);
  void MakeMaster();

  std::string name_;
  std::filesystem::path folder_;
  int timeoutSeconds_;
  LoginEntry login_;
  std::unique_ptr<Store> master_;
};

/// Whether a name can be a server's or a database's: letters, digits, "_", "-", "$", "#" and inner blanks.
bool IsServableName(std::string_view name);

}  // namespace korvel::data::embedded
