#include "databases/version.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace korvel::databases {

std::string_view ProgramVersion() {
  return KORVEL_VERSION;
}

std::string VersionDigits(std::string_view version) {
  constexpr int kParts = 3;
  std::string digits;
  for (int i = 0; i < kParts; ++i) {
    const std::string_view part = version.substr(0, version.find('.'));
    unsigned number = 0;
    std::from_chars(part.data(), part.data() + part.size(), number);
    digits += fmt::format("{:04}", number);
    version.remove_prefix(std::min(part.size() + 1, version.size()));
  }
  return digits;
}

std::string SchemaVersion() {
  return VersionDigits(ProgramVersion());
}

}  // namespace korvel::databases
