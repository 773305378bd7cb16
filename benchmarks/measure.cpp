#include "measure.h"

#include <fmt/format.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace korvel::benchmarks {
namespace {
constexpr int kRounds = 3;
constexpr long kMemoryMark = 160;
}  // namespace

Seconds TimeOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::steady_clock::now() - start;
}

double Comparison::Ratio() const {
  return Median(ours) / Median(bare);
}

Comparison Compare(const std::function<void()>& ours, const std::function<void()>& bare,
                   const std::function<void()>& prepare) {
  Comparison times;
  for (int round = 0; round < kRounds; ++round) {
    times.bare.push_back(TimeOf(bare));
    if (prepare) prepare();
    times.ours.push_back(TimeOf(ours));
  }
  return times;
}

void Print(std::string_view what, double mark, const Comparison& times) {
  fmt::print("{:<28} {:7.2f} s  bare {:7.2f} s  ratio {:.2f}  mark {:.1f}  {}\n", what,
             Median(times.ours).count(), Median(times.bare).count(), times.Ratio(), mark,
             times.Ratio() <= mark ? "met" : "MISSED");
}

void PrintMemory(long full, long tenth) {
  fmt::print("{:<28} {:7} MB, of a tenth {} MB  mark {}  {}\n", "export, peak memory", full >> 20,
             tenth >> 20, kMemoryMark, (full >> 20) <= kMemoryMark ? "met" : "MISSED");
}

long PeakMemoryOf(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  pid_t child = 0;
  if (posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) {
    throw std::runtime_error("cannot start " + command[0]);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("the measured program failed");
  return usage.ru_maxrss * 1024;
}

Seconds Median(std::vector<Seconds> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

}  // namespace korvel::benchmarks
