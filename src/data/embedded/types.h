#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/value.h"

namespace korvel::data::embedded {

/// The type of a column or expression. In the file a value is a 64-bit integer, a double or a text:
///   Bit, SmallInt, Int, BigInt   the number itself
///   Money                        ten-thousandths
///   Numeric                      the number times 10 to the power of its scale
///   SmallDateTime, DateTime      three-hundredths of a second since 1900-01-01
///   Float                        a double
///   Varchar, Text                UTF-8, lengths counted in characters
struct ColumnType {
  Type base = Type::Varchar;
  int length = 0;     // Varchar only
  int precision = 0;  // Numeric only
  int scale = 0;      // Numeric only

  friend bool operator==(const ColumnType&, const ColumnType&) = default;
};

constexpr int kMaxVarchar = 8000;
/// Length of varchar in a conversion that names none.
constexpr int kDefaultVarchar = 30;
/// Numeric columns keep at most this many digits, as 64-bit integers do.
constexpr int kMaxStoredDigits = 18;

constexpr ColumnType kInt{Type::Int};
constexpr ColumnType kBigInt{Type::BigInt};
constexpr ColumnType kMoney{Type::Money};
constexpr ColumnType kFloat{Type::Float};
constexpr ColumnType kDateTime{Type::DateTime};
constexpr ColumnType Varchar(int length) {
  return {Type::Varchar, length};
}
constexpr ColumnType Numeric(int precision, int scale) {
  return {Type::Numeric, 0, precision, scale};
}

bool IsText(const ColumnType& type);
bool IsDate(const ColumnType& type);
/// Whole numbers, money and numeric: everything kept as a scaled integer.
bool IsExact(const ColumnType& type);
bool IsWhole(const ColumnType& type);

/// Decimals behind the mark of an exact type, and its digits in all.
int ScaleOf(const ColumnType& type);
int PrecisionOf(const ColumnType& type);

/// The higher number wins when two types meet in one expression.
int Precedence(Type type);

/// Bounds of the integer that holds a value of an exact or date type.
struct Bounds {
  std::int64_t low;
  std::int64_t high;
};
Bounds BoundsOf(const ColumnType& type);

/// 10 to that power; `exponent` from 0 to 18.
std::int64_t PowerOfTen(int exponent);

/// A type by its T-SQL name with its optional numbers in brackets (-1: not given). Unicode names give their
/// single-byte kin. Nothing for a type that this server does not keep.
std::optional<ColumnType> TypeByName(std::string_view name, int first, int second);
/// "varchar", "numeric", ...
std::string_view TypeName(Type type);
/// The number by which the system tables know a type.
int TypeNumber(Type type);

/// A type packed in one integer, for statements and for the catalogue, and back.
std::int64_t Pack(const ColumnType& type);
ColumnType Unpack(std::int64_t packed);

/// Names of tables, columns and databases compare without regard to ASCII case.
std::string LowerName(std::string_view name);
bool SameName(std::string_view a, std::string_view b);

}  // namespace korvel::data::embedded
