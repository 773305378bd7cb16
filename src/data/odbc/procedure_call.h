#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/odbc/parameter_slot.h"

namespace korvel::data::odbc {

/// The call of a stored procedure: its arguments in the form that the driver reads and writes. It must live until the
/// statement has run to its end, for only then are outputs there.
class ProcedureCall {
 public:
  explicit ProcedureCall(std::span<const ProcedureArgument> arguments);

  /// "{? = call name(?,?)}".
  std::string Text(std::string_view procedure) const;
  void Bind(const Statement& statement);

  /// Puts what came back into the output arguments.
  void ReadOutputs(std::span<ProcedureArgument> arguments) const;
  std::int64_t Result() const;

 private:
  struct Bound {
    ParameterSlot slot;
    SQLSMALLINT direction;
  };
  std::vector<Bound> bound_;  // the procedure's result, then its arguments
};

}  // namespace korvel::data::odbc
