#include "support/tds/wire.h"

#include <algorithm>
#include <utility>

#include "toolkit/utf8.h"

namespace korvel::tds {
namespace {

constexpr char32_t kFirstSurrogate = 0xD800;
constexpr char32_t kFirstLowSurrogate = 0xDC00;
constexpr char32_t kLastSurrogate = 0xDFFF;
constexpr char32_t kSupplementary = 0x10000;
constexpr unsigned kBitsPerSurrogate = 10;
constexpr char32_t kSurrogateMask = 0x3FF;

bool IsSurrogate(char32_t unit) {
  return unit >= kFirstSurrogate && unit <= kLastSurrogate;
}
bool IsLowSurrogate(char32_t unit) {
  return unit >= kFirstLowSurrogate && unit <= kLastSurrogate;
}

char32_t UnitAt(std::string_view bytes, std::size_t at) {
  const auto low = static_cast<unsigned char>(bytes[at]);
  const auto high = static_cast<unsigned char>(bytes[at + 1]);
  return static_cast<char32_t>(low | high << 8);
}

void AppendUnit(std::string& out, char32_t unit) {
  out += static_cast<char>(unit & 0xFF);
  out += static_cast<char>(unit >> 8 & 0xFF);
}

/// A text behind its length, which takes `width` bytes.
void AppendCounted(WireWriter& out, std::string_view utf8, std::size_t width, std::size_t most) {
  std::string units = ToUtf16(utf8);
  units.resize(std::min(units.size(), most * 2));
  out.Number(units.size() / 2, width).Bytes(units);
}

}  // namespace

std::string FromUtf16(std::string_view bytes) {
  std::string text;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    char32_t character = UnitAt(bytes, at);
    const bool paired = IsSurrogate(character) && !IsLowSurrogate(character) && at + 3 < bytes.size() &&
                        IsLowSurrogate(UnitAt(bytes, at + 2));
    if (paired) {
      at += 2;
      character = kSupplementary + ((character & kSurrogateMask) << kBitsPerSurrogate) +
                  (UnitAt(bytes, at) & kSurrogateMask);
    }
    toolkit::AppendUtf8(text, IsSurrogate(character) ? toolkit::kReplacement : character);
  }
  return text;
}

std::string ToUtf16(std::string_view utf8) {
  std::string units;
  units.reserve(utf8.size() * 2);
  toolkit::ForEachCharacter(utf8, [&](char32_t character, std::string_view) {
    if (character < kSupplementary) return AppendUnit(units, character);
    const char32_t rest = character - kSupplementary;
    AppendUnit(units, kFirstSurrogate + (rest >> kBitsPerSurrogate));
    AppendUnit(units, kFirstLowSurrogate + (rest & kSurrogateMask));
  });
  return units;
}

std::string_view WireReader::Bytes(std::size_t count) {
  if (count > bytes_.size()) throw WireError("message ends too early");
  const std::string_view taken = bytes_.substr(0, count);
  bytes_.remove_prefix(count);
  return taken;
}

std::uint64_t WireReader::Number(std::size_t width) {
  std::uint64_t value = 0;
  unsigned shift = 0;
  for (const char byte : Bytes(width)) {
    value |= std::uint64_t{static_cast<unsigned char>(byte)} << shift;
    shift += 8;
  }
  return value;
}

std::uint16_t WireReader::U16Big() {
  const unsigned high = U8();
  return static_cast<std::uint16_t>(high << 8 | U8());
}

WireReader WireReader::Part(std::size_t offset, std::size_t length) const {
  if (offset > bytes_.size() || length > bytes_.size() - offset)
    throw WireError("a part lies outside the message");
  return WireReader(bytes_.substr(offset, length));
}

WireWriter& WireWriter::Number(std::uint64_t value, std::size_t width) {
  for (; width > 0; --width, value >>= 8) bytes_ += static_cast<char>(value & 0xFF);
  return *this;
}

WireWriter& WireWriter::ByteText(std::string_view utf8) {
  AppendCounted(*this, utf8, 1, 0xFF);
  return *this;
}

WireWriter& WireWriter::ShortText(std::string_view utf8) {
  AppendCounted(*this, utf8, 2, 0xFFFF);
  return *this;
}

std::string WireWriter::Take() {
  return std::exchange(bytes_, {});
}

}  // namespace korvel::tds
