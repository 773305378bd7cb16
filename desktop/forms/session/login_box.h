#pragma once

#include <optional>
#include <string_view>

#include "toolkit/ports.h"

class QWidget;

namespace korvel::desktop {

/// `frmLogin.RequestLogin`: the login form as a box that asks for another login, with `login` proposed; nothing when it
/// was left. It may be shown while work waits for the answer.
std::optional<toolkit::Credentials> AskCredentials(std::string_view caption, std::string_view login,
                                                   QWidget* parent);

}  // namespace korvel::desktop
