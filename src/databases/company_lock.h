#pragma once

#include <string>
#include <string_view>

#include "session/context.h"

/// A blocked company is a read-only database: its movements can only be looked at.
namespace korvel::databases {

/// Blocks or frees a company. Blocking needs that nobody else is connected to it. False when that is not so or the
/// server refuses, which was shown; also true when it was in that state before.
bool SetCompanyBlocked(const session::Context& context, std::string_view code, bool blocked);

/// `mnubloq`: asks, and switches a company to the other state. False as above, or when the answer was no.
bool SwitchCompanyBlocked(const session::Context& context, std::string_view code);

}  // namespace korvel::databases
