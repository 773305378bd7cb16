#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/principal_changes.h"
#include "data/embedded/procedures/procedure.h"
#include "data/embedded/users.h"

namespace korvel::data::embedded {
namespace {

const Role& DatabaseRoleNamed(std::string_view name) {
  if (const Role* role = FindRole(DatabaseRoles(), name)) return *role;
  throw Failed(Code::NoRole, fmt::format("O papel '{}' não existe na base de dados corrente", name));
}

RowTables AddUserNamed(const Site& site) {
  const std::string& login = *site.arguments[0];
  const std::string user = site.arguments[1].value_or("");
  const Role* role = site.arguments[2] ? &DatabaseRoleNamed(*site.arguments[2]) : nullptr;
  if (role != nullptr) site.session.Require(Right::ManageRoles);
  AddUser(site.session, login, user);
  if (role != nullptr) ChangeDatabaseRole(site.session, user.empty() ? login : user, *role, true);
  return {};
}

RowTables DropUserNamed(const Site& site) {
  DropUser(site.session, *site.arguments[0]);
  return {};
}

template <bool member>
RowTables SetRole(const Site& site) {
  ChangeDatabaseRole(site.session, *site.arguments[1], DatabaseRoleNamed(*site.arguments[0]), member);
  return {};
}

RowTables SetOwner(const Site& site) {
  ChangeOwner(site.session, *site.arguments[0]);
  return {};
}

/// A user of the current database with the login behind it, "dbo" first.
struct KnownUser {
  UserEntry user;
  std::optional<LoginEntry> login;
};

std::vector<KnownUser> KnownUsers(const Site& site) {
  LoginList logins = site.view.server.Logins();
  const std::string owner = site.session.GetDatabase(site.view.database).owner;
  std::vector<KnownUser> known{
      {{kOwnerNumber, std::string(kOwnerUser), owner, database_role::kOwner}, logins.FindSid(owner)}};
  for (UserEntry& user : UserList(site.session.Current()->File()).All()) {
    auto login = logins.FindSid(user.sid);
    known.push_back({std::move(user), std::move(login)});
  }
  return known;
}

std::vector<OwnedStored> UserRow(const KnownUser& known, std::string_view role) {
  return {known.user.name,
          std::string(role),
          known.login ? OwnedStored(known.login->name) : OwnedStored(Null{}),
          known.login ? OwnedStored(known.login->database) : OwnedStored(Null{}),
          known.user.number,
          known.user.sid};
}

/// One row for each role of a user, "public" for one that has none.
RowTables HelpUser(const Site& site) {
  RowTable table{{{"UserName", kName},
                  {"GroupName", kName},
                  {"LoginName", kName},
                  {"DefDBName", kName},
                  {"UserID", kSmall},
                  {"SID", kSid}},
                 {}};
  for (const KnownUser& known : KnownUsers(site)) {
    if (site.arguments[0] && !SameName(known.user.name, *site.arguments[0])) continue;
    for (const Role& role : DatabaseRoles()) {
      if ((known.user.roles & role.bit) != 0) table.rows.push_back(UserRow(known, role.name));
    }
    if (known.user.roles == 0) table.rows.push_back(UserRow(known, "public"));
  }
  if (site.arguments[0] && table.rows.empty()) {
    throw Failed(Code::NotAUser, fmt::format("O nome '{}' não é um utilizador, papel ou início de sessão",
                                             *site.arguments[0]));
  }
  return {std::move(table)};
}

RowTables HelpRoleMember(const Site& site) {
  RowTable table{{{"DbRole", kName}, {"MemberName", kName}, {"MemberSID", kSid}}, {}};
  const Role* only = site.arguments[0] ? &DatabaseRoleNamed(*site.arguments[0]) : nullptr;
  const auto users = KnownUsers(site);
  for (const Role& role : DatabaseRoles()) {
    if (only != nullptr && only != &role) continue;
    for (const KnownUser& known : users) {
      if ((known.user.roles & role.bit) == 0) continue;
      table.rows.push_back({std::string(role.name), known.user.name, known.user.sid});
    }
  }
  return {std::move(table)};
}

constexpr Procedure kUserProcedures[] = {
    {"sp_adduser", {"@loginame", "@name_in_db", "@grpname"}, 1, AddUserNamed},
    {"sp_grantdbaccess", {"@loginame", "@name_in_db"}, 1, AddUserNamed},
    {"sp_dropuser", {"@name_in_db"}, 1, DropUserNamed},
    {"sp_revokedbaccess", {"@name_in_db"}, 1, DropUserNamed},
    {"sp_addrolemember", {"@rolename", "@membername"}, 2, SetRole<true>},
    {"sp_droprolemember", {"@rolename", "@membername"}, 2, SetRole<false>},
    {"sp_changedbowner", {"@loginame", "@map"}, 1, SetOwner},
    {"sp_helpuser", {"@name_in_db"}, 0, HelpUser},
    {"sp_helprolemember", {"@rolename"}, 0, HelpRoleMember},
};

}  // namespace

std::span<const Procedure> UserProcedures() {
  return kUserProcedures;
}

}  // namespace korvel::data::embedded
