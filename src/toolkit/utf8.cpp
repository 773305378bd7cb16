#include "toolkit/utf8.h"

#include <cstdint>
#include <cstring>

namespace korvel::toolkit {
namespace {

constexpr Decoded kIllFormed{kReplacement, 1, false};

/// What a leading byte tells: length, its own bits, the least code point that needs that length.
struct Lead {
  std::size_t bytes;
  char32_t bits;
  char32_t least;
};

Lead ReadLead(unsigned char byte) {
  if (byte >= 0xF0 && byte <= 0xF4) return {4, char32_t(byte & 0x07), 0x10000};
  if (byte >= 0xE0 && byte <= 0xEF) return {3, char32_t(byte & 0x0F), 0x800};
  if (byte >= 0xC2 && byte <= 0xDF) return {2, char32_t(byte & 0x1F), 0x80};
  return {0, 0, 0};
}

bool IsScalar(char32_t character) {
  return character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}

}  // namespace

Decoded DecodeUtf8(std::string_view text, std::size_t at) {
  const auto first = static_cast<unsigned char>(text[at]);
  if (first < 0x80) return {first, 1, true};
  const Lead lead = ReadLead(first);
  if (lead.bytes == 0 || text.size() - at < lead.bytes) return kIllFormed;
  char32_t character = lead.bits;
  for (std::size_t i = 1; i < lead.bytes; ++i) {
    const auto next = static_cast<unsigned char>(text[at + i]);
    if ((next & 0xC0) != 0x80) return kIllFormed;
    character = (character << 6) | (next & 0x3F);
  }
  if (character < lead.least || !IsScalar(character)) return kIllFormed;
  return {character, lead.bytes, true};
}

void AppendUtf8(std::string& out, char32_t character) {
  const auto tail = [&](int shift) { out += static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    out += static_cast<char>(character);
  } else if (character < 0x800) {
    out += static_cast<char>(0xC0 | (character >> 6));
    tail(0);
  } else if (character < 0x10000) {
    out += static_cast<char>(0xE0 | (character >> 12));
    tail(6), tail(0);
  } else {
    out += static_cast<char>(0xF0 | (character >> 18));
    tail(12), tail(6), tail(0);
  }
}

std::size_t AsciiEnd(std::string_view text, std::size_t at) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  for (std::uint64_t word = 0; text.size() - at >= sizeof word; at += sizeof word) {
    std::memcpy(&word, text.data() + at, sizeof word);
    if ((word & kHighBits) != 0) break;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at;
}

std::size_t CharacterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = AsciiEnd(text, at);
    count += end - at;
    if (end == text.size()) break;
    at = end + DecodeUtf8(text, end).bytes;
    ++count;
  }
  return count;
}

}  // namespace korvel::toolkit
