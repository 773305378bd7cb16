#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::benchmarks {

/// What SQLite's own interface takes for the same work: the measure of all ratios. Opens the embedded server's file
/// with the settings and the collation that the server opens it with, and nothing else.

/// Reads every column of every row of `statement`; returns how many rows there were.
std::int64_t BareScan(const std::filesystem::path& database, std::string_view statement);

/// All rows of a table, in memory.
class TableCopy {
 public:
  TableCopy(const std::filesystem::path& database, std::string_view table);

  /// Inserts the rows into a new file with the same table: one transaction, one prepared statement, bound values.
  void InsertInto(const std::filesystem::path& newDatabase) const;
  std::int64_t Rows() const { return static_cast<std::int64_t>(cells_.size() / columns_.size()); }

 private:
  /// A number, or a text by where it ends in `texts_`; it begins where the one before ends.
  struct Cell {
    int type = 0;  // of SQLite
    std::int64_t value = 0;
  };

  std::string table_;
  std::string createStatement_;
  std::vector<std::string> columns_;
  std::vector<Cell> cells_;
  std::string texts_;
};

}  // namespace korvel::benchmarks
