#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "toolkit/utf8.h"

/// windows-1252, the code page of the audit file and of the ciphers. Its five unassigned bytes (81, 8D, 8F,
/// 90, 9D) stand for the control characters of the same number, so that each of the 256 bytes has one
/// character and the way there and back loses nothing.
namespace korvel::toolkit {

/// Nothing for a character that the code page lacks.
std::optional<std::uint8_t> CodePageByte(char32_t character);
char32_t CodePageCharacter(std::uint8_t byte);

/// The code-page bytes in UTF-8.
std::string FromCodePage(std::string_view bytes);
/// Appends the code-page bytes of `utf8` to `out`. For a character that the code page lacks,
/// `missing(character, out)` decides what is appended; an ill-formed byte is such a character, kReplacement.
template <typename Missing>
void AppendCodePage(std::string_view utf8, std::string& out, Missing&& missing);

struct CodePageText {
  std::string bytes;        // "?" in place of each character that was lost
  std::size_t missing = 0;  // how many were
};
CodePageText ToCodePage(std::string_view utf8);
bool FitsCodePage(std::string_view utf8);

template <typename Missing>
void AppendCodePage(std::string_view utf8, std::string& out, Missing&& missing) {
  for (std::size_t at = 0; at < utf8.size();) {
    const std::size_t end = AsciiEnd(utf8, at);
    out.append(utf8.substr(at, end - at));
    if (end == utf8.size()) return;
    const Decoded decoded = DecodeUtf8(utf8, end);
    const std::optional<std::uint8_t> byte = CodePageByte(decoded.character);
    if (byte) {
      out += static_cast<char>(*byte);
    } else {
      missing(decoded.character, out);
    }
    at = end + decoded.bytes;
  }
}

}  // namespace korvel::toolkit
