#include "data/recordset.h"

#include <algorithm>

#include "data/error.h"

namespace korvel::data {
namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

}  // namespace

Recordset::Recordset(std::unique_ptr<Cursor> cursor, std::shared_ptr<void> lease)
    : lease_(std::move(lease)), cursor_(std::move(cursor)) {
  if (cursor_->Fields().empty()) {
    changed_ = cursor_->Changed().value_or(0);
    SkipToRows();
  } else {
    MoveNext();
  }
}

bool Recordset::NextRecordset() {
  changed_ = 0;
  return SkipToRows();
}

bool Recordset::SkipToRows() {
  eof_ = true;
  while (cursor_->NextRowSet()) {
    if (cursor_->Fields().empty()) {
      changed_ = cursor_->Changed().value_or(changed_);
      continue;
    }
    MoveNext();
    return true;
  }
  return false;
}

std::size_t Recordset::IndexOf(std::string_view column) const {
  const auto fields = Fields();
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [&](const Field& field) { return SameName(field.name, column); });
  if (found == fields.end()) {
    throw Error(Failure::Statement, 207, "42S22", "Coluna inexistente no resultado: " + std::string(column));
  }
  return static_cast<std::size_t>(found - fields.begin());
}

bool Recordset::Has(std::string_view column) const {
  const auto fields = Fields();
  return std::any_of(fields.begin(), fields.end(),
                     [&](const Field& field) { return SameName(field.name, column); });
}

}  // namespace korvel::data
