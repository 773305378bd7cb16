#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "session/context.h"

/// `frmCriaUtilizador`: a login with its place in the companies.
namespace korvel::security {

/// A line of `lvwEmpresas`.
struct UserCompany {
  std::string code;
  std::string description;
  bool ticked = false;
};

/// What the form holds.
struct UserCard {
  std::string login;
  std::string password;  // blank in a change: it stays
  std::string confirmation;
  bool windowsAccount = false;  // its password is not kept here
  bool admin = false;           // `chkAdmin`
  bool allCompanies = false;    // `optTodas`; the ticks do not count then
  std::vector<UserCompany> companies;
};

/// An empty form with all companies, none ticked. Throws data::Error.
UserCard NewUserCard(data::Connection& config);
/// The form for a change; nothing when the server has no such login. Throws data::Error.
std::optional<UserCard> LoadUserCard(data::Connection& config, data::Connection& master,
                                     std::string_view login);

/// `cmdOK`: the login on the server, its rows of the configuration database in one transaction, then its users in the
/// databases, where a failure in one of them is passed over. False when it was refused or the server did not take the
/// login, which was shown, and nothing else has changed then. Throws data::Error for the rows, which stay as they were;
/// the login, or its new password, stands all the same.
bool CreateFromCard(const session::Context& context, const UserCard& card);
/// The caller has asked MayChangeUser. A login that is no member of sysadmin does not become one by a change, nor does
/// one cease to be: `admin` is then the administrative tasks of this program.
bool ChangeFromCard(const session::Context& context, const UserCard& card);

}  // namespace korvel::security
