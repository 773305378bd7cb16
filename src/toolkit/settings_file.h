#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "toolkit/ports.h"

namespace korvel::toolkit {

/// `korvel/korvel.ini` in the user's configuration folder: APPDATA on Windows, elsewhere XDG_CONFIG_HOME or
/// `.config` at home. Throws std::runtime_error when none of these is known.
std::filesystem::path DefaultSettingsPath();

/// The settings store as an INI file in UTF-8. Sections and keys compare without regard to case; values keep
/// blanks and line breaks. Each Write takes in what other processes kept meanwhile and replaces the file as a
/// whole, through a temporary file beside it: on failure the file is as it was.
class SettingsFile : public Settings {
 public:
  /// A file that does not exist yet is an empty store. Throws std::runtime_error when it cannot be read.
  explicit SettingsFile(std::filesystem::path path);

  std::optional<std::string> Read(std::string_view section, std::string_view key) const override;
  void Write(std::string_view section, std::string_view key, std::string_view value) override;

 private:
  std::filesystem::path path_;
};

}  // namespace korvel::toolkit
