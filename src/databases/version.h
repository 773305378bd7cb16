#pragma once

#include <string>
#include <string_view>

namespace korvel::databases {

/// The running program's version, "major.minor.revision".
std::string_view ProgramVersion();

/// Twelve digits: major, minor and revision, each padded with zeros to four. Versions compare as text.
/// Missing parts count as 0.
std::string VersionDigits(std::string_view version);

/// The version that an upgrade leaves in `Actualiza.Versao`.
std::string SchemaVersion();

}  // namespace korvel::databases
