#include "data/odbc/wide_text.h"

#include "data/collation_weights.h"

namespace korvel::data::odbc {
namespace {

constexpr char32_t kSupplementary = 0x10000;
constexpr char32_t kHighSurrogate = 0xD800;
constexpr char32_t kLowSurrogate = 0xDC00;
constexpr unsigned kSurrogateBits = 10;
constexpr char32_t kSurrogateMask = 0x3FF;

/// The first half of a pair that stands for one character.
bool IsPair(const SQLWCHAR* at) {
  return (at[0] & ~kSurrogateMask) == kHighSurrogate && (at[1] & ~kSurrogateMask) == kLowSurrogate;
}

void AppendUtf8(std::string& text, char32_t c) {
  constexpr char32_t kMarks[] = {0, 0xC0, 0xE0, 0xF0};
  const unsigned more = c < 0x80 ? 0 : c < 0x800 ? 1 : c < kSupplementary ? 2 : 3;
  text += static_cast<char>(kMarks[more] | c >> 6 * more);
  for (unsigned left = more; left > 0; --left) text += static_cast<char>(0x80 | (c >> 6 * (left - 1) & 0x3F));
}

}  // namespace

std::vector<SQLWCHAR> ToWide(std::string_view utf8) {
  std::vector<SQLWCHAR> wide;
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t c = NextCharacter(utf8, at);
    if (c < kSupplementary) {
      wide.push_back(static_cast<SQLWCHAR>(c));
      continue;
    }
    wide.push_back(static_cast<SQLWCHAR>(kHighSurrogate + ((c - kSupplementary) >> kSurrogateBits)));
    wide.push_back(static_cast<SQLWCHAR>(kLowSurrogate + (c & kSurrogateMask)));
  }
  wide.push_back(0);
  return wide;
}

std::string FromWide(const SQLWCHAR* text) {
  std::string utf8;
  for (; *text != 0; ++text) {
    char32_t c = *text;
    if (IsPair(text)) {
      c = kSupplementary + ((c & kSurrogateMask) << kSurrogateBits);
      c += *++text & kSurrogateMask;
    }
    AppendUtf8(utf8, c);
  }
  return utf8;
}

}  // namespace korvel::data::odbc
