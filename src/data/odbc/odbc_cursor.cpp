#include "data/odbc/odbc_cursor.h"

#include <algorithm>
#include <numeric>

#include "data/odbc/result_fields.h"

namespace korvel::data::odbc {
namespace {

/// Blocks of this many rows read fastest; wide rows make smaller blocks, so that memory stays bounded.
constexpr std::size_t kBlockRows = 1000;
constexpr std::size_t kBlockBytes = std::size_t{4} << 20;

}  // namespace

OdbcCursor::OdbcCursor(std::unique_ptr<Statement> statement) : statement_(std::move(statement)) {
  Prepare();
}

void OdbcCursor::Prepare() {
  fields_ = DescribeResult(*statement_);
  columns_.clear();
  for (const Field& field : fields_) columns_.emplace_back(field);
  const auto firstLong =
      std::find_if(columns_.begin(), columns_.end(), [](const Column& c) { return c.IsLong(); });
  bound_ = static_cast<std::size_t>(firstLong - columns_.begin());
  status_.assign(BlockRows(), SQL_ROW_NOROW);
  fetched_ = 0;
  row_ = 0;
  statement_->Set(SQL_ATTR_ROW_ARRAY_SIZE, AsPointer(status_.size()));
  statement_->Set(SQL_ATTR_ROW_STATUS_PTR, status_.data());
  statement_->Set(SQL_ATTR_ROWS_FETCHED_PTR, &fetched_);
  for (std::size_t i = 0; i < bound_; ++i) {
    columns_[i].Reserve(status_.size());
    columns_[i].Bind(*statement_, static_cast<SQLUSMALLINT>(i + 1));
  }
}

std::size_t OdbcCursor::BlockRows() const {
  if (bound_ < columns_.size()) return 1;
  const std::size_t rowBytes =
      std::accumulate(columns_.begin(), columns_.end(), std::size_t{1},
                      [](std::size_t sum, const Column& column) { return sum + column.RowBytes(); });
  return std::clamp<std::size_t>(kBlockBytes / rowBytes, 1, kBlockRows);
}

bool OdbcCursor::Next() {
  if (columns_.empty()) return false;
  if (++row_ < fetched_) return true;
  return FetchBlock();
}

bool OdbcCursor::FetchBlock() {
  row_ = 0;
  fetched_ = 0;
  const SQLRETURN result = SQLFetch(statement_->Get());
  if (result == SQL_NO_DATA) return false;
  statement_->Check(result);
  CheckBlock();
  for (std::size_t i = bound_; i < columns_.size(); ++i) {
    columns_[i].Load(*statement_, static_cast<SQLUSMALLINT>(i + 1));
  }
  return fetched_ > 0;
}

void OdbcCursor::CheckBlock() const {
  const auto end = status_.begin() + static_cast<std::ptrdiff_t>(fetched_);
  // A block with a bad row comes back as a success with a warning.
  if (std::find(status_.begin(), end, SQL_ROW_ERROR) != end) {
    throw Error(Failure::Conversion, "O servidor devolveu uma linha que não se consegue ler");
  }
}

bool OdbcCursor::NextRowSet() {
  statement_->Check(SQLFreeStmt(statement_->Get(), SQL_UNBIND));
  if (!statement_->NextResult()) {
    fields_.clear();
    columns_.clear();
    fetched_ = 0;
    return false;
  }
  Prepare();
  return true;
}

}  // namespace korvel::data::odbc
