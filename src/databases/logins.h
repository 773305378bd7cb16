#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "session/connections.h"

/// Logins, roles and database users of the session's server.
///
/// Functions that take a Context open what they need as the session's user. They report by their result: false means
/// that the server refused, with `gErroNumero` and `gErroDescricao` set, and nothing was shown unless said otherwise.
/// Functions that take a connection work on it and throw data::Error. A login, role or database name that could not be
/// an identifier is refused before anything is sent (gErroDescricao says so).
namespace korvel::databases {

inline constexpr std::array<std::string_view, 9> kDatabaseRoles{
    "db_owner ",        "db_accessadmin",    "db_datareader",     "db_datawriter",    "db_ddladmin",
    "db_securityadmin", "db_backupoperator", "db_denydatareader", "db_denydatawriter"};
inline constexpr std::array<std::string_view, 7> kServerRoles{
    "sysadmin", "serveradmin", "setupadmin", "securityadmin", "processadmin", "dbcreator", "diskadmin"};

/// Whether a text can be a login's or user's name (see IsName). "MACHINE\user" is one.
bool IsLoginName(std::string_view name);

/// True under Windows authentication at once; otherwise whether the login is a member of sysadmin. A blank login stands
/// for the session's own with its password.
bool ValidarLoginSysAdmin(const session::Context& context, std::string_view login = {},
                          std::string_view password = {});

/// `admin` makes it a member of sysadmin.
bool CreateLogin(const session::Context& context, std::string_view login, std::string_view password,
                 bool admin);
/// Needs a sysadmin; without one shows "Sem Permissão para eliminar o Utilizador".
bool DeleteLogin(const session::Context& context, std::string_view login);
/// A blank `oldPassword` is an administrator's change of another's password; a blank `login` means oneself.
bool ChangePassword(const session::Context& context, std::string_view oldPassword,
                    std::string_view newPassword, std::string_view login = {});

/// Both show "Sem Permissão para executar esta operação" when the right is missing.
bool SetServerRoleMember(const session::Context& context, std::string_view login, std::string_view role,
                         bool member);
bool SetDBRoleMember(const session::Context& context, std::string_view database, std::string_view user,
                     std::string_view role, bool member);

/// A database user of the login's name with the roles db_datawriter, db_datareader and db_owner; and its end.
bool GrantAcess(const session::Context& context, std::string_view database, std::string_view login);
bool RevokeAccess(const session::Context& context, std::string_view database, std::string_view user);
/// "sp_adduser" and "sp_addrolemember 'db_owner'": what a user of a company gets.
bool AddOwnerToDB(const session::Context& context, std::string_view database, std::string_view login);
bool DropUserFromDB(const session::Context& context, std::string_view database, std::string_view user);
bool CheckUserInDB(const session::Context& context, std::string_view database, std::string_view user);
/// In every database of the server; "SA" is left alone. A failure in one of them is passed over.
void DeleteUserFromAllDatabases(const session::Context& context, std::string_view user);

/// Who is connected, in the server's words, and the Windows account whose permissions it has ("" for none).
struct WindowsName {
  std::string login;
  std::string account;
};
WindowsName SQL_GetLoginName(data::Connection& master);
bool SQL_CheckLoginSysAdmin(data::Connection& master);
/// Whether some process is connected under that login.
bool isLoggedOn(data::Connection& master, std::string_view login);

/// The server's logins but its own administrators' groups ("builtin\administrators", "builtin\administradores"), with
/// the mark of `AllDatabases`; in the server's order.
struct LoginLine {
  std::string login;
  bool allDatabases = false;
};
std::vector<LoginLine> LoadUsersToListview(data::Connection& master);
/// The older form: whether each login is a Windows group.
struct GroupLine {
  std::string login;
  bool group = false;
};
std::vector<GroupLine> OldLoadUsersToListview(data::Connection& master);

/// Gives a database to another login, and takes the user of that login out of it first. Not for the server's own
/// databases, where only the user goes.
void ChangeDatabaseOwner(data::Connection& connection, std::string_view database, std::string_view login);

}  // namespace korvel::databases
