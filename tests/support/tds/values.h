#pragma once

#include <cstdint>

#include "data/value.h"
#include "support/tds/wire.h"

namespace korvel::tds {

/// What a client may speak, in the order of time.
enum class Version { V71, V72, V73A, V73B, V74 };

/// The collation that this server announces: Latin1_General_CI_AS, code page windows-1252.
inline constexpr std::string_view kCollation{"\x09\x04\xD0\x00\x00", 5};

/// How a parameter's value stands on the wire.
struct WireType {
  std::uint8_t token = 0;
  std::uint32_t size = 0;
  std::uint8_t scale = 0;
};

/// The type of a parameter, and its value. A type that this server does not know throws WireError, for its length is
/// not known either.
WireType ReadType(WireReader& in);
data::Value ReadValue(WireReader& in, const WireType& type);

/// The type of a column or of an output value; a Text is told with its table's name, which is empty.
void WriteType(WireWriter& out, const data::Field& field, Version version);
/// A value of that column. Texts lose what windows-1252 has no character for ("?").
void WriteValue(WireWriter& out, const data::Field& field, const data::Value& value);

}  // namespace korvel::tds
