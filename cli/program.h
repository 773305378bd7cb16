#pragma once

#include <CLI/CLI.hpp>
#include <span>
#include <string>

#include "cli/command.h"
#include "cli/command_environment.h"
#include "cli/global_options.h"
#include "cli/password_option.h"

namespace korvel::cli {

enum class Exit : int { Done = 0, Refused = 1, WrongUsage = 2 };

/// The command line of the program: all commands with their options. Tests walk it.
class CommandLine {
 public:
  CommandLine();

  CLI::App& App() { return app_; }
  /// With the password read. Throws Refusal when it cannot be.
  GlobalOptions Globals(const CommandEnvironment& environment) const;
  bool VersionAsked() const { return versionAsked_; }
  /// The command that a finished parse chose, null when there was none.
  Command* Chosen() const;

 private:
  void DeclareGlobals();
  void Add(Command& command);

  CLI::App app_;
  GlobalOptions globals_;
  PasswordOption password_{"password", "KORVEL_PASSWORD"};
  bool versionAsked_ = false;
  CommandList commands_;
};

/// Runs `korvelctl` with these arguments, the program's name left out. Throws nothing: what fails is told on the
/// environment's error stream.
Exit RunKorvelctl(std::span<const std::string> arguments, const CommandEnvironment& environment);

}  // namespace korvel::cli
