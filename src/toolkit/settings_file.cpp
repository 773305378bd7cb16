#include "toolkit/settings_file.h"

// The store is UTF-8 on both sides.
#define SI_NO_CONVERSION
#include <SimpleIni.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace korvel::toolkit {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& what, const fs::path& path) {
  throw std::runtime_error(what + ": " + path.string());
}

fs::path FolderFrom(const char* variable, const fs::path& below = {}) {
  const char* value = std::getenv(variable);
  if (value == nullptr || *value == '\0') return {};
  return below.empty() ? fs::path(value) : fs::path(value) / below;
}

/// The whole store of one moment.
class Ini {
 public:
  Ini() : ini_(/*a_bIsUtf8=*/true, /*a_bMultiKey=*/false, /*a_bMultiLine=*/true) {}

  bool Parse(const std::string& text) { return ini_.LoadData(text) >= 0; }

  std::optional<std::string> Value(const std::string& section, const std::string& key) const {
    const char* value = ini_.GetValue(section.c_str(), key.c_str());
    if (value == nullptr) return std::nullopt;
    return std::string(value);
  }
  void SetValue(const std::string& section, const std::string& key, const std::string& value) {
    ini_.SetValue(section.c_str(), key.c_str(), value.c_str(), nullptr, /*a_bForceReplace=*/true);
  }
  std::string Text() const {
    std::string text;
    ini_.Save(text);
    return text;
  }

 private:
  CSimpleIniA ini_;
};

void Load(Ini& ini, const fs::path& path) {
  if (!fs::exists(path)) return;
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file || !ini.Parse(text)) Fail("Não foi possível ler as definições", path);
}

/// A name that no other process and no earlier failure uses.
fs::path TemporaryBeside(const fs::path& path) {
  const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
  fs::path temporary = path;
  temporary += "." + std::to_string(ticks) + ".tmp";
  return temporary;
}

void ReplaceFile(const fs::path& path, const std::string& text) {
  std::error_code error;
  if (path.has_parent_path()) fs::create_directories(path.parent_path(), error);
  const fs::path temporary = TemporaryBeside(path);
  std::ofstream file(temporary, std::ios::binary);
  file << text;
  file.close();
  if (file) fs::rename(temporary, path, error);
  if (file && !error) return;
  std::error_code ignored;
  fs::remove(temporary, ignored);
  Fail("Não foi possível guardar as definições", path);
}

}  // namespace

fs::path DefaultSettingsPath() {
#ifdef _WIN32
  const fs::path folder = FolderFrom("APPDATA");
#else
  const fs::path configured = FolderFrom("XDG_CONFIG_HOME");
  const fs::path folder = configured.empty() ? FolderFrom("HOME", ".config") : configured;
#endif
  if (folder.empty()) throw std::runtime_error("Não se encontra a pasta de definições do utilizador");
  return folder / "korvel" / "korvel.ini";
}

SettingsFile::SettingsFile(fs::path path) : path_(std::move(path)) {
  Ini ini;
  Load(ini, path_);
}

std::optional<std::string> SettingsFile::Read(std::string_view section, std::string_view key) const {
  Ini ini;
  Load(ini, path_);
  return ini.Value(std::string(section), std::string(key));
}

void SettingsFile::Write(std::string_view section, std::string_view key, std::string_view value) {
  const std::string sectionName(section);
  const std::string keyName(key);
  Ini ini;
  Load(ini, path_);
  ini.SetValue(sectionName, keyName, std::string(value));
  const std::string text = ini.Text();
  // A name or value that the format cannot carry (a "]" in a section, a NUL) would be lost without a word.
  Ini check;
  if (!check.Parse(text) || check.Value(sectionName, keyName) != value)
    Fail("Definição que não se pode guardar", path_);
  ReplaceFile(path_, text);
}

}  // namespace korvel::toolkit
