#include "cli/terminal_progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

namespace korvel::cli {

namespace {

constexpr std::string_view kClearLine = "\r\x1b[K";
constexpr double kSettled = 0.5;  // seconds before a rate says anything

std::string TimeLeft(double seconds) {
  const auto whole = static_cast<std::int64_t>(seconds + 0.5);
  if (whole < 60) return fmt::format("{} s", whole);
  if (whole < 3600) return fmt::format("{} min {:02} s", whole / 60, whole % 60);
  return fmt::format("{} h {:02} min", whole / 3600, whole % 3600 / 60);
}

}  // namespace

void TerminalProgress::Begin(std::string_view caption, std::int64_t total) {
  caption_ = caption;
  total_ = total;
  begun_ = now_();
  if (isTerminal_) (err_ << kClearLine << caption_).flush();
}

bool TerminalProgress::Show(std::int64_t done, std::string_view) {
  if (isTerminal_) (err_ << kClearLine << Line(done)).flush();
  return !interrupted_ || !interrupted_();
}

void TerminalProgress::End() {
  if (isTerminal_) (err_ << kClearLine).flush();
}

std::string TerminalProgress::Line(std::int64_t done) const {
  std::string line = total_ > 0 ? fmt::format("{} {} de {} ({} %)", caption_, done, total_,
                                              std::min<std::int64_t>(100, done * 100 / total_))
                                : fmt::format("{} {}", caption_, done);
  const double seconds = std::chrono::duration<double>(now_() - begun_).count();
  if (seconds < kSettled || done <= 0) return line;
  const double rate = static_cast<double>(done) / seconds;
  line += fmt::format(", {:.0f}/s", rate);
  if (total_ > done) line += ", faltam " + TimeLeft(static_cast<double>(total_ - done) / rate);
  return line;
}

}  // namespace korvel::cli
