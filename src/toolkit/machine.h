#pragma once

#include <string>

namespace korvel::toolkit {

/// The name of this machine, "" when the system does not tell it.
std::string GetMachineName();

}  // namespace korvel::toolkit
