#include <type_traits>
#include <utility>

#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/execution.h"
#include "data/embedded/procedures.h"

namespace korvel::data::embedded {
namespace {

constexpr std::size_t kDeepestCall = 32;

std::size_t PlaceOf(const Argument& argument, std::size_t position, const Call& call,
                    const StoredProcedure& procedure) {
  const std::size_t count = procedure.parameters.size();
  const std::string& name = call.procedure.name;
  if (count == 0)
    throw Failed(Code::NoParameters, fmt::format("O procedimento '{}' não tem parâmetros", name));
  if (argument.name.empty()) {
    if (position < count) return position;
    throw Failed(Code::TooManyArguments, fmt::format("O procedimento '{}' tem argumentos a mais", name));
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (procedure.body.variables[i].name == argument.name) return i;
  }
  throw Failed(Code::NoParameter,
               fmt::format("{} não é um parâmetro do procedimento '{}'", argument.name, name));
}

}  // namespace

SlotValues Execution::Inputs() {
  return {session_->Values(), frames_.size() == 1 ? parameters_.View() : Parameters(), Top().variables};
}

bool Execution::Steer(const Statement& statement) {
  return std::visit(
      [this](const auto& step) {
        if constexpr (requires { Do(step); }) {
          Do(step);
          return true;
        } else if constexpr (std::is_same_v<std::decay_t<decltype(step)>, Call>) {
          return Enter(step);
        } else {
          return false;
        }
      },
      statement);
}

void Execution::Do(const SetVariable& set) {
  Assign(Top().variables[static_cast<std::size_t>(set.variable)], Evaluate(*set.value));
  session_->Values().rowCount = 1;
}

void Execution::Do(const Branch& branch) {
  if (!Holds(*branch.condition)) JumpTo(branch.otherwise);
  session_->Values().rowCount = 0;
}

void Execution::Do(const Jump& jump) {
  JumpTo(jump.to);
}

void Execution::Do(const Return& leave) {
  Leave(leave.value ? Evaluate(*leave.value) : Variable{kInt, std::int64_t{0}});
}

void Execution::Do(const PrintText& print) {
  Evaluate(*print.text);
}

/// Loops end here when the time of the call is over: their statements may be too short to be caught alone.
void Execution::JumpTo(std::size_t statement) {
  const int seconds = session_->Host().TimeoutSeconds();
  const bool back = statement < Top().next;
  if (back && seconds > 0 && std::chrono::steady_clock::now() - started_ > std::chrono::seconds(seconds)) {
    throw OutOfTime();
  }
  Top().next = statement;
}

Variable Execution::Evaluate(const Expr& expr) {
  return ReadValue(TranslateValue(expr, session_->Around(), parameters_.Types()));
}

bool Execution::Holds(const Expr& condition) {
  const Variable value = ReadValue(TranslateCondition(condition, session_->Around(), parameters_.Types()));
  const auto* number = std::get_if<std::int64_t>(&value.value);
  return number != nullptr && *number != 0;
}

Variable Execution::ReadValue(Translation translation) {
  const ColumnType type = translation.types[0];
  OpenRows(session_->Prepare(std::move(translation), ""));
  Variable value{type, Null{}};
  if (Step()) value.value = Own(ReadColumn(rows_->statement.Raw(), 0, type));
  Reset();
  return value;
}

/// A text too long for the variable is cut, as the server does.
void Execution::Assign(Variable& to, const Variable& from) const {
  std::string scratch;
  to.value = Own(Convert(View(from.value), from.type, to.type, ConvertMode::Cast, -1, scratch));
}

/// The last row's values; without rows the variables stay as they are.
void Execution::Do(const AssignQuery& assign) {
  OpenRows(session_->Prepare(TranslateQuery(*assign.query, session_->Around(), parameters_.Types()), ""));
  const std::vector<ColumnType> types = rows_->translation.types;
  std::vector<Variable> row;
  while (Step()) {
    row.clear();
    for (const ColumnType& type : types) {
      const int column = static_cast<int>(row.size());
      row.push_back({type, Own(ReadColumn(rows_->statement.Raw(), column, type))});
    }
  }
  session_->Values().rowCount = count_;
  Reset();
  const auto& items = assign.query->selects[0].items;
  for (std::size_t i = 0; i < row.size(); ++i) {
    Assign(Top().variables[static_cast<std::size_t>(items[i].variable)], row[i]);
  }
}

bool Execution::Enter(const Call& call) {
  const Surroundings around = session_->Around();
  if (IsServerProcedure(call.procedure.name) || FindProcedure(call.procedure, around) == nullptr)
    return false;
  // The right to a procedure stands for the rights that its statements need.
  if (frames_.size() == 1) session_->Require(Right::Execute, call.procedure.name);
  if (frames_.size() > kDeepestCall) {
    throw Failed(Code::NestedTooDeep,
                 fmt::format("Os procedimentos chamam-se uns aos outros mais de {} vezes", kDeepestCall));
  }
  // Inside a procedure its own right stands for those that it calls.
  if (frames_.size() == 1) session_->Require(Right::Execute, call.procedure.name);
  const auto procedure = session_->Current()->FindProcedure(call.procedure.name);
  Frame callee;
  callee.program = std::shared_ptr<const Batch>(procedure, &procedure->body);
  callee.result = call.result;
  for (const VariableDefinition& variable : procedure->body.variables) {
    callee.variables.push_back({variable.type, Null{}});
  }
  PassArguments(call, *procedure, callee);
  frames_.push_back(std::move(callee));
  return true;
}

void Execution::PassArguments(const Call& call, const StoredProcedure& procedure, Frame& callee) {
  std::vector<bool> given(procedure.parameters.size());
  std::size_t position = 0;
  for (const Argument& argument : call.arguments) {
    const std::size_t place = PlaceOf(argument, position++, call, procedure);
    if (given[place]) {
      throw Failed(Code::ArgumentTwice, fmt::format("O parâmetro {} do procedimento '{}' foi dado duas vezes",
                                                    argument.name, call.procedure.name));
    }
    given[place] = argument.value != nullptr;
    if (argument.value) PassOne(argument, place, procedure, callee);
  }
  PassDefaults(call, procedure, given, callee);
}

void Execution::PassOne(const Argument& argument, std::size_t place, const StoredProcedure& procedure,
                        Frame& callee) {
  const std::string& name = procedure.body.variables[place].name;
  if (argument.output) {
    if (!procedure.parameters[place].output) {
      throw Failed(Code::NotOutput, fmt::format("O parâmetro {} não é de saída", name));
    }
    callee.outputs.push_back({place, argument.value->number});
  }
  try {
    Assign(callee.variables[place], Evaluate(*argument.value));
  } catch (const Error& failure) {
    if (failure.Kind() != Failure::Conversion) throw;
    throw Failed(Code::NumericConversion, fmt::format("O valor do parâmetro {} não é do tipo {}", name,
                                                      TypeName(callee.variables[place].type.base)));
  }
}

void Execution::PassDefaults(const Call& call, const StoredProcedure& procedure,
                             const std::vector<bool>& given, Frame& callee) {
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (given[i]) continue;
    const Expr* value = procedure.parameters[i].defaultValue.get();
    if (value == nullptr) {
      throw Failed(Code::ProcedureArguments,
                   fmt::format("O procedimento '{}' espera o parâmetro '{}', que não foi dado",
                               call.procedure.name, procedure.body.variables[i].name));
    }
    Assign(callee.variables[i], Evaluate(*value));
  }
}

void Execution::Leave(const Variable& result) {
  if (frames_.size() == 1) {
    Top().next = Top().program->statements.size();
    return;
  }
  const Frame done = std::move(frames_.back());
  frames_.pop_back();
  auto& variables = Top().variables;
  for (const Frame::Output& output : done.outputs) {
    Assign(variables[static_cast<std::size_t>(output.to)], done.variables[output.from]);
  }
  if (done.result < 0) return;
  // A result of NULL is 0.
  const bool none = std::holds_alternative<Null>(result.value);
  Assign(variables[static_cast<std::size_t>(done.result)], none ? Variable{kInt, std::int64_t{0}} : result);
}

}  // namespace korvel::data::embedded
