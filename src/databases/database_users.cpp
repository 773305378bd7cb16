#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "data/sql_text.h"
#include "databases/attempts.h"
#include "databases/logins.h"
#include "databases/names.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

constexpr std::array<std::string_view, 3> kGrantedRoles{"db_datawriter", "db_datareader", "db_owner"};
constexpr std::string_view kServerAdministrator = "sa";

// The server's own numbers.
constexpr int kUserExists = 15023;
constexpr int kLoginHasAnotherUser = 15063;

void Use(data::Connection& connection, std::string_view database) {
  connection.Execute("use " + AsName(database));
}

void ForEachRole(data::Connection& connection, std::string_view procedure, std::string_view user) {
  for (const std::string_view role : kGrantedRoles) {
    connection.Execute(fmt::format("{} '{}',{}", procedure, role, QuotedName(user)));
  }
}

/// False when the login has the run of the database under another name already, as its owner does.
bool AddUser(data::Connection& connection, const std::string& login) {
  try {
    connection.Execute(fmt::format("sp_adduser {0},{0}", login));
  } catch (const data::Error& error) {
    if (error.Native() == kLoginHasAnotherUser) return false;
    if (error.Native() != kUserExists) throw;
  }
  return true;
}

std::vector<std::string> DatabaseNames(data::Connection& master) {
  std::vector<std::string> names;
  auto rows = master.Query("Select Name from SysDataBases");
  for (; !rows.Eof(); rows.MoveNext()) names.emplace_back(rows.Text("Name"));
  return names;
}

/// The users of the current database that have that login, the owner apart.
std::vector<std::string> UsersOfLogin(data::Connection& connection, std::string_view login) {
  std::vector<std::string> users;
  auto rows = connection.Query("sp_helpuser");
  for (; !rows.Eof(); rows.MoveNext()) {
    const std::string user(toolkit::Trim(rows.Text("UserName")));
    const bool same = toolkit::SameIgnoringCase(toolkit::Trim(rows.Text("LoginName")), login);
    const bool listed = std::ranges::find(users, user) != users.end();  // one row a role
    if (same && !listed && !toolkit::SameIgnoringCase(user, "dbo")) users.push_back(user);
  }
  return users;
}

}  // namespace

bool GrantAcess(const session::Context& context, std::string_view database, std::string_view login) {
  return AttemptOn(context, "master", [&](data::Connection& connection) {
    Use(connection, database);
    connection.Execute("sp_grantdbaccess " + QuotedName(login));
    ForEachRole(connection, "sp_addrolemember", login);
  });
}

bool RevokeAccess(const session::Context& context, std::string_view database, std::string_view user) {
  return AttemptOn(context, "master", [&](data::Connection& connection) {
    Use(connection, database);
    ForEachRole(connection, "sp_droprolemember", user);
    connection.Execute("sp_revokedbaccess " + QuotedName(user));
  });
}

bool AddOwnerToDB(const session::Context& context, std::string_view database, std::string_view login) {
  return AttemptOn(context, "master", [&](data::Connection& connection) {
    const std::string quoted = QuotedName(login);
    Use(connection, database);
    if (AddUser(connection, quoted)) connection.Execute("sp_addrolemember 'db_owner', " + quoted);
  });
}

bool DropUserFromDB(const session::Context& context, std::string_view database, std::string_view user) {
  return AttemptOn(context, "master", [&](data::Connection& connection) {
    Use(connection, database);
    connection.Execute("sp_dropuser " + QuotedName(user));
  });
}

bool CheckUserInDB(const session::Context& context, std::string_view database, std::string_view user) {
  bool found = false;
  return AttemptOn(context, "master",
                   [&](data::Connection& connection) {
                     Use(connection, database);
                     const auto rows = connection.Query("sp_helpuser " + QuotedName(user));
                     found = !rows.Eof() && rows.Has("loginname") && !rows.IsNull("loginname");
                   }) &&
         found;
}

void DeleteUserFromAllDatabases(const session::Context& context, std::string_view user) {
  if (toolkit::SameIgnoringCase(toolkit::Trim(user), kServerAdministrator)) return;
  AttemptOn(context, "master", [&](data::Connection& connection) {
    const std::string quoted = QuotedName(user);
    for (const std::string& database : DatabaseNames(connection)) {
      Attempt(context, [&] {
        Use(connection, database);
        connection.Execute("sp_Dropuser " + quoted);
      });
    }
  });
}

void ChangeDatabaseOwner(data::Connection& connection, std::string_view database, std::string_view login) {
  RequireName(login);
  Use(connection, database);
  for (const std::string& user : UsersOfLogin(connection, login)) {
    connection.Execute("sp_dropuser " + AsArgument(user));
  }
  if (std::ranges::find(kServerDatabases, toolkit::Lower(database)) == kServerDatabases.end()) {
    connection.Execute("sp_changedbowner " + QuotedName(login));
  }
}

}  // namespace korvel::databases
