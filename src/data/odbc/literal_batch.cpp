#include "data/odbc/literal_batch.h"

#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "data/sql_text.h"

namespace korvel::data::odbc {
namespace {

/// The most rows that a SQL Server takes in one VALUES, and the most parameters in one call, less a margin.
constexpr std::size_t kRows = 1000;
constexpr std::size_t kParameters = 2000;
/// Keeps memory flat when rows are wide.
constexpr std::size_t kBytes = std::size_t{16} << 20;

/// A zero byte ends a statement for some servers, and a "\" at the end of a line joins it to the next within a
/// T-SQL literal: both would be lost.
bool NeedsBinding(std::string_view text) {
  return text.find('\0') != std::string_view::npos || text.find("\\\n") != std::string_view::npos ||
         text.find("\\\r") != std::string_view::npos;
}

struct LiteralWriter {
  std::string& sql;

  void operator()(Null) const { sql += "NULL"; }
  void operator()(std::int64_t number) const { fmt::format_to(std::back_inserter(sql), "{}", number); }
  void operator()(Currency money) const { sql += money.ToText(); }
  void operator()(std::string_view text) const { sql += Quoted(text); }
  // Always with an exponent: without it the server would read a decimal, whose digits are bounded.
  void operator()(double number) const {
    if (!std::isfinite(number))
      throw Error(Failure::Conversion, "Um número infinito não tem coluna onde caiba");
    fmt::format_to(std::back_inserter(sql), "{:.16e}", number);
  }
  // The one form with a time that the server reads alike in every language.
  void operator()(const DateTime& date) const {
    fmt::format_to(std::back_inserter(sql), "'{:04}{:02}{:02} {:02}:{:02}:{:02}.{:03}'", date.year,
                   date.month, date.day, date.hour, date.minute, date.second, date.millisecond);
  }
};

}  // namespace

LiteralBatch::LiteralBatch(Connection& connection, std::string_view table,
                           std::span<const std::string_view> columns)
    : connection_(connection), columns_(columns.size()) {
  head_ = fmt::format("INSERT INTO [{}] (", table);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    head_ += fmt::format("{}[{}]", i == 0 ? "" : ",", columns[i]);
  }
  head_ += ") VALUES ";
}

void LiteralBatch::Add(Parameters row) {
  if (row.size() != columns_) {
    throw Error(Failure::Statement,
                fmt::format("A linha tem {} valores para {} colunas", row.size(), columns_));
  }
  sql_ += rows_ == 0 ? head_ : ",";
  for (std::size_t i = 0; i < row.size(); ++i) {
    sql_ += i == 0 ? '(' : ',';
    Append(row[i]);
  }
  sql_ += ')';
  ++rows_;
  if (rows_ == kRows || bound_.size() + columns_ > kParameters || sql_.size() > kBytes) Finish();
}

void LiteralBatch::Append(const Parameter& value) {
  const auto* text = std::get_if<std::string_view>(&value);
  if (text == nullptr || !NeedsBinding(*text)) {
    std::visit(LiteralWriter{sql_}, static_cast<const Parameter::variant&>(value));
    return;
  }
  sql_ += '?';
  bound_.emplace_back(*text);
}

void LiteralBatch::Finish() {
  if (rows_ == 0) return;
  // Taken out first, so that a refused batch is not sent a second time.
  const std::string sql = std::exchange(sql_, {});
  const std::vector<std::string> bound = std::exchange(bound_, {});
  rows_ = 0;
  connection_.Execute(sql, std::vector<Parameter>(bound.begin(), bound.end()));
}

}  // namespace korvel::data::odbc
