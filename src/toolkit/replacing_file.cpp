#include "toolkit/replacing_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <system_error>

#include "toolkit/descriptor.h"

namespace korvel::toolkit {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTemporaryPrefix = ".korvel-";
constexpr std::string_view kTemporarySuffix = ".tmp";
constexpr std::size_t kCopyBytes = 64 * 1024;

fs::path FolderOf(const fs::path& target) {
  return target.has_parent_path() ? target.parent_path() : fs::path(".");
}

bool IsTemporary(const fs::path& file) {
  const std::string name = file.filename().string();
  return name.starts_with(kTemporaryPrefix) && name.ends_with(kTemporarySuffix);
}

bool Lock(int descriptor) {
  return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

/// The lock of a process goes with it, so a temporary file that can be locked has lost its writer.
void RemoveIfAbandoned(const fs::path& file) {
  const Descriptor descriptor(::open(file.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
  if (descriptor.IsOpen() && Lock(descriptor.Number())) ::unlink(file.c_str());
}

/// Clearing up is a courtesy: a folder that may not be listed, or a file that may not be removed, is no reason
/// to refuse the export.
void RemoveAbandoned(const fs::path& folder) {
  std::error_code failed;
  for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end; entry.increment(failed)) {
    if (IsTemporary(entry->path())) RemoveIfAbandoned(entry->path());
  }
}

fs::path NewTemporaryName(const fs::path& folder) {
  static std::atomic<unsigned> count{0};
  return folder / fmt::format("{}{}-{}{}", kTemporaryPrefix, ::getpid(), ++count, kTemporarySuffix);
}

/// False when another process swept the file away between its making and its lock.
bool StillThere(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && status.st_nlink > 0;
}

}  // namespace

fs::path PathOf(std::string_view utf8) {
  return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string TextOf(const fs::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

ReplacingFile::ReplacingFile(const fs::path& target) : target_(target) {
  RemoveAbandoned(FolderOf(target_));
  while (descriptor_ < 0) CreateTemporary();
}

ReplacingFile::~ReplacingFile() {
  if (descriptor_ < 0) return;
  if (!finished_) ::unlink(temporary_.c_str());
  ::close(descriptor_);
}

void ReplacingFile::CreateTemporary() {
  temporary_ = NewTemporaryName(FolderOf(target_));
  Descriptor made(::open(temporary_.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0666));
  if (!made.IsOpen() && errno == EEXIST) return;
  if (!made.IsOpen()) Fail("criar", errno);
  if (Lock(made.Number()) && StillThere(made.Number())) descriptor_ = made.Release();
}

void ReplacingFile::Send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail("escrever", errno);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void ReplacingFile::Complete() {
  if (::fsync(descriptor_) != 0) Fail("escrever", errno);
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) Fail("substituir", errno);
  finished_ = true;
  const Descriptor folder(::open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some file systems cannot flush a folder; the file itself is safe by then.
  if (folder.IsOpen() && ::fsync(folder.Number()) != 0 && errno == EIO) Fail("gravar", errno);
}

void ReplacingFile::CopyTo(FileSink& to, std::uint64_t begin, std::uint64_t end) const {
  while (begin < end) {
    const auto piece = static_cast<std::size_t>(std::min<std::uint64_t>(end - begin, kCopyBytes));
    char* room = to.Reserve(piece);
    const ssize_t read = ::pread(descriptor_, room, piece, static_cast<off_t>(begin));
    if (read < 0 && errno == EINTR) continue;
    if (read <= 0) Fail("ler", read < 0 ? errno : EIO);
    to.Commit(room + read);
    begin += static_cast<std::uint64_t>(read);
  }
}

void ReplacingFile::Fail(std::string_view action, int error) const {
  throw FileError(action, TextOf(target_), error);
}

}  // namespace korvel::toolkit
