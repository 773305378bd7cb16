#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korvel::toolkit {

/// Stands for each byte that is no part of well-formed UTF-8.
inline constexpr char32_t kReplacement = 0xFFFD;

struct Decoded {
  char32_t character;
  std::size_t bytes;  // 1 to 4; 1 for an ill-formed byte
  bool valid;
};

/// The character at `at`, which must lie inside `text`.
Decoded DecodeUtf8(std::string_view text, std::size_t at);
/// Appends a code point up to U+10FFFF.
void AppendUtf8(std::string& out, char32_t character);
/// Characters in a text, an ill-formed byte counting as one.
std::size_t CharacterCount(std::string_view text);
/// Where the run of ASCII that starts at `at` ends.
std::size_t AsciiEnd(std::string_view text, std::size_t at);
inline bool IsAscii(std::string_view text) {
  return AsciiEnd(text, 0) == text.size();
}

/// Calls `visit(character, piece)` for each character; `piece` is its bytes in `text`.
template <typename Visit>
void ForEachCharacter(std::string_view text, Visit&& visit) {
  for (std::size_t at = 0; at < text.size();) {
    const Decoded decoded = DecodeUtf8(text, at);
    visit(decoded.character, text.substr(at, decoded.bytes));
    at += decoded.bytes;
  }
}

}  // namespace korvel::toolkit
