#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "toolkit/file_sink.h"

namespace korvel::toolkit {

/// A path from UTF-8 text, and back.
std::filesystem::path PathOf(std::string_view utf8);
std::string TextOf(const std::filesystem::path& path);

/// Writes under a temporary name beside the target and takes the target's place in Finish(), after the bytes have
/// reached the disk: whoever opens the target sees the earlier file or the whole new one. Not finished, the temporary
/// file is removed. Temporary files that killed processes left in the folder are removed on the way;
/// those of running ones are known by their lock and stay.
class ReplacingFile final : public FileSink {
 public:
  /// Throws FileError.
  explicit ReplacingFile(const std::filesystem::path& target);
  ~ReplacingFile() override;

  /// Appends a stretch of the finished file to another sink. It is read from what was written here, even when
  /// somebody has replaced the file since. Throws FileError.
  void CopyTo(FileSink& to, std::uint64_t begin, std::uint64_t end) const;

 protected:
  void Send(std::string_view bytes) override;
  void Complete() override;

 private:
  void CreateTemporary();
  [[noreturn]] void Fail(std::string_view action, int error) const;

  std::filesystem::path target_;
  std::filesystem::path temporary_;
  int descriptor_ = -1;
  bool finished_ = false;
};

}  // namespace korvel::toolkit
