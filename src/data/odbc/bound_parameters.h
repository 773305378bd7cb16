#pragma once

#include <vector>

#include "data/odbc/parameter_slot.h"

namespace korvel::data::odbc {

/// Parameter values in the form that the driver reads. They must live until the statement has run.
class BoundParameters {
 public:
  explicit BoundParameters(Parameters parameters);
  void Bind(const Statement& statement);

 private:
  std::vector<ParameterSlot> slots_;
};

}  // namespace korvel::data::odbc
