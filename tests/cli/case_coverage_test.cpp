#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "cli/commands.h"
#include "cli/golden_case.h"

namespace korvel::test {
namespace {

/// Without a case, each with its reason.
const std::set<std::string> kExceptions = {
    "korvelctl --servidor",  // other servers are tried by the tests of faults, which need a free name
};

/// "empresa criar --codigo" for each option of each command, "korvelctl --login" for the global ones.
void CollectOptions(const CLI::App& app, const std::string& path, std::set<std::string>& options) {
  for (const CLI::Option* option : app.get_options()) {
    if (option->nonpositional()) options.insert(path + " " + option->get_name());
  }
  for (const CLI::App* below : app.get_subcommands({})) {
    CollectOptions(*below, path == "korvelctl" ? below->get_name() : path + " " + below->get_name(), options);
  }
}

/// The leading words of a command line that name a command.
std::string CommandPath(const std::vector<std::string>& words, CLI::App& app) {
  std::string path;
  const CLI::App* at = &app;
  for (const std::string& word : words) {
    const auto below = at->get_subcommands([&](const CLI::App* each) { return each->get_name() == word; });
    if (below.empty()) continue;
    at = below.front();
    path += path.empty() ? word : " " + word;
  }
  return path;
}

/// What the cases use, in the same words, and the commands themselves.
std::set<std::string> UsedByCases(CLI::App& app) {
  std::set<std::string> used;
  for (const GoldenCase& golden : ReadCases()) {
    for (const GoldenStep& step : golden.steps) {
      const auto words = CommandWords(step.command);
      const std::string path = CommandPath(words, app);
      used.insert(path);
      for (const std::string& word : words) {
        if (!word.starts_with("--")) continue;
        const std::string name = word.substr(0, word.find('='));
        used.insert(path + " " + name);
        used.insert("korvelctl " + name);
      }
    }
  }
  return used;
}

TEST(CaseCoverage, EveryCommandAndOptionOwnsACase) {
  cli::CommandLine line;
  std::set<std::string> options;
  CollectOptions(line.App(), "korvelctl", options);
  const auto used = UsedByCases(line.App());
  for (const std::string& option : options) {
    if (option.ends_with(" --help")) continue;
    EXPECT_NE(used.contains(option), kExceptions.contains(option))
        << "a case or an exception for: " << option;
  }
  EXPECT_TRUE(used.contains("korvelctl --help"));
  for (const auto& command : cli::MakeCommands()) {
    EXPECT_TRUE(used.contains(std::string(command->Path()))) << "no case runs: " << command->Path();
  }
}

}  // namespace
}  // namespace korvel::test
