#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/program.h"
#include "toolkit/machine.h"
#include "toolkit/settings_file.h"
#include "toolkit/system_clock.h"

namespace {

volatile std::sig_atomic_t interruptions = 0;

/// The first Ctrl+C asks long work to end and roll back; a second one ends the process at once.
void WatchInterruptions() {
  struct sigaction action {};
  action.sa_handler = [](int) { interruptions = 1; };
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

/// Turns the terminal's echo off for the length of a scope.
class Unseen {
 public:
  Unseen() {
    tcgetattr(STDIN_FILENO, &before_);
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
  }
  ~Unseen() { tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_); }
  Unseen(const Unseen&) = delete;
  Unseen& operator=(const Unseen&) = delete;

 private:
  termios before_{};
};

std::optional<std::string> AskSecret(const std::string& caption) {
  std::cerr << caption << std::flush;
  std::string line;
  bool read = false;
  {
    const Unseen unseen;
    read = static_cast<bool>(std::getline(std::cin, line));
  }
  std::cerr << '\n';
  return read ? std::optional(line) : std::nullopt;
}

int Run(const std::vector<std::string>& arguments) {
  const korvel::toolkit::SystemClock clock;
  korvel::toolkit::SettingsFile settings(korvel::toolkit::DefaultSettingsPath());
  const bool hasTerminal = isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
  korvel::cli::CommandEnvironment environment{.out = std::cout,
                                              .err = std::cerr,
                                              .errIsTerminal = isatty(STDERR_FILENO) == 1,
                                              .serversFolder = korvel::toolkit::ServersFolder(),
                                              .programFile = korvel::toolkit::ProgramFile(),
                                              .settings = settings,
                                              .clock = clock,
                                              .interrupted = [] { return interruptions != 0; },
                                              .variable = korvel::toolkit::FindVariable,
                                              .askSecret = {}};
  if (hasTerminal) environment.askSecret = AskSecret;
  const auto exit = korvel::cli::RunKorvelctl(arguments, environment);
  if (!std::cout.flush()) throw std::runtime_error("Não foi possível escrever a saída.");
  return static_cast<int>(exit);
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  WatchInterruptions();
  try {
    return Run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return static_cast<int>(korvel::cli::Exit::Refused);
  }
}
