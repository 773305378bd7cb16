#include "data/odbc/latin_text.h"

#include "data/collation_weights.h"

namespace korvel::data::odbc {
namespace {

constexpr char32_t kFirstBehind = 0x100;
constexpr unsigned char kFirstBeyondAscii = 0x80;

void AppendUtf8(std::string& text, unsigned char latin) {
  if (latin < kFirstBeyondAscii) {
    text += static_cast<char>(latin);
    return;
  }
  text += static_cast<char>(0xC0 | latin >> 6);
  text += static_cast<char>(0x80 | (latin & 0x3F));
}

/// How many bytes follow the first one of a character; nothing for a byte that starts none.
std::optional<std::size_t> FollowersOf(unsigned char lead) {
  if (lead < kFirstBeyondAscii) return 0;
  if (lead >= 0xC2 && lead < 0xE0) return 1;
  if (lead >= 0xE0 && lead < 0xF0) return 2;
  if (lead >= 0xF0 && lead < 0xF5) return 3;
  return std::nullopt;
}

bool IsUtf8(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto followers = FollowersOf(static_cast<unsigned char>(bytes[at++]));
    if (!followers || *followers > bytes.size() - at) return false;
    for (std::size_t i = 0; i < *followers; ++i) {
      if ((static_cast<unsigned char>(bytes[at++]) & 0xC0) != 0x80) return false;
    }
  }
  return true;
}

}  // namespace

std::optional<std::string> ToLatin1(std::string_view utf8) {
  std::string latin;
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t c = NextCharacter(utf8, at);
    if (c >= kFirstBehind) return std::nullopt;
    latin += static_cast<char>(c);
  }
  return latin;
}

std::string AsUtf8(std::string bytes) {
  if (IsUtf8(bytes)) return bytes;
  std::string text;
  for (const char byte : bytes) AppendUtf8(text, static_cast<unsigned char>(byte));
  return text;
}

}  // namespace korvel::data::odbc
