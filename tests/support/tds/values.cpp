#include "support/tds/values.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "support/tds/moments.h"
#include "support/tds/type_tokens.h"
#include "toolkit/code_page.h"

namespace korvel::tds {
namespace {

__extension__ using Wide = unsigned __int128;

using data::Currency;
using data::Field;
using data::Type;
using data::Value;

constexpr std::uint32_t kMaxSize = 0xFFFF;  // of a varchar: it comes in chunks, without a bound
constexpr std::uint64_t kChunkedNull = 0xFFFF'FFFF'FFFF'FFFF;
constexpr std::uint32_t kLongNull = 0xFFFF'FFFF;
constexpr std::size_t kNumericBytes = 17;
constexpr std::size_t kMaxMagnitude = 16;
constexpr std::uint8_t kMaxScale = 38;

/// Widths of the types that have but one.
std::size_t FixedWidth(std::uint8_t token) {
  switch (token) {
    case type::kNull:
      return 0;
    case type::kInt1:
    case type::kBit:
      return 1;
    case type::kInt2:
      return 2;
    case type::kInt4:
    case type::kSmallDateTime:
    case type::kReal:
    case type::kSmallMoney:
      return 4;
    default:
      return 8;
  }
}

Value ReadInteger(WireReader& in, std::size_t width) {
  switch (width) {
    case 1:
      return std::int64_t{in.U8()};
    case 2:
      return std::int64_t{static_cast<std::int16_t>(in.U16())};
    case 4:
      return std::int64_t{static_cast<std::int32_t>(in.U32())};
    case 8:
      return static_cast<std::int64_t>(in.U64());
    default:
      throw WireError("no width of an integer");
  }
}

Value ReadFloat(WireReader& in, std::size_t width) {
  if (width == 4) return static_cast<double>(std::bit_cast<float>(in.U32()));
  if (width == 8) return std::bit_cast<double>(in.U64());
  throw WireError("no width of a float");
}

Value ReadMoney(WireReader& in, std::size_t width) {
  if (width == 4) return Currency::FromUnits(static_cast<std::int32_t>(in.U32()));
  if (width != 8) throw WireError("no width of money");
  // The higher half comes first.
  const std::uint64_t high = in.U32();
  return Currency::FromUnits(static_cast<std::int64_t>(high << 32 | in.U32()));
}

Value ReadDate(WireReader& in, std::size_t width) {
  if (width != 4 && width != 8) throw WireError("no width of a date");
  return ReadMoment(in, width);
}

/// Decimal digits of a number of up to 128 bits.
std::string Digits(std::string_view magnitude) {
  Wide number = 0;
  for (auto byte = magnitude.rbegin(); byte != magnitude.rend(); ++byte) {
    number = number << 8 | static_cast<unsigned char>(*byte);
  }
  std::string digits;
  for (; number > 0; number /= 10) digits += static_cast<char>('0' + static_cast<int>(number % 10));
  std::reverse(digits.begin(), digits.end());
  return digits;
}

/// A whole number, an amount, or where neither can hold it the text of the number, which the engine reads as one.
Value ReadDecimal(WireReader& in, std::size_t width, std::size_t scale) {
  if (width < 2 || width > kMaxMagnitude + 1) throw WireError("no width of a decimal");
  const bool positive = in.U8() != 0;
  std::string text = Digits(in.Bytes(width - 1));
  if (text.size() <= scale) text.insert(0, scale + 1 - text.size(), '0');
  if (scale > 0) text.insert(text.size() - scale, ".");
  if (!positive) text.insert(0, "-");
  const auto amount = scale <= 4 ? Currency::FromText(text) : std::nullopt;
  if (!amount) return text;
  if (scale == 0) return amount->Whole();
  return *amount;
}

std::string DecodeText(std::uint8_t token, std::string_view bytes) {
  const bool wide = token == type::kNVarchar || token == type::kNChar || token == type::kNText;
  return wide ? FromUtf16(bytes) : toolkit::FromCodePage(bytes);
}

Value ReadChunked(WireReader& in, std::uint8_t token) {
  if (in.U64() == kChunkedNull) return {};
  std::string bytes;
  for (std::uint32_t size = in.U32(); size != 0; size = in.U32()) bytes += in.Bytes(size);
  return DecodeText(token, bytes);
}

Value ReadShortText(WireReader& in, const WireType& type) {
  if (type.size == kMaxSize) return ReadChunked(in, type.token);
  const std::uint16_t size = in.U16();
  return size == kMaxSize ? Value() : Value(DecodeText(type.token, in.Bytes(size)));
}

Value ReadLongText(WireReader& in, const WireType& type) {
  const std::uint32_t size = in.U32();
  return size == kLongNull ? Value() : Value(DecodeText(type.token, in.Bytes(size)));
}

/// A value that follows its width, or has but one.
Value ReadSized(WireReader& in, const WireType& type, std::size_t width) {
  switch (type.token) {
    case type::kBit:
    case type::kBitN:
    case type::kInt1:
    case type::kInt2:
    case type::kInt4:
    case type::kInt8:
    case type::kIntN:
      return ReadInteger(in, width);
    case type::kReal:
    case type::kFloat:
    case type::kFloatN:
      return ReadFloat(in, width);
    case type::kMoney:
    case type::kSmallMoney:
    case type::kMoneyN:
      return ReadMoney(in, width);
    case type::kSmallDateTime:
    case type::kDateTime:
    case type::kDateTimeN:
      return ReadDate(in, width);
    case type::kDateN:
      return ReadNewMoment(in, 0, 0, true);
    case type::kTimeN:
      return ReadNewMoment(in, std::min<std::size_t>(width, 5), type.scale, false);
    case type::kDateTime2N:
      if (width < 6 || width > 8) throw WireError("no width of a date");
      return ReadNewMoment(in, width - 3, type.scale, true);
    default:
      return ReadDecimal(in, width, type.scale);
  }
}

bool IsFixed(std::uint8_t token) {
  constexpr std::uint8_t kFixed[] = {type::kNull,  type::kInt1,     type::kBit,   type::kInt2,
                                     type::kInt4,  type::kReal,     type::kMoney, type::kSmallDateTime,
                                     type::kFloat, type::kDateTime, type::kInt8,  type::kSmallMoney};
  return std::find(std::begin(kFixed), std::end(kFixed), token) != std::end(kFixed);
}

struct FieldLayout {
  std::uint8_t token;
  std::uint8_t width;  // 0: told by the value
};

FieldLayout LayoutOf(Type kind) {
  switch (kind) {
    case Type::Bit:
      return {type::kBitN, 1};
    case Type::SmallInt:
      return {type::kIntN, 2};
    case Type::Int:
      return {type::kIntN, 4};
    case Type::BigInt:
      return {type::kIntN, 8};
    case Type::Numeric:
      return {type::kNumericN, kNumericBytes};
    case Type::Float:
      return {type::kFloatN, 8};
    case Type::Money:
      return {type::kMoneyN, 8};
    case Type::SmallDateTime:
      return {type::kDateTimeN, 4};
    case Type::DateTime:
      return {type::kDateTimeN, 8};
    case Type::Varchar:
      return {type::kVarchar, 0};
    case Type::Text:
      return {type::kText, 0};
  }
  return {type::kNull, 0};
}

void WriteNull(WireWriter& out, Type kind) {
  if (kind == Type::Varchar) {
    out.U16(kMaxSize);
  } else {
    out.U8(0);  // of a Text, the pointer that is not there
  }
}

void WriteText(WireWriter& out, Type kind, const Value& value) {
  const std::string bytes = toolkit::ToCodePage(ToText(value)).bytes;
  if (kind == Type::Varchar) {
    out.U16(bytes.size()).Bytes(bytes);
    return;
  }
  constexpr std::string_view kPointer = "a text's pointer";  // 16 bytes that no client of ours reads
  constexpr std::string_view kMoment = "moments.";
  out.U8(kPointer.size()).Bytes(kPointer).Bytes(kMoment).U32(bytes.size()).Bytes(bytes);
}

/// The digits of a decimal text as a whole number of `scale` decimals.
Wide Magnitude(std::string_view text, int scale) {
  Wide number = 0;
  int decimals = -1;
  for (const char c : text) {
    if (c == '.') decimals = 0;
    if (c < '0' || c > '9' || decimals == scale) continue;
    number = number * 10 + static_cast<unsigned>(c - '0');
    if (decimals >= 0) ++decimals;
  }
  for (decimals = std::max(decimals, 0); decimals < scale; ++decimals) number *= 10;
  return number;
}

void WriteDecimal(WireWriter& out, int scale, const Value& value) {
  const std::string text = ToText(value);
  const Wide number = Magnitude(text, scale);
  out.U8(kNumericBytes).U8(text.starts_with('-') ? 0 : 1);
  out.U64(static_cast<std::uint64_t>(number)).U64(static_cast<std::uint64_t>(number >> 64));
}

struct ScalarWriter {
  WireWriter& out;
  Type kind;

