#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "session/context.h"

/// One's own password and the lock of the program. No password is ever shown or logged.
namespace korvel::security {

/// What `frmAlteraPassword` holds.
struct PasswordChange {
  std::string oldPassword;
  std::string newPassword;   // `txtNPass`
  std::string confirmation;  // `txtCPass`
};

/// `cmdOK` of `frmAlteraPassword`: checks, warns, asks, changes the session user's password on the server and in the
/// session, and logs it. False when it was refused or the server did not take it, which is shown.
bool AlteraPassword(const session::Context& context, const PasswordChange& change);

/// `cmdOK` of `frmBloquear`: whether the password opens the locked program. The case of its letters does not matter
/// here, deliberately. A wrong one is told, the cursor back in it.
bool DesbloqueiaPrograma(const session::Context& context, std::string_view password);

/// `frmRequestPassword`: asks until a login is given; nothing when the user gave up.
std::optional<toolkit::Credentials> RequestPassword(const session::Context& context,
                                                    std::string_view login = {});

}  // namespace korvel::security
