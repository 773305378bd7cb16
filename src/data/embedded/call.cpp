#include "data/embedded/call.h"

#include <utility>

#include <fmt/format.h>

#include "data/embedded/execution.h"

namespace korvel::data::embedded {
namespace {

/// A text that only goes in is of any length; one that comes back has the longest varchar.
ColumnType TypeOf(const ProcedureArgument& argument) {
  const Parameter value(argument.value);
  if (std::holds_alternative<std::string_view>(value) && !argument.output) return {Type::Text};
  return ParameterType(value).value_or(Varchar(kMaxVarchar));
}

/// "exec @result = procedure @1, @2 output, ..." with a variable for each argument.
class CallProgram {
 public:
  CallProgram(std::string_view procedure, std::span<const ProcedureArgument> arguments) {
    call_.procedure = ParseObjectName(procedure);
    for (const ProcedureArgument& argument : arguments) Add(argument);
    call_.result = static_cast<int>(variables_.size());
    variables_.push_back({kInt, std::int64_t{0}});
  }

  std::vector<Variable> Run(const std::shared_ptr<Session>& session) {
    auto program = std::make_shared<Batch>();
    program->statements.emplace_back(std::move(call_));
    Execution execution(session, std::move(program), std::move(variables_));
    while (execution.NextStatement()) {
    }
    return execution.Variables();
  }

 private:
  void Add(const ProcedureArgument& argument) {
    auto variable = std::make_unique<Expr>();
    variable->kind = ExprKind::Variable;
    variable->number = static_cast<int>(variables_.size());
    variable->type = TypeOf(argument);
    const Parameter value(argument.value);
    variables_.push_back({variable->type, Own(FromParameter(value))});
    call_.arguments.push_back({"", std::move(variable), argument.output});
  }

  Call call_;
  std::vector<Variable> variables_;
};

}  // namespace

std::int64_t CallProcedure(const std::shared_ptr<Session>& session, std::string_view procedure,
                           std::span<ProcedureArgument> arguments) {
  const std::vector<Variable> after = CallProgram(procedure, arguments).Run(session);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i].output) arguments[i].value = ToValue(View(after[i].value), after[i].type);
  }
  return std::get<std::int64_t>(after.back().value);
}

}  // namespace korvel::data::embedded
