#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "toolkit/file_sink.h"

namespace korvel::toolkit {

/// A file's bytes. Throws FileError when there is no such file or it cannot be read.
std::string ReadWholeFile(const std::filesystem::path& file);

/// Puts a file of these bytes in the target's place, as ReplacingFile does. Throws FileError, the target as it was.
void ReplaceWholeFile(const std::filesystem::path& target, std::string_view bytes);

}  // namespace korvel::toolkit
