#include "data/embedded/cursor.h"

#include <sqlite3.h>

namespace korvel::data::embedded {

BatchCursor::BatchCursor(std::unique_ptr<Execution> execution) : execution_(std::move(execution)) {
  NextRowSet();
}

std::span<const Field> BatchCursor::Fields() const {
  const Ready* rows = execution_->Rows();
  return rows == nullptr ? std::span<const Field>() : std::span<const Field>(rows->translation.fields);
}

bool BatchCursor::NextRowSet() {
  statement_ = nullptr;
  if (!execution_->NextStatement()) return false;
  if (const Ready* rows = execution_->Rows()) {
    statement_ = rows->statement.Raw();
    types_ = rows->translation.types.data();
    texts_.resize(rows->translation.types.size());
  }
  return true;
}

const ColumnType& BatchCursor::TypeOf(std::size_t column) const {
  return types_[column];
}

bool BatchCursor::IsNull(std::size_t column) const {
  return sqlite3_column_type(statement_, static_cast<int>(column)) == SQLITE_NULL;
}

Stored BatchCursor::Read(std::size_t column) const {
  return ReadColumn(statement_, static_cast<int>(column), TypeOf(column));
}

Stored BatchCursor::As(std::size_t column, const ColumnType& type) const {
  return Convert(Read(column), TypeOf(column), type, ConvertMode::Cast, -1, texts_[column]);
}

std::string_view BatchCursor::Text(std::size_t column) const {
  if (!IsText(TypeOf(column))) return Written(column);
  const int i = static_cast<int>(column);
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, i));
  return text == nullptr
             ? std::string_view()
             : std::string_view(text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, i)));
}

std::string_view BatchCursor::Written(std::size_t column) const {
  const Stored value = Read(column);
  const ColumnType& type = TypeOf(column);
  std::string& written = texts_[column];
  written.clear();
  if (std::holds_alternative<Null>(value)) return written;
  if (const auto* number = std::get_if<double>(&value)) {
    written = ToText(Value(*number));
  } else if (IsDate(type)) {
    written = DateFromTicks(std::get<std::int64_t>(value)).FullText();
  } else if (type.base == Type::Money) {
    AppendMoney(written, std::get<std::int64_t>(value));
  } else {
    AppendDecimal(written, std::get<std::int64_t>(value), ScaleOf(type));
  }
  return written;
}

std::int64_t BatchCursor::Integer(std::size_t column) const {
  if (IsWhole(TypeOf(column)) || (TypeOf(column).base == Type::Numeric && TypeOf(column).scale == 0)) {
    return sqlite3_column_int64(statement_, static_cast<int>(column));
  }
  const Stored whole = As(column, kBigInt);
  const auto* number = std::get_if<std::int64_t>(&whole);
  return number == nullptr ? 0 : *number;
}

Currency BatchCursor::Money(std::size_t column) const {
  if (TypeOf(column).base == Type::Money) {
    return Currency::FromUnits(sqlite3_column_int64(statement_, static_cast<int>(column)));
  }
  const Stored money = As(column, kMoney);
  const auto* units = std::get_if<std::int64_t>(&money);
  return units == nullptr ? Currency() : Currency::FromUnits(*units);
}

DateTime BatchCursor::Date(std::size_t column) const {
  const Stored moment = As(column, kDateTime);
  const auto* ticks = std::get_if<std::int64_t>(&moment);
  return ticks == nullptr ? DateTime() : DateFromTicks(*ticks);
}

Value BatchCursor::Get(std::size_t column) const {
  return ToValue(Read(column), TypeOf(column));
}

}  // namespace korvel::data::embedded
