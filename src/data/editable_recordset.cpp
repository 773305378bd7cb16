#include "data/editable_recordset.h"

#include <algorithm>

namespace korvel::data {

EditableRecordset EditableRecordset::AddNew(Connection& connection, std::string_view table) {
  return {connection, table, 0};
}

EditableRecordset EditableRecordset::Edit(Connection& connection, std::string_view table,
                                          std::int64_t numRegisto) {
  return {connection, table, numRegisto};
}

void EditableRecordset::Set(std::string_view column, Value value) {
  const auto found = std::find(columns_.begin(), columns_.end(), column);
  if (found != columns_.end()) {
    values_[static_cast<std::size_t>(found - columns_.begin())] = std::move(value);
    return;
  }
  columns_.emplace_back(column);
  values_.push_back(std::move(value));
}

std::int64_t EditableRecordset::Update() {
  if (key_ == 0) {
    key_ = Insert();
  } else if (!columns_.empty()) {
    Change();
  }
  return key_;
}

std::int64_t EditableRecordset::Insert() {
  std::string names;
  std::string marks;
  for (const std::string& column : columns_) {
    names += (names.empty() ? "[" : ",[") + column + "]";
    marks += marks.empty() ? "?" : ",?";
  }
  const std::vector<Parameter> bound(values_.begin(), values_.end());
  connection_.Execute("INSERT INTO [" + table_ + "] (" + names + ") VALUES (" + marks + ")", bound);
  const Recordset key = connection_.Query("select @@IDENTITY as NumRegisto");
  return key.Integer(0);
}

void EditableRecordset::Change() {
  std::string assignments;
  for (const std::string& column : columns_)
    assignments += (assignments.empty() ? "[" : ",[") + column + "]=?";
  std::vector<Parameter> bound(values_.begin(), values_.end());
  bound.emplace_back(key_);
  const std::int64_t changed =
      connection_.Execute("UPDATE [" + table_ + "] SET " + assignments + " WHERE NumRegisto=?", bound);
  if (changed == 0) throw Error(Failure::Statement, "O registo foi eliminado por outro utilizador");
}

}  // namespace korvel::data