  void operator()(std::int64_t number) const {
    const std::uint8_t width = LayoutOf(kind).width;
    out.U8(width).Number(static_cast<std::uint64_t>(number), width);
  }
  void operator()(double number) const { out.U8(8).U64(std::bit_cast<std::uint64_t>(number)); }
  void operator()(Currency money) const {
    const auto units = static_cast<std::uint64_t>(money.Units());
    out.U8(8).U32(units >> 32).U32(units);
  }
  void operator()(const data::DateTime& date) const {
    const std::uint8_t width = LayoutOf(kind).width;
    out.U8(width);
    WriteMoment(out, date, width);
  }
  void operator()(data::Null) const { WriteNull(out, kind); }
  void operator()(const std::string&) const { WriteNull(out, kind); }
};

}  // namespace

WireType ReadType(WireReader& in) {
  WireType type{in.U8(), 0, 0};
  if (IsFixed(type.token)) return type;
  switch (type.token) {
    case type::kIntN:
    case type::kBitN:
    case type::kFloatN:
    case type::kMoneyN:
    case type::kDateTimeN:
      type.size = in.U8();
      return type;
    case type::kDateN:
      return type;
    case type::kTimeN:
    case type::kDateTime2N:
      type.scale = in.U8();
      if (type.scale > 7) throw WireError("no scale of a time");
      return type;
    case type::kDecimalN:
    case type::kNumericN:
      type.size = in.U8();
      in.U8();  // precision: the value tells its own
      type.scale = in.U8();
      if (type.scale > kMaxScale) throw WireError("no scale of a decimal");
      return type;
    case type::kVarchar:
    case type::kChar:
    case type::kNVarchar:
    case type::kNChar:
      type.size = in.U16();
      in.Bytes(kCollation.size());
      return type;
    case type::kText:
    case type::kNText:
      type.size = in.U32();
      in.Bytes(kCollation.size());
      return type;
    default:
      throw WireError("a type that this server does not know");
  }
}

Value ReadValue(WireReader& in, const WireType& type) {
  switch (type.token) {
    case type::kNull:
      return {};
    case type::kVarchar:
    case type::kChar:
    case type::kNVarchar:
    case type::kNChar:
      return ReadShortText(in, type);
    case type::kText:
    case type::kNText:
      return ReadLongText(in, type);
    default:
      break;
  }
  const std::size_t width = IsFixed(type.token) ? FixedWidth(type.token) : in.U8();
  if (width == 0) return {};
  WireReader value(in.Bytes(width));
  return ReadSized(value, type, width);
}

void WriteType(WireWriter& out, const Field& field, Version version) {
  const FieldLayout layout = LayoutOf(field.type);
  out.U8(layout.token);
  if (field.type == Type::Varchar) {
    out.U16(static_cast<std::uint64_t>(std::max(field.length, 1))).Bytes(kCollation);
  } else if (field.type == Type::Text) {
    out.U32(0x7FFF'FFFF).Bytes(kCollation);
    if (version >= Version::V72) out.U8(1);
    out.ShortText("");
  } else {
    out.U8(layout.width);
  }
  if (field.type == Type::Numeric) {
    out.U8(static_cast<std::uint64_t>(field.precision)).U8(static_cast<std::uint64_t>(field.scale));
  }
}

void WriteValue(WireWriter& out, const Field& field, const Value& value) {
  if (value.IsNull()) return WriteNull(out, field.type);
  if (field.type == Type::Varchar || field.type == Type::Text) return WriteText(out, field.type, value);
  if (field.type == Type::Numeric) return WriteDecimal(out, field.scale, value);
  std::visit(ScalarWriter{out, field.type}, static_cast<const Value::variant&>(value));
}

}  // namespace korvel::tds
