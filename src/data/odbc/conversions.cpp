#include "data/odbc/conversions.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include <fmt/format.h>

#include "data/error.h"

namespace korvel::data::odbc {
namespace {

constexpr int kLastMillisecond = 999;
constexpr SQLUINTEGER kNanosecondsPerMillisecond = 1'000'000;

[[noreturn]] void Fail(std::string_view column, std::string_view type) {
  throw Error(Failure::Conversion, fmt::format("O valor da coluna {} não se converte em {}", column, type));
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<std::int64_t> WholeNumber(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

struct IntegerReader {
  std::string_view column;

  std::int64_t operator()(Null) const { return 0; }
  std::int64_t operator()(std::int64_t number) const { return number; }
  std::int64_t operator()(Currency money) const { return money.Whole(); }
  std::int64_t operator()(const DateTime&) const { Fail(column, "número"); }
  std::int64_t operator()(double number) const {
    constexpr double kBound = 9223372036854775808.0;
    if (!(number >= -kBound && number < kBound)) Fail(column, "número");
    return static_cast<std::int64_t>(number);
  }
  std::int64_t operator()(const std::string& text) const {
    const std::string_view trimmed = Trimmed(text);
    if (trimmed.empty()) return 0;
    const auto number = WholeNumber(trimmed);
    if (!number) Fail(column, "número");
    return *number;
  }
};

struct MoneyReader {
  std::string_view column;

  Currency operator()(Null) const { return {}; }
  Currency operator()(std::int64_t number) const { return Currency::FromWhole(number); }
  Currency operator()(Currency money) const { return money; }
  Currency operator()(const DateTime&) const { Fail(column, "valor"); }
  Currency operator()(double number) const { return (*this)(fmt::format("{:.4f}", number)); }
  Currency operator()(const std::string& text) const { return ReadMoney(text, column); }
};

struct DateReader {
  std::string_view column;

  DateTime operator()(Null) const { return {}; }
  DateTime operator()(const DateTime& date) const { return date; }
  DateTime operator()(const std::string& text) const {
    const std::string_view trimmed = Trimmed(text);
    if (trimmed.empty()) return {};
    const auto date = DateTime::FromText(trimmed);
    if (!date) Fail(column, "data");
    return *date;
  }
  template <typename Other>
  DateTime operator()(const Other&) const {
    Fail(column, "data");
  }
};

const Value::variant& Alternatives(const Value& value) {
  return value;
}

}  // namespace

std::int64_t ToInteger(const Value& value, std::string_view column) {
  return std::visit(IntegerReader{column}, Alternatives(value));
}

Currency ReadMoney(std::string_view text, std::string_view column) {
  const std::string_view trimmed = Trimmed(text);
  if (trimmed.empty()) return {};
  const auto money = Currency::FromText(trimmed);
  if (!money) Fail(column, "valor");
  return *money;
}

Currency ToMoney(const Value& value, std::string_view column) {
  return std::visit(MoneyReader{column}, Alternatives(value));
}

DateTime ToDate(const Value& value, std::string_view column) {
  return std::visit(DateReader{column}, Alternatives(value));
}

SQL_TIMESTAMP_STRUCT ToStamp(const DateTime& date) {
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

DateTime FromStamp(const SQL_TIMESTAMP_STRUCT& stamp) {
  const int milliseconds =
      static_cast<int>((stamp.fraction + kNanosecondsPerMillisecond / 2) / kNanosecondsPerMillisecond);
  return {stamp.year,
          stamp.month,
          stamp.day,
          stamp.hour,
          stamp.minute,
          stamp.second,
          std::min(milliseconds, kLastMillisecond)};
}

}  // namespace korvel::data::odbc
