#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace korvel::test {

/// An empty folder of its own under the system's temporary folder, removed with all it holds.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

/// The whole file as bytes; throws std::runtime_error when it cannot be read.
std::string ReadFile(const std::filesystem::path& file);
/// Replaces the file's contents; throws std::runtime_error when it cannot be written.
void WriteFile(const std::filesystem::path& file, std::string_view bytes);

}  // namespace korvel::test
