#include "data/embedded/procedures.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

const Procedure* FindProcedure(std::string_view name) {
  for (const auto procedures :
       {CatalogueProcedures(), ServerProcedures(), LoginProcedures(), UserProcedures(), ProcessProcedures(),
        ProgramProcedures(), StorageProcedures(), HelpProcedures()}) {
    const auto found = std::find_if(procedures.begin(), procedures.end(), [&](const Procedure& procedure) {
      return SameName(procedure.name, name);
    });
    if (found != procedures.end()) return &*found;
  }
  return nullptr;
}

Arguments BindArguments(const Procedure& procedure, const std::vector<GivenArgument>& given) {
  Arguments bound;
  std::size_t next = 0;
  for (const GivenArgument& argument : given) {
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
    bound[place] = argument.value;
  }
  for (std::size_t i = 0; i < procedure.required; ++i) {
    if (bound[i]) continue;
    throw Failed(Code::ProcedureArguments, fmt::format("O procedimento '{}' espera o parâmetro '{}'",
                                                       procedure.name, procedure.parameters[i]));
  }
  return bound;
}

}  // namespace

bool IsServerProcedure(std::string_view name) {
  return FindProcedure(name) != nullptr;
}

RowTables RunProcedure(const ObjectName& name, const std::vector<GivenArgument>& given, Session& session,
                       const ServerView& view) {
  const Procedure* found = FindProcedure(name.name);
  if (found == nullptr) {
    throw Failed(Code::NoProcedure, "O procedimento '" + name.name + "' não existe neste servidor");
  }
  return found->body({session, view, BindArguments(*found, given)});
}

}  // namespace korvel::data::embedded
