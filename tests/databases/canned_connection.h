#pragma once

#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"

namespace korvel::test {

/// A set of rows as text: the columns' names, then the rows.
struct CannedRows {
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;
};

/// Answers statements from a table, as servers do that are not at hand. All values are texts; "NULL" is one that is
/// missing. Statements that it does not know do nothing, those in `refused` fail.
class CannedConnection final : public data::Connection {
 public:
  std::map<std::string, std::vector<CannedRows>, std::less<>> answers;
  std::map<std::string, data::Error, std::less<>> refused;
  std::vector<std::string> sent;

  bool IsOpen() const override { return true; }
  void Close() noexcept override {}
  std::string Database() const override { return "KorvelConfig"; }

 private:
  std::unique_ptr<data::Cursor> DoQuery(std::string_view sql, data::Parameters parameters) override;
  std::int64_t DoExecute(std::string_view sql, data::Parameters parameters) override;
  std::int64_t DoCall(std::string_view, std::span<data::ProcedureArgument>) override { return 0; }
  std::unique_ptr<data::BatchInsert> DoOpenBatch(std::string_view,
                                                 std::span<const std::string_view>) override {
    return nullptr;
  }
  void DoBegin() override { sent.emplace_back("begin"); }
  void DoCommit() override { sent.emplace_back("commit"); }
  void DoRollback() override { sent.emplace_back("rollback"); }
};

}  // namespace korvel::test
