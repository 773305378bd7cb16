#include <algorithm>

#include "support/tds/requests.h"

namespace korvel::tds {
namespace {

constexpr std::uint8_t kEncryptionOption = 1;
constexpr std::uint8_t kEndOfOptions = 0xFF;
constexpr std::uint8_t kEncryptionNotSupported = 2;
constexpr std::size_t kLargestPreLogin = 64;  // options

constexpr std::size_t kLoginHead = 36;
constexpr std::uint8_t kIntegratedSecurity = 0x80;
constexpr std::size_t kLongestField = 128;

struct VersionNumber {
  std::uint32_t number;
  Version version;
};
/// The least number of each version, newest first.
constexpr VersionNumber kVersions[] = {{0x74000000, Version::V74},
                                       {0x730B0000, Version::V73B},
                                       {0x73000000, Version::V73A},
                                       {0x72000000, Version::V72},
                                       {0x71000000, Version::V71}};

Version VersionOf(std::uint32_t number) {
  const auto* found = std::find_if(std::begin(kVersions), std::end(kVersions),
                                   [number](const VersionNumber& known) { return number >= known.number; });
  if (found == std::end(kVersions)) throw WireError("a version that this server does not speak");
  return found->version;
}

/// The bytes of a field that an offset and a length in the head point to.
std::string_view FieldBytes(WireReader& head, const WireReader& message) {
  const std::uint16_t offset = head.U16();
  const std::uint16_t units = head.U16();
  if (units > kLongestField) throw WireError("a name too long");
  return message.Part(offset, std::size_t{units} * 2).Bytes(std::size_t{units} * 2);
}

/// A password travels with the halves of each byte changed over and some bits turned.
std::string Plain(std::string_view hidden) {
  std::string bytes(hidden);
  for (char& c : bytes) {
    const auto turned = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c) ^ 0xA5);
    c = static_cast<char>(turned << 4 | turned >> 4);
  }
  return FromUtf16(bytes);
}

}  // namespace

PreLogin ReadPreLogin(std::string_view payload) {
  const WireReader message(payload);
  WireReader options = message;
  PreLogin wanted;
  for (std::size_t i = 0; i < kLargestPreLogin; ++i) {
    const std::uint8_t option = options.U8();
    if (option == kEndOfOptions) return wanted;
    const std::uint16_t offset = options.U16Big();
    WireReader value = message.Part(offset, options.U16Big());
    if (option == kEncryptionOption) wanted.asksEncryption = value.U8() != kEncryptionNotSupported;
  }
  throw WireError("no end of the options");
}

std::string PreLoginAnswer() {
  constexpr std::string_view kValues[] = {
      {"\x09\x00\x13\x88\x00\x00", 6}, {"\x02", 1}, {"\x00", 1}, {"", 0}, {"\x00", 1}};
  WireWriter out;
  std::size_t offset = std::size(kValues) * 5 + 1;
  for (std::size_t option = 0; option < std::size(kValues); ++option) {
    out.U8(option).U16Big(offset).U16Big(kValues[option].size());
    offset += kValues[option].size();
  }
  out.U8(kEndOfOptions);
  for (const std::string_view value : kValues) out.Bytes(value);
  return out.Take();
}

Login ReadLogin(std::string_view payload) {
  const WireReader message(payload);
  WireReader head = message;
  if (head.U32() > payload.size()) throw WireError("login ends too early");
  Login login;
  login.version = VersionOf(head.U32());
  login.packetSize = head.U32();
  head.Bytes(13);  // program version, process, connection, first flags
  login.integratedSecurity = (head.U8() & kIntegratedSecurity) != 0;
  head.Bytes(kLoginHead - 26);  // other flags, time zone, locale
  login.host = FromUtf16(FieldBytes(head, message));
  login.user = FromUtf16(FieldBytes(head, message));
  login.password = Plain(FieldBytes(head, message));
  login.application = FromUtf16(FieldBytes(head, message));
  login.server = FromUtf16(FieldBytes(head, message));
  FieldBytes(head, message);  // extensions
  login.clientLibrary = FromUtf16(FieldBytes(head, message));
  login.language = FromUtf16(FieldBytes(head, message));
  login.database = FromUtf16(FieldBytes(head, message));
  return login;
}

}  // namespace korvel::tds
