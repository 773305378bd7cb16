#include "data/odbc/procedure_call.h"

namespace korvel::data::odbc {

ProcedureCall::ProcedureCall(std::span<const ProcedureArgument> arguments) {
  bound_.push_back({ParameterSlot::ForOutput(std::int64_t{0}), SQL_PARAM_OUTPUT});
  for (const ProcedureArgument& argument : arguments) {
    if (argument.output) {
      bound_.push_back({ParameterSlot::ForOutput(argument.value), SQL_PARAM_INPUT_OUTPUT});
    } else {
      bound_.push_back({ParameterSlot::Of(argument.value), SQL_PARAM_INPUT});
    }
  }
}

std::string ProcedureCall::Text(std::string_view procedure) const {
  std::string text = "{? = call " + std::string(procedure);
  for (std::size_t i = 1; i < bound_.size(); ++i) text += i == 1 ? "(?" : ",?";
  return text += bound_.size() > 1 ? ")}" : "}";
}

void ProcedureCall::Bind(const Statement& statement) {
  SQLUSMALLINT number = 0;
  for (Bound& bound : bound_) bound.slot.Bind(statement, ++number, bound.direction);
}

void ProcedureCall::ReadOutputs(std::span<ProcedureArgument> arguments) const {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i].output) arguments[i].value = bound_[i + 1].slot.Read();
  }
}

std::int64_t ProcedureCall::Result() const {
  return std::get<std::int64_t>(bound_.front().slot.value);
}

}  // namespace korvel::data::odbc
