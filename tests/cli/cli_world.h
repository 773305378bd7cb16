#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/program.h"
#include "support/child_process.h"
#include "support/scripted_world.h"

namespace korvel::test {

std::vector<std::string> Lines(const std::string& text);
/// The words of a command line as a shell parts them: blanks part, single and double quotes keep, "\" is plain.
std::vector<std::string> CommandWords(std::string_view line);

struct CommandResult {
  int exitCode = -1;
  std::string out;
  std::string err;
};

/// A folder of embedded servers with settings of its own, and `korvelctl` at work on it: in this process, or as one
/// of its own.
class CliWorld {
 public:
  /// Nothing there yet, or, with a demonstration, the company that `korvelctl demo` makes.
  enum class Start { Empty, Demonstration };
  explicit CliWorld(Start start = Start::Empty);
  /// Nothing there yet either; commands that name no server go to this one.
  explicit CliWorld(std::string server) : CliWorld() { server_ = std::move(server); }

  CommandResult Run(std::vector<std::string> arguments);
  /// With a line of words as a shell takes them.
  CommandResult Run(std::string_view line);
  ProcessResult RunProcess(std::string_view line) const;
  ProcessResult RunAndKill(std::string_view line, std::chrono::microseconds delay) const;

  /// The first column of a query's rows, one line each, through `korvelctl sql`. Fails the test when that fails.
  std::vector<std::string> Rows(std::string_view database, std::string_view query);
  std::string One(std::string_view database, std::string_view query);
  /// Runs a script through `korvelctl sql`; fails the test when that fails.
  void Sql(std::string_view database, std::string_view script);

  std::filesystem::path Servers() const { return folder_ / "servidores"; }
  /// The folder that exports go to.
  std::filesystem::path Output() const { return folder_ / "saft"; }

  FixedClock clock;
  std::function<bool()> interrupted;             // of commands in this process
  std::map<std::string, std::string> variables;  // that they find in their environment

 private:
  std::vector<std::string> Command(std::string_view line) const;
  std::optional<std::string> Variable(const std::string& name) const;
  std::map<std::string, std::string> Environment() const;

  TempFolder folder_;
  std::string server_;  // blank: the commands' own default
  MemorySettings settings_;
};

}  // namespace korvel::test
