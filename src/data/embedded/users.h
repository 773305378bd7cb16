#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/logins.h"

namespace korvel::data::embedded {

/// A user of one database, tied to a login by its sid. It outlives the login, and then belongs to nobody.
struct UserEntry {
  std::int64_t number = 0;
  std::string name;
  std::string sid;
  unsigned roles = 0;
};

constexpr std::string_view kOwnerUser = "dbo";
constexpr std::string_view kGuest = "guest";
constexpr int kOwnerNumber = 1;
constexpr int kGuestNumber = 2;

/// The users that were added to a database, in its own file, so that they go with a backup. The owner, who is "dbo", is
/// not among them. A change raises the file's version, so that every connection takes notice.
class UserList {
 public:
  explicit UserList(Store& file) : file_(file) {}

  /// Makes the table in a new database.
  static void Create(Store& file);

  /// In the order in which they came.
  std::vector<UserEntry> All();
  std::optional<UserEntry> Find(std::string_view name);
  std::optional<UserEntry> FindSid(std::string_view sid);
  /// Throws 15008 when there is none.
  UserEntry Get(std::string_view name);

  /// Throws 15006 for a name that could not be one, 15023 for one that is there, 15063 when the login has a user.
  void Add(std::string_view name, const LoginEntry& login);
  void SetRole(const UserEntry& user, unsigned role, bool member);
  void Remove(const UserEntry& user);

 private:
  Store& file_;
};

}  // namespace korvel::data::embedded
