#pragma once

#include <filesystem>
#include <optional>

#include "toolkit/descriptor.h"

namespace korvel::session {

/// Marks the one running instance of the program for as long as it lives. The operating system gives it back when the
/// process ends, however it ends; the file itself stays and means nothing.
class InstanceLock {
 public:
  /// Nothing while another instance holds it. Throws toolkit::FileError when the file cannot be made or locked.
  static std::optional<InstanceLock> Take(const std::filesystem::path& file);

 private:
  explicit InstanceLock(toolkit::Descriptor file) : file_(std::move(file)) {}

  toolkit::Descriptor file_;
};

/// "korvel.lock" of this user: in XDG_RUNTIME_DIR, else beside the settings. Throws std::runtime_error when neither is
/// known.
std::filesystem::path DefaultInstanceLockPath();

}  // namespace korvel::session
