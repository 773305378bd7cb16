#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>

#include "toolkit/ports.h"

namespace korvel::desktop {

/// What long work says of itself, from the thread that does it, for whoever shows it on the screen's.
class WorkProgress final : public toolkit::Progress {
 public:
  struct State {
    std::string caption;
    std::string detail;
    std::int64_t done = 0;
    std::int64_t total = 0;                            // 0: not known
    std::chrono::steady_clock::time_point begun = {};  // of this caption
  };

  void Begin(std::string_view caption, std::int64_t total) override;
  bool Show(std::int64_t done, std::string_view detail) override;
  void End() override;

  State Now() const;
  /// The next Show tells the work to end and undo itself.
  void Cancel() { cancelled_ = true; }
  bool IsCancelled() const { return cancelled_; }
  /// Whether the work has been told so.
  bool WasObeyed() const { return obeyed_; }
  /// Forgets a cancellation, before the next work.
  void Reset();

 private:
  mutable std::mutex guard_;  // of state_
  State state_;
  std::atomic<bool> cancelled_ = false;
  std::atomic<bool> obeyed_ = false;
};

/// "12 345 de 100 000  -  3 210 por segundo  -  faltam 27 s"; the parts that are not known yet are left out.
std::string ProgressText(const WorkProgress::State& state, std::chrono::steady_clock::time_point now);

}  // namespace korvel::desktop
