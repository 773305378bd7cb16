#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvel::auditfile {

/// The key of a running group of rows: compared without regard to case and outer blanks. A new one has no key, so
/// that the first row begins a group.
class RunningKey {
 public:
  /// True when a row with this text begins another group, whose key it becomes. Most rows repeat the text of the row
  /// before, which is seen without making a key.
  bool Changes(std::string_view text);
  /// The next row begins a group whatever its text.
  void Reset() { key_.reset(); }

 private:
  std::string text_;
  std::optional<std::string> key_;
};

}  // namespace korvel::auditfile
