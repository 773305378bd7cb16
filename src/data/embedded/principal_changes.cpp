#include "data/embedded/principal_changes.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/password.h"
#include "data/embedded/users.h"

namespace korvel::data::embedded {
namespace {

void RequireOutside(const Session& session) {
  if (session.Values().transactionCount == 0) return;
  throw Failed(Code::NotInUserTransaction,
               "Inícios de sessão, utilizadores e papéis não podem ser alterados dentro de uma transacção");
}

Error NoRight() {
  return Failed(Code::NoRight, "O utilizador não tem permissão para executar esta acção");
}

Error Special(std::string_view name) {
  return Failed(Code::SpecialPrincipal,
                fmt::format("O principal especial '{}' não pode ser usado aqui", name));
}

bool IsSysAdmin(Session& session) {
  return (session.Now().serverRoles & server_role::kSysAdmin) != 0;
}

/// The right over a login: over a sysadmin only another one has it.
void RequireOver(Session& session, const LoginEntry& login) {
  session.Require(Right::ManageLogins);
  if (login.IsSysAdmin() && !IsSysAdmin(session)) throw NoRight();
}

bool IsBuiltIn(const LoginEntry& login) {
  return SameName(login.name, kAdministrator) || SameName(login.name, kOwners);
}

constexpr std::size_t kLongestPassword = 128;

void RequirePassword(std::string_view password) {
  if (password.size() <= kLongestPassword) return;
  throw Failed(Code::BadPrincipalName, "A palavra-passe é demasiado comprida");
}

}  // namespace

void Apply(const CreateLogin& create, Session& session) {
  RequireOutside(session);
  session.Require(Right::ManageLogins);
  RequirePassword(create.password);
  LoginList logins = session.Host().Logins();
  if (create.windows) return logins.AddWindows(create.name);
  const std::string database =
      create.database.empty() ? std::string(kMaster) : session.GetDatabase(create.database).name;
  logins.Add(create.name, create.password, database);
}

void Apply(const AlterLogin& alter, Session& session) {
  RequireOutside(session);
  RequirePassword(alter.password);
  LoginList logins = session.Host().Logins();
  const bool own = SameName(alter.name, session.Host().Login().name);
  // Without the right nobody learns which logins there are.
  if (!own) session.Require(Right::ManageLogins);
  const LoginEntry login = logins.Get(alter.name);
  if (login.windows) throw Special(alter.name);
  if (!own || !alter.oldPassword) RequireOver(session, login);
  if (alter.oldPassword && !MatchesPassword(login.name, *alter.oldPassword, login.password)) {
    throw Failed(Code::OldPasswordWrong,
                 "A palavra-passe antiga não está correcta. A palavra-passe não foi alterada");
  }
  logins.SetPassword(login, alter.password);
}

void Apply(const DropLogin& drop, Session& session) {
  RequireOutside(session);
  session.Require(Right::ManageLogins);
  LoginList logins = session.Host().Logins();
  const LoginEntry login = logins.Get(drop.name);
  RequireOver(session, login);
  if (IsBuiltIn(login)) throw Special(login.name);
  for (const DatabaseEntry& entry : session.Host().Databases()) {
    if (entry.owner != login.sid) continue;
    throw Failed(Code::OwnsDatabases,
                 fmt::format("O início de sessão '{}' é dono da base de dados '{}'", login.name, entry.name));
  }
  const auto connected = session.Processes().All();
  if (std::any_of(connected.begin(), connected.end(),
                  [&](const ProcessEntry& entry) { return SameName(entry.login, login.name); })) {
    throw Failed(Code::LoginConnected,
                 fmt::format("O início de sessão '{}' está ligado e não pode ser eliminado", login.name));
  }
  logins.Remove(login);
}

void ChangeServerRole(Session& session, std::string_view name, const Role& role, bool member) {
  RequireOutside(session);
  if ((session.Now().serverRoles & (server_role::kSysAdmin | role.bit)) == 0) throw NoRight();
  LoginList logins = session.Host().Logins();
  const LoginEntry login = logins.Get(name);
  if (IsBuiltIn(login)) throw Special(login.name);
  logins.SetRole(login, role.bit, member);
}

void AddUser(Session& session, std::string_view login, std::string_view user) {
  RequireOutside(session);
  session.Require(Right::ManageUsers);
  const LoginEntry entry = session.Host().Logins().Get(login);
  if (session.GetDatabase(session.Current()->Name()).owner == entry.sid || SameName(login, kAdministrator)) {
    throw Failed(Code::LoginHasUser,
                 fmt::format("O início de sessão '{}' já tem um utilizador com outro nome", login));
  }
  UserList(session.Current()->File()).Add(user.empty() ? login : user, entry);
}

void DropUser(Session& session, std::string_view user) {
  RequireOutside(session);
  session.Require(Right::ManageUsers);
  if (SameName(user, kOwnerUser) || SameName(user, kGuest)) throw Special(user);
  UserList users(session.Current()->File());
  users.Remove(users.Get(user));
}

void ChangeDatabaseRole(Session& session, std::string_view user, const Role& role, bool member) {
  RequireOutside(session);
  session.Require(Right::ManageRoles);
  if (SameName(user, kOwnerUser) || SameName(user, kGuest)) throw Special(user);
  UserList users(session.Current()->File());
  users.SetRole(users.Get(user), role.bit, member);
}

void ChangeOwner(Session& session, std::string_view name) {
  RequireOutside(session);
  session.Require(Right::OwnDatabase);
  const DatabaseEntry entry = session.GetDatabase(session.Current()->Name());
  if (entry.IsMaster()) {
    throw Failed(Code::SystemDatabase,
                 fmt::format("O dono da base de dados '{}' não pode mudar", entry.name));
  }
  const LoginEntry login = session.Host().Logins().Get(name);
  if (UserList(session.Current()->File()).FindSid(login.sid)) {
    throw Failed(Code::OwnerIsUser,
                 fmt::format("'{}' já é um utilizador da base de dados '{}'", login.name, entry.name));
  }
  session.Host().States().SetOwner(entry.id, login.sid);
}

}  // namespace korvel::data::embedded
