#include "gateways/work_progress.h"

#include <fmt/format.h>

namespace korvel::desktop {

namespace {

/// Groups of three digits apart by a blank.
std::string Grouped(std::int64_t count) {
  std::string digits = std::to_string(count);
  for (auto place = static_cast<std::ptrdiff_t>(digits.size()) - 3; place > 0; place -= 3) {
    digits.insert(static_cast<std::size_t>(place), " ");
  }
  return digits;
}

std::string Duration(std::int64_t seconds) {
  if (seconds < 60) return fmt::format("{} s", seconds);
  return fmt::format("{} min {:02} s", seconds / 60, seconds % 60);
}

}  // namespace

void WorkProgress::Begin(std::string_view caption, std::int64_t total) {
  const std::lock_guard lock(guard_);
  state_ = {std::string(caption), {}, 0, total, std::chrono::steady_clock::now()};
}

bool WorkProgress::Show(std::int64_t done, std::string_view detail) {
  const std::lock_guard lock(guard_);
  state_.done = done;
  state_.detail = detail;
  if (cancelled_) obeyed_ = true;
  return !cancelled_;
}

void WorkProgress::End() {
  const std::lock_guard lock(guard_);
  state_.done = state_.total;
  state_.detail.clear();
}

WorkProgress::State WorkProgress::Now() const {
  const std::lock_guard lock(guard_);
  return state_;
}

void WorkProgress::Reset() {
  const std::lock_guard lock(guard_);
  state_ = {};
  cancelled_ = false;
  obeyed_ = false;
}

std::string ProgressText(const WorkProgress::State& state, std::chrono::steady_clock::time_point now) {
  if (state.done == 0) return state.total == 0 ? std::string() : Grouped(state.total);
  std::string text = Grouped(state.done);
  if (state.total > 0) text += " de " + Grouped(state.total);
  const double seconds = std::chrono::duration<double>(now - state.begun).count();
  if (seconds < 1) return text;
  const double rate = static_cast<double>(state.done) / seconds;
  text += fmt::format("  -  {} por segundo", Grouped(static_cast<std::int64_t>(rate)));
  if (state.total > state.done && rate > 0) {
    const double left = static_cast<double>(state.total - state.done) / rate;
    text += "  -  faltam " + Duration(static_cast<std::int64_t>(left) + 1);
  }
  return text;
}

}  // namespace korvel::desktop
