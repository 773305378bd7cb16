#pragma once

#include <chrono>
#include <functional>
#include <iosfwd>
#include <string>

#include "toolkit/ports.h"

namespace korvel::cli {

/// Long work on one line of a terminal, drawn over and over: caption, count, rate, time left. Off a terminal it
/// draws nothing. Either way it is where an interruption is noticed.
class TerminalProgress final : public toolkit::Progress {
 public:
  using Now = std::function<std::chrono::steady_clock::time_point()>;

  TerminalProgress(std::ostream& err, bool isTerminal, std::function<bool()> interrupted,
                   Now now = std::chrono::steady_clock::now)
      : err_(err), isTerminal_(isTerminal), interrupted_(std::move(interrupted)), now_(std::move(now)) {}

  void Begin(std::string_view caption, std::int64_t total) override;
  bool Show(std::int64_t done, std::string_view detail) override;
  void End() override;

 private:
  std::string Line(std::int64_t done) const;

  std::ostream& err_;
  bool isTerminal_;
  std::function<bool()> interrupted_;
  Now now_;
  std::string caption_;
  std::int64_t total_ = 0;
  std::chrono::steady_clock::time_point begun_;
};

}  // namespace korvel::cli
