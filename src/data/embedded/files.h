#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace korvel::data::embedded {

/// A database's file with the logs beside it. What is not there needs no removing.
void RemoveDatabaseFiles(const std::filesystem::path& file);
/// The logs alone, without which the file stands as it was at its last checkpoint.
void RemoveLogFiles(const std::filesystem::path& file);

/// Puts a folder's entries on the disk.
void SyncFolder(const std::filesystem::path& folder);

/// A file of the operating system, closed with the object.
class OpenFile {
 public:
  /// IsOpen() tells whether it worked; errno says why not.
  OpenFile(const std::filesystem::path& path, int flags);
  ~OpenFile();
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  bool IsOpen() const { return handle_ >= 0; }
  int Handle() const { return handle_; }
  /// -1 when it is no file that has a size.
  std::int64_t Size() const;
  /// Fewer bytes than asked only at the end of the file. False on failure.
  bool ReadAt(std::int64_t offset, std::string& bytes, std::size_t count) const;
  bool Write(std::string_view bytes) const;
  bool Sync() const;

 private:
  int handle_;
};

}  // namespace korvel::data::embedded
