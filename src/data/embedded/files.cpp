#include "data/embedded/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace korvel::data::embedded {

namespace fs = std::filesystem;

void RemoveLogFiles(const fs::path& file) {
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    std::error_code ignored;  // what is not there needs no removing
    fs::remove(file.string() + suffix, ignored);
  }
}

void RemoveDatabaseFiles(const fs::path& file) {
  std::error_code ignored;  // what stays is never listed
  fs::remove(file, ignored);
  RemoveLogFiles(file);
}

void SyncFolder(const fs::path& folder) {
  const OpenFile handle(folder, O_RDONLY | O_DIRECTORY);
  if (handle.IsOpen()) ::fsync(handle.Handle());
}

OpenFile::OpenFile(const fs::path& path, int flags)
    : handle_(::open(path.c_str(), flags | O_CLOEXEC, 0644)) {}

OpenFile::~OpenFile() {
  if (handle_ >= 0) ::close(handle_);
}

std::int64_t OpenFile::Size() const {
  struct stat status {};
  return ::fstat(handle_, &status) == 0 && S_ISREG(status.st_mode) ? std::int64_t{status.st_size} : -1;
}

bool OpenFile::ReadAt(std::int64_t offset, std::string& bytes, std::size_t count) const {
  bytes.resize(count);
  std::size_t done = 0;
  while (done < count) {
    const ssize_t read =
        ::pread(handle_, bytes.data() + done, count - done, offset + static_cast<std::int64_t>(done));
    if (read < 0 && errno == EINTR) continue;
    if (read < 0) return false;
    if (read == 0) break;
    done += static_cast<std::size_t>(read);
  }
  bytes.resize(done);
  return true;
}

bool OpenFile::Write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = ::write(handle_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool OpenFile::Sync() const {
  return ::fsync(handle_) == 0;
}

}  // namespace korvel::data::embedded
