#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "cli/command_environment.h"

namespace korvel::cli {

/// A password that a command needs, from the first of: `--<name>`, the first line of the file of `--<name>-ficheiro`, a
/// prompt by `--<name>-pedir`, a variable of the environment. Only the last three keep it off the list of processes.
class PasswordOption {
 public:
  PasswordOption(std::string name, std::string variable)
      : name_(std::move(name)), variable_(std::move(variable)) {}

  /// `whose` ends the help's sentence, as in "do login".
  void Declare(CLI::App& app, const std::string& whose);
  /// Nothing when none of them gives one. Throws Refusal for a file that cannot be read, or for a prompt where nobody
  /// can answer.
  std::optional<std::string> Read(const CommandEnvironment& environment) const;
  /// The same, asking where somebody can answer. Throws UsageError that names the ways when there is none.
  std::string Require(const CommandEnvironment& environment) const;

 private:
  std::string Prompt(const CommandEnvironment& environment) const;

  std::string name_;
  std::string variable_;
  std::string whose_;
  std::optional<std::string> text_;
  std::string file_;
  bool asks_ = false;
};

}  // namespace korvel::cli
