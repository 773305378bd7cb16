#include "data/odbc/parameter_slot.h"

#include <algorithm>

#include "data/odbc/conversions.h"

namespace korvel::data::odbc {
namespace {

/// A character of a varchar takes at most three bytes of UTF-8; the driver writes a zero behind the last.
constexpr std::size_t kTextRoom = kLongestVarchar * 3 + 1;
constexpr SQLULEN kMoneyDigits = 19;
constexpr SQLSMALLINT kMoneyScale = 4;
constexpr std::size_t kMoneyRoom = 64;
constexpr SQLULEN kTimestampWidth = 23;
constexpr SQLSMALLINT kTimestampDigits = 3;

SQLLEN Length(std::string_view text) {
  return static_cast<SQLLEN>(text.size());
}

struct SlotMaker {
  ParameterSlot operator()(Null) const { return {}; }
  ParameterSlot operator()(std::int64_t number) const {
    return {number, SQL_C_SBIGINT, SQL_BIGINT, 19, 0, 0};
  }
  ParameterSlot operator()(double number) const { return {number, SQL_C_DOUBLE, SQL_DOUBLE, 53, 0, 0}; }
  ParameterSlot operator()(const DateTime& date) const {
    return {ToStamp(date), SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, kTimestampWidth, kTimestampDigits, 0};
  }
  ParameterSlot operator()(Currency money) const {
    std::string text = money.ToText();
    const SQLLEN length = Length(text);
    return {std::move(text), SQL_C_CHAR, SQL_DECIMAL, kMoneyDigits, kMoneyScale, length};
  }
  ParameterSlot operator()(std::string_view text) const {
    const SQLSMALLINT type = text.size() <= kLongestVarchar ? SQL_VARCHAR : SQL_LONGVARCHAR;
    return {text, SQL_C_CHAR, type, std::max<SQLULEN>(text.size(), 1), 0, Length(text)};
  }
};

/// Text of its own, with room for another.
void MakeRoom(ParameterSlot& slot, std::string_view text, std::size_t room) {
  std::string own(text);
  own.resize(std::max(room, own.size() + 1));
  slot.value = std::move(own);
}

}  // namespace

ParameterSlot ParameterSlot::Of(const Parameter& parameter) {
  return std::visit(SlotMaker{}, static_cast<const Parameter::variant&>(parameter));
}

ParameterSlot ParameterSlot::ForOutput(const Value& given) {
  ParameterSlot slot = Of(given);
  if (slot.sqlType == SQL_DECIMAL) {
    MakeRoom(slot, std::get<std::string>(slot.value), kMoneyRoom);
  } else if (slot.cType == SQL_C_CHAR) {
    const auto* text = std::get_if<std::string_view>(&slot.value);
    MakeRoom(slot, text != nullptr ? *text : std::string_view(), kTextRoom);
    slot.sqlType = SQL_VARCHAR;
    slot.size = kLongestVarchar;
  }
  return slot;
}

SQLPOINTER ParameterSlot::Data() {
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

SQLLEN ParameterSlot::Capacity() const {
  const auto* text = std::get_if<std::string>(&value);
  return text != nullptr ? Length(*text) : std::max<SQLLEN>(length, 0);
}

void ParameterSlot::Bind(const Statement& statement, SQLUSMALLINT number, SQLSMALLINT direction) {
  statement.Check(SQLBindParameter(statement.Get(), number, direction, cType, sqlType, size, digits, Data(),
                                   Capacity(), &length));
}

Value ParameterSlot::Read() const {
  struct Reader {
    const ParameterSlot& slot;
    Value operator()(Null) const { return {}; }
    Value operator()(std::int64_t number) const { return number; }
    Value operator()(double number) const { return number; }
    Value operator()(const SQL_TIMESTAMP_STRUCT& stamp) const { return FromStamp(stamp); }
    Value operator()(std::string_view text) const { return text; }
    Value operator()(const std::string& buffer) const {
      if (slot.length < 0 || static_cast<std::size_t>(slot.length) >= buffer.size()) {
        throw Error(Failure::Truncation, "Um parâmetro de saída traz mais texto do que cabe");
      }
      const std::string_view text(buffer.data(), static_cast<std::size_t>(slot.length));
      if (slot.sqlType == SQL_DECIMAL) return ReadMoney(text, "de saída");
      return text;
    }
  };
  return length == SQL_NULL_DATA ? Value() : std::visit(Reader{*this}, value);
}

}  // namespace korvel::data::odbc
