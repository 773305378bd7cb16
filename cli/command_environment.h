#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>

#include "toolkit/ports.h"

namespace korvel::cli {

/// The world of one run of `korvelctl`. Tests bring their own; references outlive the run.
struct CommandEnvironment {
  std::ostream& out;
  std::ostream& err;
  bool errIsTerminal = false;           // progress is shown there only then
  std::filesystem::path serversFolder;  // KORVEL_DADOS: the embedded servers, a folder each
  toolkit::Settings& settings;
  const toolkit::Clock& clock;
  std::function<bool()> interrupted;  // true once the user wants long work to end; may be empty
};

}  // namespace korvel::cli
