#include "measure.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace korvel::benchmarks {

Seconds TimeOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::steady_clock::now() - start;
}

double Comparison::Ratio() const {
  return Median(ours) / Median(bare);
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
