#include "cli/golden_case.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <stdexcept>

namespace korvel::test {

namespace {

constexpr std::string_view kAnything = "{*}";
constexpr std::string_view kAnyLines = "{...}";
constexpr std::string_view kFolder = "{PASTA}";

std::string WithFolder(std::string text, const std::string& folder) {
  for (auto at = text.find(kFolder); at != text.npos; at = text.find(kFolder))
    text.replace(at, kFolder.size(), folder);
  return text;
}

void TakeLine(GoldenCase& golden, const std::string& line) {
  if (line.empty() || line.front() == '#') return;
  const std::string rest = line.size() > 2 ? line.substr(2) : std::string();
  switch (line.front()) {
    case '%':
      golden.demonstration = rest == "demo";
      return;
    case '@':
      golden.files.push_back({rest, {}});
      return;
    case '+':
      golden.files.back().text += rest + '\n';
      return;
    case '~':
      golden.steps.push_back({{}, rest, {}, {}, 0});
      return;
    case '$':
      golden.steps.push_back({rest, {}, {}, {}, 0});
      return;
    case '|':
      golden.steps.back().out.push_back(rest);
      return;
    case '!':
      golden.steps.back().err.push_back(rest);
      return;
    case '=':
      golden.steps.back().exitCode = std::stoi(rest);
      return;
    default:
      throw std::runtime_error(golden.name + ": a line of no kind: " + line);
  }
}

std::string Transcript(const GoldenStep& step, const CommandResult& result) {
  std::string text = "$ " + step.command + '\n';
  for (const std::string& line : Lines(result.out)) text += "| " + line + '\n';
  for (const std::string& line : Lines(result.err)) text += "! " + line + '\n';
  return text + "= " + std::to_string(result.exitCode) + '\n';
}

using Lineset = std::span<const std::string>;

/// A line that stands for any number of lines may be followed by others.
bool LinesFit(Lineset expected, Lineset printed) {
  if (expected.empty()) return printed.empty();
  if (expected.front() == kAnyLines) {
    return LinesFit(expected.subspan(1), printed) ||
           (!printed.empty() && LinesFit(expected, printed.subspan(1)));
  }
  return !printed.empty() && LineFits(expected.front(), printed.front()) &&
         LinesFit(expected.subspan(1), printed.subspan(1));
}

bool Fits(std::vector<std::string> expected, const std::string& printed, const std::string& folder) {
  for (std::string& line : expected) line = WithFolder(std::move(line), folder);
  return LinesFit(expected, Lines(printed));
}

void SetVariable(CliWorld& world, const std::string& text) {
  const auto equals = text.find('=');
  const std::string name = text.substr(0, equals);
  if (equals == text.npos) {
    world.variables.erase(name);
  } else {
    world.variables[name] = text.substr(equals + 1);
  }
}

void RunStep(CliWorld& world, const GoldenStep& step) {
  if (!step.variable.empty()) return SetVariable(world, step.variable);
  const std::string folder = world.Output().string();
  const CommandResult result = world.Run(WithFolder(step.command, folder));
  const bool same = result.exitCode == step.exitCode && Fits(step.out, result.out, folder) &&
                    Fits(step.err, result.err, folder);
  EXPECT_TRUE(same) << "the command gave:\n" << Transcript(step, result);
}

}  // namespace

bool LineFits(std::string_view expected, std::string_view printed) {
  const auto gap = expected.find(kAnything);
  if (gap == expected.npos) return expected == printed;
  if (!printed.starts_with(expected.substr(0, gap))) return false;
  const std::string_view rest = expected.substr(gap + kAnything.size());
  for (std::size_t at = gap; at <= printed.size(); ++at) {
    if (LineFits(rest, printed.substr(at))) return true;
  }
  return false;
}

GoldenCase ReadCase(const std::filesystem::path& file) {
  GoldenCase golden;
  golden.name = file.stem().string();
  for (const std::string& line : Lines(ReadFile(file))) TakeLine(golden, line);
  return golden;
}

std::vector<GoldenCase> ReadCases() {
  std::vector<GoldenCase> cases;
  for (const auto& entry : std::filesystem::directory_iterator(KORVEL_CASES_DIR))
    cases.push_back(ReadCase(entry.path()));
  std::ranges::sort(cases, {}, &GoldenCase::name);
  return cases;
}

void RunCase(const GoldenCase& golden) {
  CliWorld world(golden.demonstration ? CliWorld::Start::Demonstration : CliWorld::Start::Empty);
  RunCase(golden, world);
}

void RunCase(const GoldenCase& golden, CliWorld& world) {
  for (const GoldenFile& file : golden.files) WriteFile(world.Output() / file.name, file.text);
  for (const GoldenStep& step : golden.steps) RunStep(world, step);
}

}  // namespace korvel::test
