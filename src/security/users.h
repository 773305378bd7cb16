#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "session/context.h"

/// `frmUtilizadores`: the server's logins and who may be changed or deleted.
namespace korvel::security {

enum class AccountKind { Sql, WindowsGroup, WindowsUser };

/// A line of the list.
struct UserLine {
  std::string login;
  AccountKind kind = AccountKind::Sql;
  bool allCompanies = false;
  bool sysAdmin = false;
};
/// What `staBar` says of a line.
std::string_view KindText(const UserLine& user);

/// The logins by name. `master` and `config` stand open on those databases. Throws data::Error.
std::vector<UserLine> ListUsers(data::Connection& master, data::Connection& config);

/// What stands before each button: the session's login must be an administrator's, and neither the login in use nor
/// "sa" can be changed or deleted. A refusal is shown.
bool MayCreateUser(const session::Context& context);
bool MayChangeUser(const session::Context& context, std::string_view login);
bool MayDeleteUser(const session::Context& context, std::string_view login);

/// `cmdEliminar`: refuses, asks, takes the user out of every database, then the login, then its rows of
/// `UserManagement` and `UserDatabases`. False when it was refused or the server keeps the login, which is shown; its
/// rows stay then. Throws data::Error for the rows.
bool EliminaUtilizador(const session::Context& context, std::string_view login);

}  // namespace korvel::security
