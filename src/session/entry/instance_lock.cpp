#include "session/entry/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "toolkit/file_sink.h"
#include "toolkit/replacing_file.h"
#include "toolkit/settings_file.h"

namespace korvel::session {

namespace fs = std::filesystem;

std::optional<InstanceLock> InstanceLock::Take(const fs::path& file) {
  std::error_code ignored;  // a folder that cannot be made shows when the file is opened
  if (file.has_parent_path()) fs::create_directories(file.parent_path(), ignored);
  toolkit::Descriptor opened(::open(file.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600));
  if (!opened.IsOpen()) throw toolkit::FileError("criar", toolkit::TextOf(file), errno);
  if (::flock(opened.Number(), LOCK_EX | LOCK_NB) == 0) return InstanceLock(std::move(opened));
  if (errno != EWOULDBLOCK) throw toolkit::FileError("bloquear", toolkit::TextOf(file), errno);
  return std::nullopt;
}

fs::path DefaultInstanceLockPath() {
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  const bool known = folder != nullptr && *folder != '\0';
  return (known ? fs::path(folder) : toolkit::DefaultSettingsPath().parent_path()) / "korvel.lock";
}

}  // namespace korvel::session
