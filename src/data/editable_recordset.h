#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"

namespace korvel::data {

/// One record being added or changed: assign columns, then Update. It turns into an INSERT, or an UPDATE on the
/// identity key `NumRegisto`, with bound values. Table and column names are names of the system, never users' text.
class EditableRecordset {
 public:
  /// A new record of `table`.
  static EditableRecordset AddNew(Connection& connection, std::string_view table);
  /// The record of `table` with that key; changing one that has gone throws Error at Update.
  static EditableRecordset Edit(Connection& connection, std::string_view table, std::int64_t numRegisto);

  /// Assigns a column; a second assignment replaces the first.
  void Set(std::string_view column, Value value);
  /// Sends the record and returns its `NumRegisto`. Nothing is sent when nothing was assigned to an existing one.
  std::int64_t Update();

 private:
  EditableRecordset(Connection& connection, std::string_view table, std::int64_t key)
      : connection_(connection), table_(table), key_(key) {}
  std::int64_t Insert();
  void Change();

  Connection& connection_;
  std::string table_;
  std::int64_t key_;  // 0: new
  std::vector<std::string> columns_;
  std::vector<Value> values_;
};

}  // namespace korvel::data
