#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

#include "toolkit/ports.h"

namespace korvel::cli {

/// The world of one run of `korvelctl`. Tests bring their own; references outlive the run.
struct CommandEnvironment {
  std::ostream& out;
  std::ostream& err;
  bool errIsTerminal = false;           // progress is shown there only then
  std::filesystem::path serversFolder;  // KORVEL_DADOS: the embedded servers, a folder each
  std::filesystem::path programFile;    // of the running program
  toolkit::Settings& settings;
  const toolkit::Clock& clock;
  std::function<bool()> interrupted;  // true once the user wants long work to end; may be empty
  /// A variable of the process, nothing when it is not set; may be empty.
  std::function<std::optional<std::string>(const std::string& name)> variable;
  /// Asks for a line that is not shown while it is typed, nothing at its end; empty where nobody can answer.
  std::function<std::optional<std::string>(const std::string& caption)> askSecret;
};

}  // namespace korvel::cli
