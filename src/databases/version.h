#pragma once

#include <array>
#include <string>
#include <string_view>

namespace korvel::databases {

/// The running program's version, "major.minor.revision".
std::string_view ProgramVersion();

/// Major, minor and revision; missing parts count as 0.
using VersionNumbers = std::array<unsigned, 3>;
VersionNumbers ParsedVersion(std::string_view version);

/// Twelve digits: major, minor and revision, each padded with zeros to four. Versions compare as text.
std::string VersionDigits(std::string_view version);

/// The version that an upgrade leaves in `Actualiza.Versao`.
std::string SchemaVersion();

}  // namespace korvel::databases
