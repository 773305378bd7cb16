#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/store.h"

namespace korvel::data::embedded {

constexpr std::string_view kAdministrator = "sa";
/// The group that stands for the owner of the server's folder.
constexpr std::string_view kOwners = "BUILTIN\\Administrators";

/// Who may enter a server. The sid stays with the login for life, is never given again and ties users to it.
struct LoginEntry {
  std::string sid;
  std::string name;
  std::string password;  // as password.h keeps it; blank for an account of the system
  std::string database;  // where it starts when it names none
  unsigned roles = 0;    // of the server
  bool windows = false;
  bool group = false;

  bool Is(unsigned role) const { return (roles & role) != 0; }
  bool IsSysAdmin() const;
};

/// The logins of a server, in the file of its master. Names compare as texts do. A change raises the file's version,
/// so that every connection takes notice; each change is whole, whatever process makes it.
class LoginList {
 public:
  explicit LoginList(Store& master) : master_(master) {}

  /// Makes the table in a new master, with `sa` (blank password) and the owners' group.
  static void Create(Store& master);

  /// By name.
  std::vector<LoginEntry> All();
  std::optional<LoginEntry> Find(std::string_view name);
  std::optional<LoginEntry> FindSid(std::string_view sid);
  /// Throws 15007 when there is none.
  LoginEntry Get(std::string_view name);

  /// Throws 15006 for a name that could not be one, 15025 for one that is there.
  void Add(std::string_view name, std::string_view password, std::string_view database);
  /// An account "MACHINE\user". Throws 15407 for a name of another form, 15025 for one that is there.
  void AddWindows(std::string_view name);
  void SetPassword(const LoginEntry& login, std::string_view password);
  void SetRole(const LoginEntry& login, unsigned role, bool member);
  void Remove(const LoginEntry& login);

 private:
  void Insert(const LoginEntry& login);

  Store& master_;
};

/// Refuses what could not be the name of a login or user, or could end a text that holds it: blank, over 128
/// characters, with quotes, brackets, ";" or control characters (15006).
void RequirePrincipalName(std::string_view name);
/// A new sid.
std::string MakeSid();

}  // namespace korvel::data::embedded
