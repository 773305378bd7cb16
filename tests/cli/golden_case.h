#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "cli/cli_world.h"

namespace korvel::test {

/// A case as a text file: commands, what they print, how they end. By the first characters of a line:
///
///     #   a comment
///     %   "demo": the case starts with the demonstration company; else with no server at all
///     @   a file for the commands, named; its lines follow, each behind "+ "
///     ~   a variable of the environment for what follows, "NAME=VALUE", or "NAME" to take it away
///     $   a command, in the words of a shell
///     |   a line of its standard output
///     !   a line of its standard error
///     =   its exit status
///
/// "{PASTA}" stands for the output folder, in commands and in what they print; "{*}" in a printed line for any text,
/// a printed line "{...}" for any lines.
struct GoldenStep {
  std::string command;
  std::string variable;  // instead of a command
  std::vector<std::string> out;
  std::vector<std::string> err;
  int exitCode = 0;
};

struct GoldenFile {
  std::string name;
  std::string text;
};

struct GoldenCase {
  std::string name;
  bool demonstration = false;
  std::vector<GoldenFile> files;
  std::vector<GoldenStep> steps;
};

/// Throws std::runtime_error for a line that is none of the above.
GoldenCase ReadCase(const std::filesystem::path& file);
/// All cases, sorted by name.
std::vector<GoldenCase> ReadCases();

/// Runs the case in a world of its own; a difference fails the test and shows what the command did, written as a
/// case would write it.
void RunCase(const GoldenCase& golden);
/// The same in a world that a test has made.
void RunCase(const GoldenCase& golden, CliWorld& world);

/// Whether a printed line fits an expected one with its "{*}".
bool LineFits(std::string_view expected, std::string_view printed);

}  // namespace korvel::test
