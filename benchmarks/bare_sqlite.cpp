#include "bare_sqlite.h"

#include <sqlite3.h>

#include <memory>
#include <stdexcept>

#include "data/collation.h"

namespace korvel::benchmarks {
namespace {

struct CloseHandle {
  void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
};
struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Handle = std::unique_ptr<sqlite3, CloseHandle>;
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

void Check(bool ok, sqlite3* handle) {
  if (!ok) throw std::runtime_error(sqlite3_errmsg(handle));
}

int Compare(void*, int sizeA, const void* a, int sizeB, const void* b) {
  return data::Collate({static_cast<const char*>(a), static_cast<std::size_t>(sizeA)},
                       {static_cast<const char*>(b), static_cast<std::size_t>(sizeB)});
}

void Run(sqlite3* handle, const std::string& sql) {
  Check(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, handle);
}

Handle Open(const std::filesystem::path& file) {
  sqlite3* raw = nullptr;
  const int result = sqlite3_open(file.c_str(), &raw);
  Handle handle(raw);
  Check(result == SQLITE_OK, raw);
  sqlite3_create_collation_v2(raw, "KORVEL", SQLITE_UTF8, nullptr, Compare, nullptr);
  Run(raw,
      "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA cache_size=-16384; PRAGMA temp_store=FILE;"
      "PRAGMA threads=1");
  return handle;
}

Statement Prepare(const Handle& handle, std::string_view sql) {
  sqlite3_stmt* raw = nullptr;
  const int result =
      sqlite3_prepare_v2(handle.get(), sql.data(), static_cast<int>(sql.size()), &raw, nullptr);
  Check(result == SQLITE_OK, handle.get());
  return Statement(raw);
}

/// Touches a column as a reader must, so that SQLite decodes it.
std::int64_t Touch(sqlite3_stmt* row, int column) {
  if (sqlite3_column_type(row, column) == SQLITE_INTEGER) return sqlite3_column_int64(row, column);
  const unsigned char* text = sqlite3_column_text(row, column);
  return text == nullptr ? 0 : sqlite3_column_bytes(row, column) + text[0];
}

}  // namespace

std::int64_t BareScan(const std::filesystem::path& database, std::string_view statement) {
  const Handle handle = Open(database);
  const Statement rows = Prepare(handle, statement);
  const int columns = sqlite3_column_count(rows.get());
  std::int64_t count = 0;
  volatile std::int64_t seen = 0;
  for (; sqlite3_step(rows.get()) == SQLITE_ROW; ++count) {
    std::int64_t sum = 0;
    for (int column = 0; column < columns; ++column) sum += Touch(rows.get(), column);
    seen = seen + sum;
  }
  return count;
}

TableCopy::TableCopy(const std::filesystem::path& database, std::string_view table) : table_(table) {
  const Handle handle = Open(database);
  const Statement schema = Prepare(
      handle, "select sql from sqlite_schema where type='table' and lower(name)=lower('" + table_ + "')");
  Check(sqlite3_step(schema.get()) == SQLITE_ROW, handle.get());
  createStatement_ = reinterpret_cast<const char*>(sqlite3_column_text(schema.get(), 0));
  const Statement rows = Prepare(handle, "select * from \"" + table_ + "\"");
  const int columns = sqlite3_column_count(rows.get());
  for (int i = 0; i < columns; ++i) columns_.emplace_back(sqlite3_column_name(rows.get(), i));
  while (sqlite3_step(rows.get()) == SQLITE_ROW) {
    for (int i = 0; i < columns; ++i) {
      Cell cell{sqlite3_column_type(rows.get(), i), sqlite3_column_int64(rows.get(), i)};
      if (cell.type == SQLITE_TEXT) {
        texts_ += reinterpret_cast<const char*>(sqlite3_column_text(rows.get(), i));
        cell.value = static_cast<std::int64_t>(texts_.size());
      }
      cells_.push_back(cell);
    }
  }
}

void TableCopy::InsertInto(const std::filesystem::path& newDatabase) const {
  const Handle handle = Open(newDatabase);
  Run(handle.get(), createStatement_);
  std::string marks;
  for (std::size_t i = 0; i < columns_.size(); ++i) marks += i == 0 ? "?" : ",?";
  Run(handle.get(), "begin");
  const Statement insert = Prepare(handle, "insert into \"" + table_ + "\" values (" + marks + ")");
  int parameter = 0;
  std::int64_t begin = 0;
  for (const Cell& cell : cells_) {
    ++parameter;
    if (cell.type == SQLITE_TEXT) {
      sqlite3_bind_text(insert.get(), parameter, texts_.data() + begin, static_cast<int>(cell.value - begin),
                        SQLITE_STATIC);
      begin = cell.value;
    } else if (cell.type == SQLITE_INTEGER) {
      sqlite3_bind_int64(insert.get(), parameter, cell.value);
    } else {
      sqlite3_bind_null(insert.get(), parameter);
    }
    if (parameter != static_cast<int>(columns_.size())) continue;
    Check(sqlite3_step(insert.get()) == SQLITE_DONE, handle.get());
    sqlite3_reset(insert.get());
    parameter = 0;
  }
  Run(handle.get(), "commit");
}

}  // namespace korvel::benchmarks
