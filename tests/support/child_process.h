#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace korvel::test {

struct ProcessResult {
  int exitCode = -1;  // -1 when a signal ended it
  int signal = 0;     // that ended it, 0 when it ended by itself
  std::string out;
  std::string err;
};

/// A program run as a process of its own, its two outputs gathered. A child still running when the object
/// goes is killed and waited for.
class ChildProcess {
 public:
  /// Starts `command[0]` (a path) with the other elements as its arguments. `environment` is laid over the
  /// current one. Throws std::runtime_error when it cannot be started.
  explicit ChildProcess(const std::vector<std::string>& command,
                        const std::map<std::string, std::string>& environment = {});
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  void Send(int signal) const;
  /// Reads both outputs to their ends and waits. Past the limit the child is killed, which the result shows.
  ProcessResult Wait(std::chrono::milliseconds limit = std::chrono::seconds(60));

 private:
  void ReadUntil(std::chrono::steady_clock::time_point end);

  pid_t pid_ = -1;
  int outPipe_ = -1;
  int errPipe_ = -1;
  ProcessResult result_;
};

/// Starts, waits, gives the result.
ProcessResult RunProcess(const std::vector<std::string>& command,
                         const std::map<std::string, std::string>& environment = {});
/// Starts, waits `delay`, kills with SIGKILL unless it has ended by then.
ProcessResult RunAndKill(const std::vector<std::string>& command,
                         const std::map<std::string, std::string>& environment,
                         std::chrono::microseconds delay);

}  // namespace korvel::test
