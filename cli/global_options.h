#pragma once

#include <optional>
#include <string>

namespace korvel::cli {

/// The options that every command takes, before or behind its name.
struct GlobalOptions {
  std::string servidor = "(LOCALDB)\\KORVEL";
  std::string login = "sa";
  std::string password;
  bool windows = false;
  std::optional<std::string> empresa;  // nothing when the option was not given
  bool sim = false;                    // deletions are confirmed
};

}  // namespace korvel::cli
