#include "databases/canned_connection.h"

#include <cstdlib>

namespace korvel::test {

namespace {

class CannedCursor final : public data::Cursor {
 public:
  explicit CannedCursor(std::vector<CannedRows> sets) : sets_(std::move(sets)) { TakeFields(); }

  std::span<const data::Field> Fields() const override { return fields_; }
  bool Next() override { return set_ < sets_.size() && ++row_ <= sets_[set_].rows.size(); }
  bool NextRowSet() override {
    if (set_ < sets_.size()) ++set_;
    TakeFields();
    return set_ < sets_.size();
  }
  std::optional<std::int64_t> Changed() const override { return std::nullopt; }
  bool IsNull(std::size_t column) const override { return Cell(column) == "NULL"; }
  std::string_view Text(std::size_t column) const override {
    return IsNull(column) ? std::string_view() : Cell(column);
  }
  std::int64_t Integer(std::size_t column) const override {
    return std::strtoll(std::string(Text(column)).c_str(), nullptr, 10);
  }
  data::Currency Money(std::size_t) const override { return {}; }
  data::DateTime Date(std::size_t) const override { return {}; }
  data::Value Get(std::size_t column) const override {
    return IsNull(column) ? data::Value() : data::Value(Text(column));
  }

 private:
  void TakeFields() {
    row_ = 0;
    fields_.clear();
    if (set_ >= sets_.size()) return;
    for (const std::string& name : sets_[set_].columns) fields_.push_back({.name = name});
  }
  std::string_view Cell(std::size_t column) const { return sets_.at(set_).rows.at(row_ - 1).at(column); }

  std::vector<CannedRows> sets_;
  std::vector<data::Field> fields_;
  std::size_t set_ = 0;
  std::size_t row_ = 0;
};

}  // namespace

std::unique_ptr<data::Cursor> CannedConnection::DoQuery(std::string_view sql, data::Parameters parameters) {
  DoExecute(sql, parameters);
  const auto answer = answers.find(sql);
  return std::make_unique<CannedCursor>(answer == answers.end() ? std::vector<CannedRows>() : answer->second);
}

std::int64_t CannedConnection::DoExecute(std::string_view sql, data::Parameters) {
  sent.emplace_back(sql);
  if (const auto failure = refused.find(sql); failure != refused.end()) throw failure->second;
  return 0;
}

}  // namespace korvel::test
