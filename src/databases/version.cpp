#include "databases/version.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace korvel::databases {

std::string_view ProgramVersion() {
  return KORVEL_VERSION;
}

VersionNumbers ParsedVersion(std::string_view version) {
  VersionNumbers numbers{};
  for (unsigned& number : numbers) {
    const std::string_view part = version.substr(0, version.find('.'));
    std::from_chars(part.data(), part.data() + part.size(), number);
    version.remove_prefix(std::min(part.size() + 1, version.size()));
  }
  return numbers;
}

std::string VersionDigits(std::string_view version) {
  std::string digits;
  for (const unsigned number : ParsedVersion(version)) digits += fmt::format("{:04}", number);
  return digits;
}

std::string SchemaVersion() {
  return VersionDigits(ProgramVersion());
}

}  // namespace korvel::databases
