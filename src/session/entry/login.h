#pragma once

#include <string>
#include <string_view>

#include "session/context.h"

/// `frmLogin`: entering a server.
namespace korvel::session {

/// What the form holds.
struct LoginFields {
  std::string machine = {};   // `txtMachine`
  std::string server = {};    // `txtServer`
  std::string login = {};     // `txtLogin`
  std::string password = {};  // `txtPassword`, never kept
  bool windows = false;       // `optWindowsAthentication`: login and password are not used
};

/// The form as it opens, from the settings; the way of authentication goes to the session. The cursor goes to `txtLogin`
/// when a server is known.
LoginFields LoadLogin(const Context& context);

/// Leaving `txtMachine`: its text is kept.
void KeepMachine(const Context& context, std::string_view machine);

/// `cmdFecharConfig`: the way of authentication is kept and goes to the session; the cursor goes where something is
/// missing.
void KeepAuthentication(const Context& context, const LoginFields& fields);

/// Before `cmdOK` at a first start: asks whether an embedded server that is not there is to be made, and makes it. False
/// when it was not; true for every other server.
bool OfferServer(const Context& context, const LoginFields& fields);

/// `cmdOK`: enters the server as far as the company selection. False when it was refused, the cursor then in the field
/// to correct; the session's login is only set once the server has taken it. Makes `KorvelConfig` at the first
/// administrator's login. Throws EndProgram.
bool Login(const Context& context, const LoginFields& fields);

/// The first half of `cmdOK`: opens `master` with what the form holds, and takes login, rights and permissions from the
/// server into the session. Nothing is written anywhere. False when it was refused, as above.
bool Authenticate(const Context& context, const LoginFields& fields);
/// The second half: `KorvelConfig` is there, or is made by an administrator. Others cannot go on without it.
bool ReachConfiguration(const Context& context);

/// `frmLogin.RequestLogin`: asks for another login, for a task that wants one; with `checkSysAdmin` an administrator's.
/// The session's login stays.
bool RequestLogin(const Context& context, bool checkSysAdmin);

}  // namespace korvel::session
