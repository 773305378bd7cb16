#pragma once

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <functional>

namespace korvel::test {

/// Work in a process of its own, forked from the test: no connection may be open then. It tells when it is ready and
/// lives until it is killed, or ends with the work's result.
class InProcess {
 public:
  /// `work(ready)` runs in the child; `ready()` lets the parent's WaitUntilReady go on.
  explicit InProcess(const std::function<int(const std::function<void()>&)>& work) {
    if (::pipe(pipe_) != 0) std::abort();
    child_ = ::fork();
    if (child_ != 0) return;
    try {
      ::_exit(work([this] { [[maybe_unused]] const auto sent = ::write(pipe_[1], "r", 1); }));
    } catch (...) {
      ::_exit(kThrew);
    }
  }
  ~InProcess() {
    Kill();
    ::close(pipe_[0]);
    if (pipe_[1] >= 0) ::close(pipe_[1]);
  }
  InProcess(const InProcess&) = delete;
  InProcess& operator=(const InProcess&) = delete;

  pid_t Id() const { return child_; }
  /// False when the child ended without being ready.
  bool WaitUntilReady() {
    ::close(pipe_[1]);
    pipe_[1] = -1;
    char sign = 0;
    return ::read(pipe_[0], &sign, 1) == 1;
  }
  /// The work's result, kThrew when it threw, -1 when a signal ended it.
  int Wait() {
    int status = 0;
    ::waitpid(child_, &status, 0);
    child_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  void Kill() {
    if (child_ <= 0) return;
    ::kill(child_, SIGKILL);
    Wait();
  }

 private:
  static constexpr int kThrew = 255;

  int pipe_[2] = {-1, -1};
  pid_t child_ = 0;
};

}  // namespace korvel::test
