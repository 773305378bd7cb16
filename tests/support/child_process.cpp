#include "support/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <string_view>
#include <thread>

extern char** environ;

namespace korvel::test {

namespace {

std::array<int, 2> MakePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe for a child process");
  return ends;
}

std::vector<std::string> MergedEnvironment(const std::map<std::string, std::string>& changes) {
  std::vector<std::string> merged;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view text(*entry);
    if (!changes.contains(std::string(text.substr(0, text.find('='))))) merged.emplace_back(text);
  }
  for (const auto& [name, value] : changes) merged.push_back(name + "=" + value);
  return merged;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// Appends what the pipe holds; closes it at its end.
void ReadSome(int& pipe, std::string& text) {
  std::array<char, 4096> buffer;
  const ssize_t count = read(pipe, buffer.data(), buffer.size());
  if (count > 0) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  } else if (count == 0 || errno != EINTR) {
    close(pipe);
    pipe = -1;
  }
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::map<std::string, std::string>& environment) {
  std::vector<std::string> arguments = command;
  std::vector<std::string> variables = MergedEnvironment(environment);
  const auto out = MakePipe();
  const auto err = MakePipe();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
  const int failed = posix_spawn(&pid_, arguments.front().c_str(), &actions, nullptr,
                                 Pointers(arguments).data(), Pointers(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  close(out[1]);
  close(err[1]);
  outPipe_ = out[0];
  errPipe_ = err[0];
  if (failed != 0) throw std::runtime_error("cannot start " + command.front());
}

ChildProcess::~ChildProcess() {
  if (pid_ > 0) {
    Send(SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  if (outPipe_ >= 0) close(outPipe_);
  if (errPipe_ >= 0) close(errPipe_);
}

void ChildProcess::Send(int signal) const {
  if (pid_ > 0) kill(pid_, signal);
}

void ChildProcess::ReadUntil(std::chrono::steady_clock::time_point end) {
  while (outPipe_ >= 0 || errPipe_ >= 0) {
    std::array<pollfd, 2> waiting{{{outPipe_, POLLIN, 0}, {errPipe_, POLLIN, 0}}};
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0) {
      Send(SIGKILL);
      return;
    }
    if (poll(waiting.data(), waiting.size(), static_cast<int>(left.count())) <= 0) continue;
    if (waiting[0].revents != 0) ReadSome(outPipe_, result_.out);
    if (waiting[1].revents != 0) ReadSome(errPipe_, result_.err);
  }
}

ProcessResult ChildProcess::Wait(std::chrono::milliseconds limit) {
  ReadUntil(std::chrono::steady_clock::now() + limit);
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  if (WIFEXITED(status)) result_.exitCode = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result_.signal = WTERMSIG(status);
  return result_;
}

ProcessResult RunProcess(const std::vector<std::string>& command,
                         const std::map<std::string, std::string>& environment) {
  return ChildProcess(command, environment).Wait();
}

ProcessResult RunAndKill(const std::vector<std::string>& command,
                         const std::map<std::string, std::string>& environment,
                         std::chrono::microseconds delay) {
  ChildProcess child(command, environment);
  std::this_thread::sleep_for(delay);
  child.Send(SIGKILL);
  return child.Wait();
}

}  // namespace korvel::test
