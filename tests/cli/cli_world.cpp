#include "cli/cli_world.h"

#include <gtest/gtest.h>

#include <sstream>

namespace korvel::test {

namespace {

namespace fs = std::filesystem;

/// Made once and copied: the demonstration company that most tests start from.
const fs::path& DemonstrationServers() {
  static CliWorld world;
  static const CommandResult made = world.Run("demo --linhas 900");
  if (made.exitCode != 0) throw std::runtime_error("no demonstration company: " + made.err);
  static const fs::path servers = world.Servers();
  return servers;
}

}  // namespace

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> CommandWords(std::string_view line) {
  std::vector<std::string> words;
  bool inWord = false;
  char quote = 0;
  for (const char c : line) {
    if (quote != 0 && c == quote) {
      quote = 0;
    } else if (quote == 0 && (c == '"' || c == '\'')) {
      quote = c;
      if (!inWord) words.emplace_back();
      inWord = true;
    } else if (quote == 0 && c == ' ') {
      inWord = false;
    } else {
      if (!inWord) words.emplace_back();
      inWord = true;
      words.back() += c;
    }
  }
  return words;
}

CliWorld::CliWorld(Start start) {
  fs::create_directory(Output());
  if (start == Start::Demonstration) fs::copy(DemonstrationServers(), Servers(), fs::copy_options::recursive);
}

CommandResult CliWorld::Run(std::vector<std::string> arguments) {
  if (!server_.empty()) arguments.insert(arguments.end(), {"--servidor", server_});
  std::ostringstream out;
  std::ostringstream err;
  const cli::CommandEnvironment environment{
      .out = out,
      .err = err,
      .errIsTerminal = false,
      .serversFolder = Servers(),
      .programFile = Output() / "korvelctl",
      .settings = settings_,
      .clock = clock,
      .interrupted = interrupted,
      .variable = [this](const std::string& name) { return Variable(name); },
      .askSecret = {}};
  const auto exit = cli::RunKorvelctl(arguments, environment);
  return {static_cast<int>(exit), out.str(), err.str()};
}

std::optional<std::string> CliWorld::Variable(const std::string& name) const {
  const auto found = variables.find(name);
  return found == variables.end() ? std::nullopt : std::optional(found->second);
}

CommandResult CliWorld::Run(std::string_view line) {
  return Run(CommandWords(line));
}

std::vector<std::string> CliWorld::Command(std::string_view line) const {
  std::vector<std::string> command = CommandWords(line);
  command.insert(command.begin(), KORVELCTL_PATH);
  return command;
}

std::map<std::string, std::string> CliWorld::Environment() const {
  return {{"KORVEL_DADOS", Servers().string()},
          {"XDG_CONFIG_HOME", (folder_ / "config").string()},
          {"KORVEL_HOJE", "2026-01-15"}};
}

ProcessResult CliWorld::RunProcess(std::string_view line) const {
  return test::RunProcess(Command(line), Environment());
}

ProcessResult CliWorld::RunAndKill(std::string_view line, std::chrono::microseconds delay) const {
  return test::RunAndKill(Command(line), Environment(), delay);
}

void CliWorld::Sql(std::string_view database, std::string_view script) {
  Rows(database, script);
}

std::vector<std::string> CliWorld::Rows(std::string_view database, std::string_view query) {
  const auto result = Run(
      std::vector<std::string>{"sql", "--base-dados", std::string(database), "--texto", std::string(query)});
  EXPECT_EQ(result.exitCode, 0) << query << '\n' << result.err;
  std::vector<std::string> rows = Lines(result.out);
  if (!rows.empty()) rows.erase(rows.begin());  // the header
  return rows;
}

std::string CliWorld::One(std::string_view database, std::string_view query) {
  const auto rows = Rows(database, query);
  return rows.empty() ? std::string() : rows.front();
}

}  // namespace korvel::test
