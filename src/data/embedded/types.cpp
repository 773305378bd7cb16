#include "data/embedded/types.h"

#include <algorithm>
#include <array>
#include <limits>

namespace korvel::data::embedded {
namespace {

struct NamedType {
  std::string_view name;
  Type type;
  int number;
};

/// The first entry of a type is its own name, the others are accepted for it.
constexpr NamedType kTypes[] = {
    {"bit", Type::Bit, 104},
    {"smallint", Type::SmallInt, 52},
    {"int", Type::Int, 56},
    {"integer", Type::Int, 56},
    {"bigint", Type::BigInt, 127},
    {"numeric", Type::Numeric, 108},
    {"decimal", Type::Numeric, 108},
    {"dec", Type::Numeric, 108},
    {"float", Type::Float, 62},
    {"money", Type::Money, 60},
    {"smalldatetime", Type::SmallDateTime, 58},
    {"datetime", Type::DateTime, 61},
    {"varchar", Type::Varchar, 167},
    {"nvarchar", Type::Varchar, 167},
    {"sysname", Type::Varchar, 167},
    {"text", Type::Text, 35},
    {"ntext", Type::Text, 35},
};

constexpr int kSysnameLength = 128;
constexpr std::int64_t kTicksPerDay = 300LL * 60 * 60 * 24;
/// 1753-01-01 to 9999-12-31 and 1900-01-01 to 2079-06-06, in days since 1900-01-01.
constexpr Bounds kDateTimeDays{-53690, 2958463};
constexpr Bounds kSmallDateTimeDays{0, 65535};

Bounds Days(Bounds days) {
  return {days.low * kTicksPerDay, (days.high + 1) * kTicksPerDay - 1};
}

char LowerChar(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

ColumnType WithNumbers(const NamedType& named, int first, int second) {
  ColumnType type{named.type};
  if (named.type == Type::Varchar)
    type.length = named.name == "sysname" ? kSysnameLength : std::max(first, 1);
  if (named.type == Type::Numeric) {
    type.precision = first < 0 ? kMaxStoredDigits : first;
    type.scale = std::max(second, 0);
  }
  return type;
}

}  // namespace

bool IsText(const ColumnType& type) {
  return type.base == Type::Varchar || type.base == Type::Text;
}
bool IsDate(const ColumnType& type) {
  return type.base == Type::DateTime || type.base == Type::SmallDateTime;
}

bool IsWhole(const ColumnType& type) {
  return type.base == Type::Bit || type.base == Type::SmallInt || type.base == Type::Int ||
         type.base == Type::BigInt;
}

bool IsExact(const ColumnType& type) {
  return IsWhole(type) || type.base == Type::Money || type.base == Type::Numeric;
}

int ScaleOf(const ColumnType& type) {
  if (type.base == Type::Money) return 4;
  return type.base == Type::Numeric ? type.scale : 0;
}

int PrecisionOf(const ColumnType& type) {
  switch (type.base) {
    case Type::Bit:
      return 1;
    case Type::SmallInt:
      return 5;
    case Type::Int:
      return 10;
    case Type::BigInt:
    case Type::Money:
      return 19;
    default:
      return type.precision;
  }
}

int Precedence(Type type) {
  constexpr std::array kOrder = {Type::Text,  Type::Varchar,       Type::Bit,     Type::SmallInt,
                                 Type::Int,   Type::BigInt,        Type::Money,   Type::Numeric,
                                 Type::Float, Type::SmallDateTime, Type::DateTime};
  return static_cast<int>(std::find(kOrder.begin(), kOrder.end(), type) - kOrder.begin());
}

Bounds BoundsOf(const ColumnType& type) {
  using Limits = std::numeric_limits<std::int64_t>;
  switch (type.base) {
    case Type::Bit:
      return {0, 1};
    case Type::SmallInt:
      return {-32768, 32767};
    case Type::Int:
      return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    case Type::Numeric:
      if (type.precision > kMaxStoredDigits) return {Limits::min(), Limits::max()};
      return {1 - PowerOfTen(type.precision), PowerOfTen(type.precision) - 1};
    case Type::SmallDateTime:
      return Days(kSmallDateTimeDays);
    case Type::DateTime:
      return Days(kDateTimeDays);
    default:
      return {Limits::min(), Limits::max()};
  }
}

std::int64_t PowerOfTen(int exponent) {
  std::int64_t power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

std::optional<ColumnType> TypeByName(std::string_view name, int first, int second) {
  const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                   [&](const NamedType& named) { return SameName(named.name, name); });
  if (found == std::end(kTypes)) return std::nullopt;
  const ColumnType type = WithNumbers(*found, first, second);
  const bool fits = type.length <= kMaxVarchar && type.precision <= kMaxStoredDigits &&
                    type.scale <= type.precision && first != 0;
  return fits ? std::optional(type) : std::nullopt;
}

std::string_view TypeName(Type type) {
  return std::find_if(std::begin(kTypes), std::end(kTypes),
                      [&](const NamedType& n) { return n.type == type; })
      ->name;
}

int TypeNumber(Type type) {
  return std::find_if(std::begin(kTypes), std::end(kTypes),
                      [&](const NamedType& n) { return n.type == type; })
      ->number;
}

std::int64_t Pack(const ColumnType& type) {
  return static_cast<std::int64_t>(type.base) | (std::int64_t{type.length} << 8) |
         (std::int64_t{type.precision} << 32) | (std::int64_t{type.scale} << 40);
}

ColumnType Unpack(std::int64_t packed) {
  return {static_cast<Type>(packed & 0xFF), static_cast<int>((packed >> 8) & 0xFFFFFF),
          static_cast<int>((packed >> 32) & 0xFF), static_cast<int>((packed >> 40) & 0xFF)};
}

std::string LowerName(std::string_view name) {
  std::string lower(name);
  std::transform(lower.begin(), lower.end(), lower.begin(), LowerChar);
  return lower;
}

bool SameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerChar(x) == LowerChar(y); });
}

}  // namespace korvel::data::embedded
