#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace korvel::tds {

/// Bytes in front of every packet.
constexpr std::size_t kPacketHeader = 8;

/// Bytes that do not follow the protocol; what stands behind them cannot be understood either.
class WireError : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// Text between UTF-8 and UTF-16 (low byte first). What is no character becomes U+FFFD; an odd last byte is left out.
std::string FromUtf16(std::string_view bytes);
std::string ToUtf16(std::string_view utf8);

/// Takes values off the front of a message, low byte first. Reading past its end throws WireError.
class WireReader {
 public:
  explicit WireReader(std::string_view bytes) : bytes_(bytes) {}

  std::size_t Left() const { return bytes_.size(); }
  bool AtEnd() const { return bytes_.empty(); }

  std::string_view Bytes(std::size_t count);
  std::uint64_t Number(std::size_t width);
  std::uint8_t U8() { return static_cast<std::uint8_t>(Number(1)); }
  std::uint16_t U16() { return static_cast<std::uint16_t>(Number(2)); }
  std::uint32_t U32() { return static_cast<std::uint32_t>(Number(4)); }
  std::uint64_t U64() { return Number(8); }
  /// High byte first, as the pre-login and the packet headers have it.
  std::uint16_t U16Big();

  /// A text of that many UTF-16 units, and texts whose length stands in front of them.
  std::string Text(std::size_t units) { return FromUtf16(Bytes(units * 2)); }
  std::string ByteText() { return Text(U8()); }
  std::string ShortText() { return Text(U16()); }

  /// A reader for a part of what is left, which stays where it is.
  WireReader Part(std::size_t offset, std::size_t length) const;

 private:
  std::string_view bytes_;
};

/// Builds a message, low byte first.
class WireWriter {
 public:
  WireWriter& Bytes(std::string_view bytes) {
    bytes_ += bytes;
    return *this;
  }
  WireWriter& Number(std::uint64_t value, std::size_t width);
  WireWriter& U8(std::uint64_t value) { return Number(value, 1); }
  WireWriter& U16(std::uint64_t value) { return Number(value, 2); }
  WireWriter& U32(std::uint64_t value) { return Number(value, 4); }
  WireWriter& U64(std::uint64_t value) { return Number(value, 8); }
  WireWriter& U16Big(std::uint64_t value) { return U8(value >> 8).U8(value); }
  /// Texts behind their length in UTF-16 units; what is too long is cut.
  WireWriter& ByteText(std::string_view utf8);
  WireWriter& ShortText(std::string_view utf8);

  std::size_t Size() const { return bytes_.size(); }
  /// Gives the bytes out and starts anew.
  std::string Take();

 private:
  std::string bytes_;
};

}  // namespace korvel::tds
