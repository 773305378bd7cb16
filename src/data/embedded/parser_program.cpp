#include <utility>

#include "data/embedded/batch_parser.h"
#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

/// Blocks and branches inside each other; deeper texts are refused.
constexpr int kDeepestBlock = 100;

}  // namespace

template <typename Step>
std::size_t BatchParser::Add(Step step) {
  batch_.statements.emplace_back(std::move(step));
  return batch_.statements.size() - 1;
}

void BatchParser::LandHere(std::size_t step) {
  const std::size_t here = batch_.statements.size();
  if (auto* branch = std::get_if<Branch>(&batch_.statements[step])) branch->otherwise = here;
  if (auto* jump = std::get_if<Jump>(&batch_.statements[step])) jump->to = here;
}

Batch BatchParser::Run() {
  while (TakeSymbol(";")) {
  }
  if (StartsProcedure()) {
    CreateProcedure create = ParseCreateProcedure();
    // Its statements belong to the procedure, and run when it is called.
    batch_ = {};
    Add(std::move(create));
    return std::move(batch_);
  }
  // A procedure's name alone is a call at the head of a batch only.
  if (IsName()) Add(ParseCall());
  Statements();
  return TakeBatch();
}

Batch BatchParser::TakeBatch() {
  batch_.parameters = Parameters();
  batch_.variables = TakeVariables();
  return std::move(batch_);
}

void BatchParser::Statements() {
  while (!AtEnd()) {
    if (!TakeSymbol(";")) ParseStatement();
  }
}

void BatchParser::ParseStatement() {
  if (IsWord("select")) return ParseSelect();
  if (TakeWord("if")) return If();
  if (TakeWord("while")) return While();
  if (IsWord("begin") && !IsWord("tran", 1) && !IsWord("transaction", 1)) return Block();
  if (TakeWord("break")) return LeaveLoop(true);
  if (TakeWord("continue")) return LeaveLoop(false);
  if (TakeWord("declare")) return Declare();
  if (TakeWord("return")) return ParseReturn();
  if (inProcedure_ && IsWord("use")) {
    throw Failed(Code::UseInProcedure, "A instrução USE não é permitida num procedimento");
  }
  if (TakeWord("print")) {
    Add(PrintText{Value()});
  } else if (IsWord("set") && Peek(1).kind == TokenKind::Variable) {
    Next();
    const int variable = ExpectVariable();
    ExpectSymbol("=");
    Add(SetVariable{variable, Value()});
  } else {
    Add(OneStatement());
  }
}

void BatchParser::InnerStatement() {
  if (++blocks_ > kDeepestBlock) Fail();
  ParseStatement();
  --blocks_;
}

void BatchParser::Block() {
  Next();
  do {
    InnerStatement();
    while (TakeSymbol(";")) {
    }
  } while (!TakeWord("end"));
}

void BatchParser::If() {
  const std::size_t branch = Add(Branch{Condition()});
  InnerStatement();
  while (TakeSymbol(";")) {
  }
  if (!TakeWord("else")) return LandHere(branch);
  const std::size_t over = Add(Jump{});
  LandHere(branch);
  InnerStatement();
  LandHere(over);
}

void BatchParser::While() {
  loops_.push_back({batch_.statements.size(), {}});
  loops_.back().leaves.push_back(Add(Branch{Condition()}));
  InnerStatement();
  Add(Jump{loops_.back().start});
  for (const std::size_t leave : loops_.back().leaves) LandHere(leave);
  loops_.pop_back();
}

void BatchParser::LeaveLoop(bool forGood) {
  if (loops_.empty()) {
    throw Failed(Code::BreakOutsideLoop, "BREAK e CONTINUE só podem estar dentro de uma instrução WHILE");
  }
  const std::size_t jump = Add(Jump{loops_.back().start});
  if (forGood) loops_.back().leaves.push_back(jump);
}

void BatchParser::Declare() {
  do {
    if (Peek().kind != TokenKind::Variable) Fail();
    std::string name = LowerName(Next().text);
    TakeWord("as");
    const ColumnType type = ExpectType();
    if (type.base == Type::Text) {
      throw Failed(Code::VariableOfText, "O tipo text não é válido para a variável '" + name + "'");
    }
    const int variable = DeclareVariable(std::move(name), type);
    if (TakeSymbol("=")) Add(SetVariable{variable, Value()});
  } while (TakeSymbol(","));
}

void BatchParser::ParseSelect() {
  bool assigns = false;
  QueryPtr query = ParseQuery(assigns);
  if (assigns) {
    Add(AssignQuery{std::move(query)});
  } else {
    Add(std::move(query));
  }
}

void BatchParser::ParseReturn() {
  Return leave;
  if (StartsValue()) leave.value = Value();
  if (leave.value && !inProcedure_) {
    throw Failed(Code::ReturnOfValue, "RETURN só pode dar um valor num procedimento");
  }
  Add(std::move(leave));
}

