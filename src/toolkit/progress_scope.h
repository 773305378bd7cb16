#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>

#include "toolkit/ports.h"

namespace korvel::toolkit {

/// Thrown out of long work when the user cancels it; whoever holds the transaction rolls it back by unwinding.
class Cancelled : public std::runtime_error {
 public:
  Cancelled() : std::runtime_error("Operação cancelada pelo utilizador") {}
};

/// One stretch of long work: shows its caption at once, its count from time to time, and takes it away at the end.
class ProgressScope {
 public:
  ProgressScope(Progress& progress, std::string_view caption, std::int64_t total) : progress_(progress) {
    progress_.Begin(caption, total);
  }
  ~ProgressScope() { progress_.End(); }
  ProgressScope(const ProgressScope&) = delete;
  ProgressScope& operator=(const ProgressScope&) = delete;

  /// Counts one row. `detail()` gives the row's text and is called only when it is about to be shown.
  /// Throws Cancelled.
  template <typename Detail>
  void Step(Detail&& detail) {
    if (++done_ % kLookEvery != 0 && done_ != 1) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - shown_ < kPause) return;
    shown_ = now;
    if (!progress_.Show(done_, detail())) throw Cancelled();
  }
  void Step() {
    Step([] { return std::string_view(); });
  }

 private:
  static constexpr std::int64_t kLookEvery = 64;
  static constexpr std::chrono::milliseconds kPause{50};

  Progress& progress_;
  std::int64_t done_ = 0;
  std::chrono::steady_clock::time_point shown_{};
};

}  // namespace korvel::toolkit
