#include "data/odbc/column.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "data/odbc/conversions.h"

namespace korvel::data::odbc {
namespace {

/// Room for any number written as text, with its closing zero.
constexpr std::size_t kNumberWidth = 64;
/// A character of a varchar takes at most three bytes of UTF-8.
constexpr std::size_t kBytesPerCharacter = 3;
constexpr std::size_t kChunk = 65536;
/// A driver that will not split a character ends a chunk a few bytes early.
constexpr std::size_t kChunkTail = 8;

std::size_t Width(const Field& field) {
  switch (field.type) {
    case Type::Bit:
    case Type::SmallInt:
    case Type::Int:
    case Type::BigInt:
      return sizeof(std::int64_t);
    case Type::Float:
      return sizeof(double);
    case Type::SmallDateTime:
    case Type::DateTime:
      return sizeof(SQL_TIMESTAMP_STRUCT);
    case Type::Numeric:
    case Type::Money:
      return kNumberWidth;
    case Type::Varchar:
      return static_cast<std::size_t>(field.length) * kBytesPerCharacter + 1;
    case Type::Text:
      return 0;
  }
  return 0;
}

/// A whole number where the column holds only such, else an amount; the text itself where neither can hold it.
Value FromNumeric(std::string_view text, int scale) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (scale == 0 && error == std::errc() && end == text.data() + text.size()) return number;
  if (const auto money = Currency::FromText(text)) return *money;
  return text;
}

/// Half away from zero: the server rounds money on its way to a whole number, and cuts every other fraction.
std::int64_t RoundedToWhole(Currency money) {
  const std::int64_t rest = money.Units() % Currency::kScale;
  return money.Whole() + (rest >= Currency::kScale / 2 ? 1 : rest <= -Currency::kScale / 2 ? -1 : 0);
}

/// Bytes that a chunk holds when the driver says that more is to come.
std::size_t FilledBytes(const std::array<char, kChunk>& chunk) {
  const char* tail = chunk.data() + kChunk - kChunkTail;
  const void* end = std::memchr(tail, 0, kChunkTail);
  return end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - chunk.data()) : kChunk;
}

}  // namespace

Column::Column(const Field& field) : field_(field), width_(Width(field)) {
  Reserve(1);
}

bool Column::IsLong() const {
  return field_.type == Type::Text;
}

void Column::Reserve(std::size_t rows) {
  data_.resize(rows * width_);
  lengths_.resize(rows);
}

SQLSMALLINT Column::CType() const {
  switch (field_.type) {
    case Type::Bit:
    case Type::SmallInt:
    case Type::Int:
    case Type::BigInt:
      return SQL_C_SBIGINT;
    case Type::Float:
      return SQL_C_DOUBLE;
    case Type::SmallDateTime:
    case Type::DateTime:
      return SQL_C_TYPE_TIMESTAMP;
    default:
      return SQL_C_CHAR;
  }
}

void Column::Bind(const Statement& statement, SQLUSMALLINT number) {
  statement.Check(SQLBindCol(statement.Get(), number, CType(), data_.data(), static_cast<SQLLEN>(width_),
                             lengths_.data()));
}

void Column::Load(const Statement& statement, SQLUSMALLINT number) {
  if (IsLong()) return LoadLong(statement, number);
  statement.Check(SQLGetData(statement.Get(), number, CType(), data_.data(), static_cast<SQLLEN>(width_),
                             lengths_.data()));
}

void Column::LoadLong(const Statement& statement, SQLUSMALLINT number) {
  std::array<char, kChunk> chunk;
  SQLLEN& length = lengths_.front();
  data_.clear();
  for (;;) {
    const SQLRETURN result =
        SQLGetData(statement.Get(), number, SQL_C_CHAR, chunk.data(), static_cast<SQLLEN>(kChunk), &length);
    if (result == SQL_NO_DATA) break;
    statement.Check(result);
    if (length == SQL_NULL_DATA) return;
    const bool last = length != SQL_NO_TOTAL && length < static_cast<SQLLEN>(kChunk);
    const std::size_t filled = last ? static_cast<std::size_t>(length) : FilledBytes(chunk);
    data_.insert(data_.end(), chunk.data(), chunk.data() + filled);
    if (last) break;
  }
  length = static_cast<SQLLEN>(data_.size());
}

template <typename T>
T Column::Raw(std::size_t row) const {
  T value;
  std::memcpy(&value, data_.data() + row * width_, sizeof value);
  return value;
}

std::string_view Column::RawText(std::size_t row) const {
  const SQLLEN length = lengths_[row];
  if (length == SQL_NULL_DATA) return {};
  if (!IsLong() && (length < 0 || static_cast<std::size_t>(length) >= width_)) {
    throw Error(Failure::Truncation, "A coluna " + field_.name + " traz mais texto do que declara");
  }
  return {data_.data() + row * width_, static_cast<std::size_t>(length)};
}

std::string_view Column::Text(std::size_t row) const {
  if (CType() == SQL_C_CHAR && field_.type != Type::Money) return RawText(row);
  converted_ = ToText(Get(row));
  return converted_;
}

std::int64_t Column::Integer(std::size_t row) const {
  if (CType() == SQL_C_SBIGINT) return IsNull(row) ? 0 : Raw<std::int64_t>(row);
  if (field_.type == Type::Money) return RoundedToWhole(Money(row));
  return ToInteger(Get(row), field_.name);
}

Currency Column::Money(std::size_t row) const {
  if (field_.type == Type::Money) return ReadMoney(RawText(row), field_.name);
  return ToMoney(Get(row), field_.name);
}

DateTime Column::Date(std::size_t row) const {
  return ToDate(Get(row), field_.name);
}

Value Column::Get(std::size_t row) const {
  if (IsNull(row)) return {};
  switch (CType()) {
    case SQL_C_SBIGINT:
      return Raw<std::int64_t>(row);
    case SQL_C_DOUBLE:
      return Raw<double>(row);
    case SQL_C_TYPE_TIMESTAMP:
      return FromStamp(Raw<SQL_TIMESTAMP_STRUCT>(row));
    default:
      break;
  }
  if (field_.type == Type::Money) return ReadMoney(RawText(row), field_.name);
  if (field_.type == Type::Numeric) return FromNumeric(RawText(row), field_.scale);
  return RawText(row);
}

}  // namespace korvel::data::odbc