/// Whether what follows can only be an expression, and not the next statement.
bool BatchParser::StartsValue() const {
  switch (Peek().kind) {
    case TokenKind::Number:
    case TokenKind::String:
    case TokenKind::Variable:
    case TokenKind::Parameter:
      return true;
    case TokenKind::Symbol:
      return IsSymbol("(") || IsSymbol("-") || IsSymbol("+");
    case TokenKind::Word:
      return IsWord("null") || IsWord("case") || IsSymbol("(", 1);
    default:
      return false;
  }
}

bool BatchParser::StartsProcedure() const {
  return (IsWord("create") || IsWord("alter")) && (IsWord("procedure", 1) || IsWord("proc", 1));
}

CreateProcedure BatchParser::ParseCreateProcedure() {
  CreateProcedure create;
  const Token verb = Peek();
  create.alters = IsWord("alter");
  create.text = std::string(Text().substr(0, verb.start)) + (create.alters ? "CREATE" : verb.text) +
                std::string(Text().substr(verb.end));
  std::vector<ProcedureParameter> parameters;
  create.procedure = ProcedureHead(parameters);
  Statements();
  if (batch_.statements.empty() || Parameters() != 0) Fail();
  return create;
}

StoredProcedure BatchParser::RunProcedure() {
  StoredProcedure procedure;
  while (TakeSymbol(";")) {
  }
  if (!StartsProcedure()) Fail();
  ProcedureHead(procedure.parameters);
  Statements();
  procedure.body = TakeBatch();
  return procedure;
}

/// Up to the AS before its statements.
ObjectName BatchParser::ProcedureHead(std::vector<ProcedureParameter>& parameters) {
  Next();
  Next();
  ObjectName name = ExpectObjectName();
  const bool bracketed = TakeSymbol("(");
  if (bracketed || Peek().kind == TokenKind::Variable) {
    do {
      parameters.push_back(Parameter());
    } while (TakeSymbol(","));
  }
  if (bracketed) ExpectSymbol(")");
  if (TakeWord("with")) ProcedureOptions();
  ExpectWord("as");
  inProcedure_ = true;
  return name;
}

ProcedureParameter BatchParser::Parameter() {
  ProcedureParameter parameter;
  if (Peek().kind != TokenKind::Variable) Fail();
  std::string name = LowerName(Next().text);
  TakeWord("as");
  DeclareVariable(std::move(name), ExpectType());
  if (TakeSymbol("=")) parameter.defaultValue = ArgumentValue();
  if (parameter.defaultValue && parameter.defaultValue->kind == ExprKind::Variable) Fail();
  parameter.output = TakeWord("output") || TakeWord("out");
  return parameter;
}

/// A procedure is read from its text whenever the schema has changed, and its text is anybody's who may read the file.
void BatchParser::ProcedureOptions() {
  do {
    if (!TakeWord("recompile") && !TakeWord("encryption")) Fail();
  } while (TakeSymbol(","));
}

Call BatchParser::ParseCall() {
  Call call;
  if (Peek().kind == TokenKind::Variable) {
    call.result = ExpectVariable();
    ExpectSymbol("=");
  }
  call.procedure = ExpectObjectName();
  const bool ends = AtEnd() || IsSymbol(";");
  const bool constant = IsWord("null") || IsWord("default");
  if (ends || (Peek().kind == TokenKind::Word && IsReserved(Peek().text) && !constant)) return call;
  bool named = false;
  do {
    call.arguments.push_back(CallArgument());
    const bool hasName = !call.arguments.back().name.empty();
    if (named && !hasName) {
      throw Failed(Code::PositionAfterName, "Depois de um argumento com nome, todos têm de o ter");
    }
    named = hasName;
  } while (TakeSymbol(","));
  return call;
}

Argument BatchParser::CallArgument() {
  Argument argument;
  if (Peek().kind == TokenKind::Variable && IsSymbol("=", 1)) {
    argument.name = LowerName(Next().text);
    ExpectSymbol("=");
  }
  if (TakeWord("default")) return argument;
  argument.value = ArgumentValue();
  argument.output = TakeWord("output") || TakeWord("out");
  if (argument.output && (argument.value->kind != ExprKind::Variable || argument.value->number < 0)) {
    throw Failed(Code::OutputOfConstant, "A opção OUTPUT só serve para uma variável");
  }
  return argument;
}

/// A constant, a variable or a marker; a bare word stands for its own text.
ExprPtr BatchParser::ArgumentValue() {
  const TokenKind kind = Peek().kind;
  const bool constant = kind == TokenKind::Number || kind == TokenKind::String ||
                        kind == TokenKind::Parameter || kind == TokenKind::Variable || IsSymbol("-") ||
                        IsWord("null");
  if (constant) {
    ExprPtr value = Value();
    if (!value->args.empty()) Fail();
    return value;
  }
  auto word = std::make_unique<Expr>();
  word->kind = ExprKind::String;
  if (!IsName()) Fail();
  word->text = Next().text;
  return word;
}

}  // namespace korvel::data::embedded
