#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "data/currency.h"
#include "data/date_time.h"

namespace korvel::data {

using Null = std::monostate;

/// The server's column types as far as this system uses them.
enum class Type { Bit, SmallInt, Int, BigInt, Numeric, Float, Money, SmallDateTime, DateTime, Varchar, Text };

/// One column of a result.
struct Field {
  std::string name;
  Type type = Type::Varchar;
  /// Characters of a Varchar (one byte of windows-1252 each); 0 for other types.
  int length = 0;
  /// Digits in all and behind the mark of a Numeric; 0 for other types.
  int precision = 0;
  int scale = 0;
};

/// A value that owns its text. Text is UTF-8; an exact number with a fraction is a Currency.
class Value : public std::variant<Null, std::int64_t, Currency, double, DateTime, std::string> {
 public:
  using variant::variant;
  Value() = default;
  Value(int number) : variant(std::int64_t{number}) {}
  Value(bool flag) : variant(std::int64_t{flag}) {}
  Value(const char* text) : variant(std::string(text)) {}
  Value(std::string_view text) : variant(std::string(text)) {}

  bool IsNull() const { return std::holds_alternative<Null>(*this); }
};

/// A value to be bound to a statement: as Value, but its text is a view that must outlive the call it is given to.
class Parameter : public std::variant<Null, std::int64_t, Currency, double, DateTime, std::string_view> {
 public:
  using variant::variant;
  Parameter() = default;
  Parameter(int number) : variant(std::int64_t{number}) {}
  Parameter(bool flag) : variant(std::int64_t{flag}) {}
  Parameter(const char* text) : variant(std::string_view(text)) {}
  Parameter(const std::string& text) : variant(std::string_view(text)) {}
  Parameter(const Value& value);

  bool IsNull() const { return std::holds_alternative<Null>(*this); }
};

using Parameters = std::span<const Parameter>;

/// The text of a value as the server converts it to varchar: "" for Null, money with "." and its shortest
/// decimals, a date as DateTime::FullText.
std::string ToText(const Value& value);

}  // namespace korvel::data
