#include "data/embedded/procedures.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

const Procedure* FindProcedure(std::string_view name) {
  for (const auto procedures : {CatalogueProcedures(), ServerProcedures()}) {
    const auto found = std::find_if(procedures.begin(), procedures.end(), [&](const Procedure& procedure) {
      return SameName(procedure.name, name);
    });
    if (found != procedures.end()) return &*found;
  }
  return nullptr;
}

OwnedStored Constant(const Expr& expr, Parameters parameters) {
  if (expr.kind == ExprKind::Null) return Null{};
  if (expr.kind != ExprKind::Parameter) return expr.text;
  const auto index = static_cast<std::size_t>(expr.number);
  if (index >= parameters.size()) throw Failed(Code::ProcedureArguments, "Falta o valor de um parâmetro");
  return ToText(ToValue(FromParameter(parameters[index]), ParameterType(parameters[index]).value_or(kInt)));
}

Arguments BindArguments(const Procedure& procedure, const Call& call, Parameters parameters) {
  Arguments bound;
  std::size_t next = 0;
  for (const Argument& argument : call.arguments) {
    std::size_t place = next++;
    if (!argument.name.empty()) {
      const auto found = std::find(procedure.parameters.begin(), procedure.parameters.end(), argument.name);
      place = static_cast<std::size_t>(found - procedure.parameters.begin());
    }
    if (place >= kMostArguments || procedure.parameters[place].empty()) {
      throw Failed(Code::ProcedureArguments,
                   fmt::format("O procedimento '{}' não tem o argumento {}", procedure.name,
                               argument.name.empty() ? "dado" : argument.name));
    }
    const OwnedStored value = Constant(*argument.value, parameters);
    if (const auto* text = std::get_if<std::string>(&value)) bound[place] = *text;
  }
  for (std::size_t i = 0; i < procedure.required; ++i) {
    if (bound[i]) continue;
    throw Failed(Code::ProcedureArguments, fmt::format("O procedimento '{}' espera o parâmetro '{}'",
                                                       procedure.name, procedure.parameters[i]));
  }
  return bound;
}

}  // namespace

RowTables RunProcedure(const Call& call, Session& session, const ServerView& view, Parameters parameters) {
  const Procedure* found = FindProcedure(call.procedure.name);
  if (found == nullptr) {
    throw Failed(Code::NoProcedure, "O procedimento '" + call.procedure.name + "' não existe neste servidor");
  }
  const Arguments arguments = BindArguments(*found, call, parameters);
  return found->body({session, view, arguments});
}

}  // namespace korvel::data::embedded
