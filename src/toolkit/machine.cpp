#include "toolkit/machine.h"

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace korvel::toolkit {

namespace fs = std::filesystem;

std::string GetMachineName() {
  std::array<char, 256> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

std::optional<std::string> FindVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

fs::path ServersFolder() {
  const auto text = [](const char* name) { return FindVariable(name).value_or(std::string()); };
  if (const std::string folder = text("KORVEL_DADOS"); !folder.empty()) return folder;
  if (const std::string folder = text("XDG_DATA_HOME"); !folder.empty()) return fs::path(folder) / "korvel";
  const std::string home = text("HOME");
  if (home.empty()) throw std::runtime_error("Defina KORVEL_DADOS, a pasta dos servidores embebidos.");
  return fs::path(home) / ".local" / "share" / "korvel";
}

fs::path ProgramFile() {
  return fs::canonical("/proc/self/exe");
}

}  // namespace korvel::toolkit
