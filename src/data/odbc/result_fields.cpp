#include "data/odbc/result_fields.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "data/odbc/conversions.h"

namespace korvel::data::odbc {
namespace {

constexpr std::size_t kNameSize = 512;
/// "YYYY-MM-DD HH:MM".
constexpr SQLULEN kSmallDateTimeWidth = 16;

struct NamedType {
  std::string_view name;
  Type type;
};

/// By the server's own names, which tell more than the driver's codes: money, for one, has no code.
constexpr std::array kNamedTypes{
    NamedType{"bit", Type::Bit},           NamedType{"tinyint", Type::SmallInt},
    NamedType{"smallint", Type::SmallInt}, NamedType{"int", Type::Int},
    NamedType{"integer", Type::Int},       NamedType{"bigint", Type::BigInt},
    NamedType{"numeric", Type::Numeric},   NamedType{"decimal", Type::Numeric},
    NamedType{"float", Type::Float},       NamedType{"real", Type::Float},
    NamedType{"double", Type::Float},      NamedType{"money", Type::Money},
    NamedType{"smallmoney", Type::Money},  NamedType{"smalldatetime", Type::SmallDateTime},
    NamedType{"datetime", Type::DateTime}, NamedType{"text", Type::Text},
    NamedType{"ntext", Type::Text},        NamedType{"xml", Type::Text},
};

struct CodedType {
  SQLSMALLINT code;
  Type type;
};

constexpr std::array kCodedTypes{
    CodedType{SQL_BIT, Type::Bit},
    CodedType{SQL_TINYINT, Type::SmallInt},
    CodedType{SQL_SMALLINT, Type::SmallInt},
    CodedType{SQL_INTEGER, Type::Int},
    CodedType{SQL_BIGINT, Type::BigInt},
    CodedType{SQL_NUMERIC, Type::Numeric},
    CodedType{SQL_DECIMAL, Type::Numeric},
    CodedType{SQL_FLOAT, Type::Float},
    CodedType{SQL_REAL, Type::Float},
    CodedType{SQL_DOUBLE, Type::Float},
    CodedType{SQL_TYPE_DATE, Type::DateTime},
    CodedType{SQL_TYPE_TIMESTAMP, Type::DateTime},
    CodedType{SQL_LONGVARCHAR, Type::Text},
    CodedType{SQL_WLONGVARCHAR, Type::Text},
};

/// The bare name in lower case: without "identity", "()" or a length behind it.
std::string BareName(const char* text) {
  std::string name(text);
  name.resize(std::min(name.size(), name.find_first_of(" (")));
  for (char& c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return name;
}

std::string TypeName(const Statement& statement, SQLUSMALLINT number) {
  std::array<char, kNameSize> name{};
  SQLSMALLINT length = 0;
  statement.Check(SQLColAttribute(statement.Get(), number, SQL_DESC_TYPE_NAME, name.data(),
                                  static_cast<SQLSMALLINT>(name.size()), &length, nullptr));
  return BareName(name.data());
}

Type TypeOf(std::string_view name, SQLSMALLINT code, SQLULEN size) {
  const auto named = std::find_if(kNamedTypes.begin(), kNamedTypes.end(),
                                  [&](const NamedType& known) { return known.name == name; });
  if (named != kNamedTypes.end()) return named->type;
  const auto coded = std::find_if(kCodedTypes.begin(), kCodedTypes.end(),
                                  [&](const CodedType& known) { return known.code == code; });
  if (coded != kCodedTypes.end()) return coded->type;
  // A text without a bound, such as varchar(max), is read like text.
  return size == 0 || size > kLongestVarchar ? Type::Text : Type::Varchar;
}

Field Describe(const Statement& statement, SQLUSMALLINT number) {
  std::array<SQLCHAR, kNameSize> name{};
  SQLSMALLINT nameLength = 0;
  SQLSMALLINT code = 0;
  SQLULEN size = 0;
  SQLSMALLINT digits = 0;
  SQLSMALLINT nullable = 0;
  statement.Check(SQLDescribeCol(statement.Get(), number, name.data(), static_cast<SQLSMALLINT>(name.size()),
                                 &nameLength, &code, &size, &digits, &nullable));
  Field field{reinterpret_cast<const char*>(name.data()), TypeOf(TypeName(statement, number), code, size)};
  // Where it may be null, some drivers name a smalldatetime like its greater brother.
  if (field.type == Type::DateTime && size == kSmallDateTimeWidth) field.type = Type::SmallDateTime;
  if (field.type == Type::Varchar) field.length = static_cast<int>(size);
  if (field.type == Type::Numeric) {
    field.precision = static_cast<int>(size);
    field.scale = digits;
  }
  return field;
}

}  // namespace

std::vector<Field> DescribeResult(const Statement& statement) {
  std::vector<Field> fields;
  const SQLUSMALLINT count = statement.Columns();
  fields.reserve(count);
  for (SQLUSMALLINT number = 1; number <= count; ++number) fields.push_back(Describe(statement, number));
  return fields;
}

}  // namespace korvel::data::odbc
