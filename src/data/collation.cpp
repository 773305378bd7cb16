#include "data/collation.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "data/collation_weights.h"

namespace korvel::data {
namespace {

constexpr std::uint32_t kForeign = 0x10000;

/// Every letter of windows-1252 in its order, the two cases of one letter side by side.
/// A letter without a second case stands alone. All other characters sort in front, by code.
constexpr std::u32string_view kLetters =
    U"Aa Àà Áá Ââ Ãã Ää Åå Ææ Bb Cc Çç Dd Ee Èè Éé Êê Ëë Ff Gg Hh Ii Ìì Íí Îî Ïï Jj Kk Ll Mm Nn Ññ "
    U"Oo Òò Óó Ôô Õõ Öö Øø Œœ Pp Qq Rr Ss Šš ß Tt Uu Ùù Úú Ûû Üü Vv Ww Xx Yy Ýý Ÿÿ Zz Žž Ðð Þþ";

/// The other characters of windows-1252 above ASCII, in the order of their codes there.
constexpr std::u32string_view kHighSymbols =
    U"€‚ƒ„…†‡ˆ‰‹‘’“”•–—˜™›\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿×÷";

constexpr std::size_t kTableSize = 0x180;
using Table = std::array<std::uint16_t, kTableSize>;

constexpr bool IsAsciiLetter(char32_t c) {
  return (c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z');
}
constexpr bool IsDigit(char32_t c) {
  return c >= U'0' && c <= U'9';
}

/// Weight of a symbol of windows-1252 above the table, 0 for others.
constexpr std::uint16_t HighSymbolWeight(char32_t c) {
  const std::size_t found = kHighSymbols.find(c);
  return found == std::u32string_view::npos ? std::uint16_t{0} : static_cast<std::uint16_t>(0x80 + found);
}

constexpr std::uint16_t kFirstDigit = 0x180;
constexpr std::uint16_t kFirstLetter = 0x200;

constexpr Table MakeTable() {
  Table table{};
  for (char32_t c = 0; c < 0x80; ++c) {
    if (!IsAsciiLetter(c))
      table[c] = static_cast<std::uint16_t>(IsDigit(c) ? kFirstDigit + (c - U'0') : 1 + c);
  }
  for (char32_t c = 0x80; c < kTableSize; ++c) table[c] = HighSymbolWeight(c);
  std::uint16_t weight = kFirstLetter;
  for (const char32_t c : kLetters) {
    if (c == U' ') {
      ++weight;
    } else {
      table[c] = weight;
    }
  }
  return table;
}

constexpr Table kWeights = MakeTable();
constexpr std::uint32_t kBlank = kWeights[' '];

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// Where the texts first differ, moved back to the first byte of that character.
std::size_t SharedPrefix(std::string_view a, std::string_view b) {
  const std::size_t size = a.size() < b.size() ? a.size() : b.size();
  std::size_t i = 0;
  for (std::uint64_t x = 0, y = 0; i + sizeof x <= size; i += sizeof x) {
    std::memcpy(&x, a.data() + i, sizeof x);
    std::memcpy(&y, b.data() + i, sizeof y);
    if (x != y) break;
  }
  while (i < size && a[i] == b[i]) ++i;
  while (i > 0 && ((i < a.size() && IsContinuation(a[i])) || (i < b.size() && IsContinuation(b[i])))) --i;
  return i;
}

std::uint32_t NextWeight(std::string_view text, std::size_t& at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  if (byte < 0x80) {
    ++at;
    return kWeights[byte];
  }
  return CharacterWeight(NextCharacter(text, at));
}

/// The rest of a text against nothing but blanks.
int AgainstBlanks(std::string_view text, std::size_t at) {
  while (at < text.size()) {
    const std::uint32_t weight = NextWeight(text, at);
    if (weight != kBlank) return weight < kBlank ? -1 : 1;
  }
  return 0;
}

void AppendWeight(std::string& key, std::uint32_t weight) {
  for (int shift = 16; shift >= 0; shift -= 8) key.push_back(static_cast<char>((weight >> shift) & 0xFF));
}

}  // namespace

char32_t NextCharacter(std::string_view text, std::size_t& at) {
  const auto lead = static_cast<unsigned char>(text[at++]);
  if (lead < 0x80) return lead;
  const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
  char32_t code = more == 0 ? lead : lead & (0x3Fu >> more);
  for (int i = 0; i < more && at < text.size() && IsContinuation(text[at]); ++i, ++at) {
    code = (code << 6) | (static_cast<unsigned char>(text[at]) & 0x3F);
  }
  return code;
}

std::uint32_t CharacterWeight(char32_t c) {
  const std::uint16_t weight = c < kTableSize ? kWeights[c] : HighSymbolWeight(c);
  return weight != 0 ? weight : kForeign + static_cast<std::uint32_t>(c);
}

int Collate(std::string_view a, std::string_view b) {
  std::size_t i = SharedPrefix(a, b);
  std::size_t j = i;
  while (i < a.size() && j < b.size()) {
    const std::uint32_t left = NextWeight(a, i);
    const std::uint32_t right = NextWeight(b, j);
    if (left != right) return left < right ? -1 : 1;
  }
  if (i < a.size()) return AgainstBlanks(a, i);
  return -AgainstBlanks(b, j);
}

std::string CollationKey(std::string_view text) {
  while (text.ends_with(' ')) text.remove_suffix(1);
  std::string key;
  key.reserve(text.size() * 3);
  for (std::size_t at = 0; at < text.size();) AppendWeight(key, NextWeight(text, at));
  return key;
}

}  // namespace korvel::data
