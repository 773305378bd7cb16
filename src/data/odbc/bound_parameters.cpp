#include "data/odbc/bound_parameters.h"

namespace korvel::data::odbc {

BoundParameters::BoundParameters(Parameters parameters) {
  slots_.reserve(parameters.size());
  for (const Parameter& parameter : parameters) slots_.push_back(ParameterSlot::Of(parameter));
}

void BoundParameters::Bind(const Statement& statement) {
  SQLUSMALLINT number = 0;
  for (ParameterSlot& slot : slots_) slot.Bind(statement, ++number, SQL_PARAM_INPUT);
}

}  // namespace korvel::data::odbc
