#pragma once

#include "data/embedded/roles.h"
#include "data/embedded/session.h"
#include "data/embedded/tree.h"

/// What changes logins, users and their roles, each with the right that it needs. Statements and procedures share it.
/// None of them runs inside a transaction (15002).
namespace korvel::data::embedded {

/// Throws 15247 without the right, and the refusals of LoginList.
void Apply(const CreateLogin& create, Session& session);
/// Anyone may change his own password when he knows it; an administrator of logins any but a sysadmin's, and a sysadmin
/// every one. Throws 15211 for an old password that is not right.
void Apply(const AlterLogin& alter, Session& session);
/// Throws 15405 for `sa`, the owners' group and oneself, 15174 for an owner of databases, 15434 for one who is connected.
void Apply(const DropLogin& drop, Session& session);

/// Only a sysadmin or a member of the role gives it and takes it away.
void ChangeServerRole(Session& session, std::string_view login, const Role& role, bool member);

/// A blank `user` has the login's name. Throws 15247 and the refusals of UserList.
void AddUser(Session& session, std::string_view login, std::string_view user);
void DropUser(Session& session, std::string_view user);
/// Only the owner and the members of db_owner change roles.
void ChangeDatabaseRole(Session& session, std::string_view user, const Role& role, bool member);
/// Gives the current database to a login that has no user in it (15110).
void ChangeOwner(Session& session, std::string_view login);

}  // namespace korvel::data::embedded
