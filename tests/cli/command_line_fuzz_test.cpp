#include <gtest/gtest.h>

#include <algorithm>

#include "cli/golden_case.h"
#include "cli/program.h"
#include "cli/usage_texts.h"
#include "support/fuzz.h"

namespace korvel::test {
namespace {

std::vector<std::vector<std::string>> RealCommands() {
  std::vector<std::vector<std::string>> commands;
  for (const GoldenCase& golden : ReadCases()) {
    for (const GoldenStep& step : golden.steps) {
      auto words = CommandWords(step.command);
      if (!words.empty()) commands.push_back(std::move(words));
    }
  }
  return commands;
}

void Spoil(Fuzz& fuzz, std::vector<std::string>& words, const std::vector<std::string>& others) {
  const std::size_t at = fuzz.Below(words.size());
  switch (fuzz.Below(4)) {
    case 0:
      words.insert(words.begin() + static_cast<std::ptrdiff_t>(at), fuzz.OneOf(others));
      break;
    case 1:
      words.push_back(words[at]);
      break;
    default:
      words[at] = fuzz.Mutated(words[at], fuzz.OneOf(others));
  }
}

TEST(CommandLineFuzz, WordsAreReadOrRefusedWithAReason) {
  const auto commands = RealCommands();
  for (Fuzz fuzz(31, 2); fuzz.Goes();) {  // that of korvel has a test of its own
    std::vector<std::string> words = fuzz.OneOf(commands);
    for (std::size_t faults = 1 + fuzz.Below(4); faults > 0; --faults)
      Spoil(fuzz, words, fuzz.OneOf(commands));
    cli::CommandLine line;
    try {
      line.App().parse(std::vector<std::string>(words.rbegin(), words.rend()));
      line.Chosen();
    } catch (const CLI::ParseError& error) {
      EXPECT_FALSE(cli::UsageText(error).empty()) << "round " << fuzz.Rounds();
    }
  }
}

}  // namespace
}  // namespace korvel::test
