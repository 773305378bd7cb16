#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/principal_changes.h"
#include "data/embedded/procedures/procedure.h"
#include "data/embedded/roles.h"

namespace korvel::data::embedded {
namespace {

RowTables AddLogin(const Site& site) {
  CreateLogin create;
  create.name = *site.arguments[0];
  create.password = site.arguments[1].value_or("");
  create.database = site.arguments[2].value_or("");
  Apply(create, site.session);
  return {};
}

RowTables GrantLogin(const Site& site) {
  CreateLogin create;
  create.name = *site.arguments[0];
  create.windows = true;
  Apply(create, site.session);
  return {};
}

RowTables DropLoginNamed(const Site& site) {
  Apply(DropLogin{*site.arguments[0]}, site.session);
  return {};
}

RowTables SetPassword(const Site& site) {
  if (!site.arguments[1])
    throw Failed(Code::ProcedureArguments, "O procedimento 'sp_password' espera '@new'");
  AlterLogin alter;
  alter.name = site.arguments[2].value_or(site.session.Host().Login().name);
  alter.oldPassword = site.arguments[0];
  alter.password = *site.arguments[1];
  Apply(alter, site.session);
  return {};
}

const Role& ServerRoleNamed(std::string_view name) {
  if (const Role* role = FindRole(ServerRoles(), name)) return *role;
  throw Failed(Code::NoServerRole, fmt::format("'{}' não é um papel fixo do servidor", name));
}

template <bool member>
RowTables SetServerRole(const Site& site) {
  ChangeServerRole(site.session, *site.arguments[0], ServerRoleNamed(*site.arguments[1]), member);
  return {};
}

RowTables HelpServerRoleMember(const Site& site) {
  RowTable table{{{"ServerRole", kName}, {"MemberName", kName}, {"MemberSID", kSid}}, {}};
  const Role* only = site.arguments[0] ? &ServerRoleNamed(*site.arguments[0]) : nullptr;
  for (const Role& role : ServerRoles()) {
    if (only != nullptr && only != &role) continue;
    for (const LoginEntry& login : site.view.server.Logins().All()) {
      if (login.Is(role.bit)) table.rows.push_back({std::string(role.name), login.name, login.sid});
    }
  }
  return {std::move(table)};
}

RowTables HelpServerRole(const Site&) {
  RowTable table{{{"ServerRole", kName}}, {}};
  for (const Role& role : ServerRoles()) table.rows.push_back({std::string(role.name)});
  return {std::move(table)};
}

std::vector<OwnedStored> AccountLine(const LoginEntry& login) {
  return {login.name, std::string(login.group ? "group" : "user"),
          std::string(login.IsSysAdmin() ? "admin" : "user"), login.name, Null{}};
}

/// Accounts of the operating system: all that may enter, or one. Each has its permission by itself, by no path.
RowTables LoginInfo(const Site& site) {
  RowTable table{{{"account name", kName},
                  {"type", Varchar(8)},
                  {"privilege", Varchar(9)},
                  {"mapped login name", kName},
                  {"permission path", kName}},
                 {}};
  LoginList logins = site.view.server.Logins();
  if (!site.arguments[0]) {
    for (const LoginEntry& login : logins.All()) {
      if (login.windows) table.rows.push_back(AccountLine(login));
    }
  } else if (const auto found = logins.Find(*site.arguments[0]); found && found->windows) {
    table.rows.push_back(AccountLine(*found));
  }
  return {std::move(table)};
}

constexpr Procedure kLoginProcedures[] = {
    {"sp_addlogin", {"@loginame", "@passwd", "@defdb", "@deflanguage", "@sid", "@encryptopt"}, 1, AddLogin},
    {"sp_grantlogin", {"@loginame"}, 1, GrantLogin},
    {"sp_droplogin", {"@loginame"}, 1, DropLoginNamed},
    {"sp_revokelogin", {"@loginame"}, 1, DropLoginNamed},
    {"sp_password", {"@old", "@new", "@loginame"}, 0, SetPassword},
    {"sp_addsrvrolemember", {"@loginame", "@rolename"}, 2, SetServerRole<true>},
    {"sp_dropsrvrolemember", {"@loginame", "@rolename"}, 2, SetServerRole<false>},
    {"sp_helpsrvrolemember", {"@srvrolename"}, 0, HelpServerRoleMember},
    {"sp_helpsrvrole", {}, 0, HelpServerRole},
    {"xp_logininfo", {"@acctname"}, 0, LoginInfo},
};

}  // namespace

std::span<const Procedure> LoginProcedures() {
  return kLoginProcedures;
}

}  // namespace korvel::data::embedded
