#include "toolkit/code_page.h"

#include <array>

namespace korvel::toolkit {
namespace {

/// Characters of the bytes 80 to 9F; all others have the number of their byte.
constexpr std::array<char32_t, 32> kFrom80 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                              0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                              0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                              0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

std::optional<std::uint8_t> CodePageByte(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
    return static_cast<std::uint8_t>(character);
  for (std::size_t i = 0; i < kFrom80.size(); ++i) {
    if (kFrom80[i] == character) return static_cast<std::uint8_t>(0x80 + i);
  }
  return std::nullopt;
}

char32_t CodePageCharacter(std::uint8_t byte) {
  return byte >= 0x80 && byte <= 0x9F ? kFrom80[byte - std::size_t{0x80}] : byte;
}

std::string FromCodePage(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = AsciiEnd(bytes, at);
    utf8.append(bytes.substr(at, end - at));
    if (end == bytes.size()) break;
    AppendUtf8(utf8, CodePageCharacter(static_cast<std::uint8_t>(bytes[end])));
    at = end + 1;
  }
  return utf8;
}

CodePageText ToCodePage(std::string_view utf8) {
  CodePageText text;
  text.bytes.reserve(utf8.size());
  AppendCodePage(utf8, text.bytes, [&](char32_t, std::string& out) {
    out += '?';
    ++text.missing;
  });
  return text;
}

bool FitsCodePage(std::string_view utf8) {
  return IsAscii(utf8) || ToCodePage(utf8).missing == 0;
}

}  // namespace korvel::toolkit
