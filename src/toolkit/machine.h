#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace korvel::toolkit {

/// The name of this machine, "" when the system does not tell it.
std::string GetMachineName();

/// The value of an environment variable, nothing when it is not set.
std::optional<std::string> FindVariable(const std::string& name);

/// The folder of the embedded servers: KORVEL_DADOS, or "korvel" in the user's data folder. Throws std::runtime_error
/// when neither is known.
std::filesystem::path ServersFolder();

/// The executable that runs. Throws std::filesystem::filesystem_error when the system does not tell it.
std::filesystem::path ProgramFile();

}  // namespace korvel::toolkit
