#include "data/odbc/bound_parameters.h"

#include <algorithm>

namespace korvel::data::odbc {
namespace {

constexpr std::size_t kLongestVarchar = 8000;
constexpr SQLULEN kMoneyDigits = 19;
constexpr SQLSMALLINT kMoneyScale = 4;
constexpr SQLULEN kTimestampWidth = 23;
constexpr SQLSMALLINT kTimestampDigits = 3;
constexpr SQLUINTEGER kNanosecondsPerMillisecond = 1'000'000;

SQL_TIMESTAMP_STRUCT Timestamp(const DateTime& date) {
  SQL_TIMESTAMP_STRUCT stamp{};
  stamp.year = static_cast<SQLSMALLINT>(date.year);
  stamp.month = static_cast<SQLUSMALLINT>(date.month);
  stamp.day = static_cast<SQLUSMALLINT>(date.day);
  stamp.hour = static_cast<SQLUSMALLINT>(date.hour);
  stamp.minute = static_cast<SQLUSMALLINT>(date.minute);
  stamp.second = static_cast<SQLUSMALLINT>(date.second);
  stamp.fraction = static_cast<SQLUINTEGER>(date.millisecond) * kNanosecondsPerMillisecond;
  return stamp;
}

SQLLEN Length(std::string_view text) {
  return static_cast<SQLLEN>(text.size());
}

}  // namespace

BoundParameters::Slot BoundParameters::MakeSlot(const Parameter& parameter) {
  struct Maker {
    Slot operator()(Null) const { return {}; }
    Slot operator()(std::int64_t number) const { return {number, SQL_C_SBIGINT, SQL_BIGINT, 19, 0, 0}; }
    Slot operator()(double number) const { return {number, SQL_C_DOUBLE, SQL_DOUBLE, 53, 0, 0}; }
    Slot operator()(const DateTime& date) const {
      return {Timestamp(date), SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP,
              kTimestampWidth, kTimestampDigits,     0};
    }
    Slot operator()(Currency money) const {
      std::string text = money.ToText();
      const SQLLEN length = Length(text);
      return {std::move(text), SQL_C_CHAR, SQL_DECIMAL, kMoneyDigits, kMoneyScale, length};
    }
    Slot operator()(std::string_view text) const {
      const SQLSMALLINT type = text.size() <= kLongestVarchar ? SQL_VARCHAR : SQL_LONGVARCHAR;
      return {text, SQL_C_CHAR, type, std::max<SQLULEN>(text.size(), 1), 0, Length(text)};
    }
  };
  return std::visit(Maker{}, static_cast<const Parameter::variant&>(parameter));
}

SQLPOINTER BoundParameters::Slot::Data() {
  struct Address {
    SQLPOINTER operator()(Null) const { return nullptr; }
    SQLPOINTER operator()(std::string& text) const { return text.data(); }
    // The interface takes a pointer to changeable text, but drivers only read it. It must be one even for no text.
    SQLPOINTER operator()(std::string_view text) const {
      return const_cast<char*>(text.data() != nullptr ? text.data() : "");
    }
    SQLPOINTER operator()(std::int64_t& number) const { return &number; }
    SQLPOINTER operator()(double& number) const { return &number; }
    SQLPOINTER operator()(SQL_TIMESTAMP_STRUCT& stamp) const { return &stamp; }
  };
  return std::visit(Address{}, value);
}

BoundParameters::BoundParameters(Parameters parameters) {
  slots_.reserve(parameters.size());
  for (const Parameter& parameter : parameters) slots_.push_back(MakeSlot(parameter));
}

void BoundParameters::Bind(const Statement& statement) {
  SQLUSMALLINT number = 0;
  for (Slot& slot : slots_) {
    statement.Check(SQLBindParameter(statement.Get(), ++number, SQL_PARAM_INPUT, slot.cType, slot.sqlType,
                                     slot.size, slot.digits, slot.Data(), std::max<SQLLEN>(slot.length, 0),
                                     &slot.length));
  }
}

}  // namespace korvel::data::odbc
