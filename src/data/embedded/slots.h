#pragma once

#include <span>
#include <string>
#include <vector>

#include "data/embedded/store.h"
#include "data/embedded/translation.h"

namespace korvel::data::embedded {

/// What a connection knows of itself and of its last statement.
struct SessionValues {
  std::int64_t rowCount = 0;
  OwnedStored identity;  // Null before the first insert into a table with one
  std::int64_t transactionCount = 0;
  std::string login;
  std::string database;
  std::int64_t lastError = 0;  // number of the error that the last statement gave
};

/// What a variable of a batch holds.
struct Variable {
  ColumnType type;
  OwnedStored value;
};

/// Where slots take their values from.
struct SlotValues {
  const SessionValues& session;
  Parameters parameters;
  std::span<const Variable> variables;
};

/// Gives every slot of a prepared statement its value, the first slot the parameter behind `before`. Converted texts
/// live in `owned`, which must stay until the statement is reset; the parameters' own texts must stay as long.
void BindSlots(Prepared& statement, const std::vector<Slot>& slots, const SlotValues& values,
               std::vector<OwnedStored>& owned, int before = 0);

}  // namespace korvel::data::embedded
