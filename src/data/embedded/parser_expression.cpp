#include <algorithm>
#include <array>

#include "data/embedded/errors.h"
#include "data/embedded/parser_base.h"

namespace korvel::data::embedded {
namespace {

/// Deeper nesting is refused: the tree is walked by recursion, and the store has a limit of its own.
constexpr int kDeepest = 150;
/// Longest chain of + - * / signs.
constexpr int kLongestChain = 500;

ExprPtr Make(ExprKind kind, std::string text = {}) {
  auto expr = std::make_unique<Expr>();
  expr->kind = kind;
  expr->text = std::move(text);
  return expr;
}

template <typename... Args>
ExprPtr Node(ExprKind kind, std::string text, Args... args) {
  ExprPtr expr = Make(kind, std::move(text));
  (expr->args.push_back(std::move(args)), ...);
  return expr;
}

ExprPtr Flagged(ExprPtr expr, bool flag) {
  expr->flag = flag;
  return expr;
}

/// A copy of a simple case's operand, one for each comparison.
ExprPtr Copy(const Expr& from) {
  ExprPtr copy = Make(from.kind, from.text);
  copy->names = from.names;
  copy->type = from.type;
  copy->number = from.number;
  copy->flag = from.flag;
  copy->distinct = from.distinct;
  for (const ExprPtr& arg : from.args) copy->args.push_back(Copy(*arg));
  return copy;
}

bool IsCondition(const Expr& expr) {
  return expr.kind >= ExprKind::Compare;
}

bool HoldsQuery(const Expr& expr) {
  return expr.query != nullptr ||
         std::any_of(expr.args.begin(), expr.args.end(), [](const ExprPtr& arg) { return HoldsQuery(*arg); });
}

}  // namespace

/// Counts how deep the text nests and refuses what goes too deep.
class ExpressionParser::Nesting {
 public:
  explicit Nesting(ExpressionParser& parser) : parser_(parser) {
    if (++parser_.depth_ > kDeepest) parser_.Fail();
  }
  ~Nesting() { --parser_.depth_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  ExpressionParser& parser_;
};

ExprPtr ExpressionParser::RequireValue(ExprPtr expr) const {
  if (IsCondition(*expr)) Fail();
  return expr;
}

ExprPtr ExpressionParser::RequireCondition(ExprPtr expr) const {
  if (!IsCondition(*expr)) Fail();
  return expr;
}

ExprPtr ExpressionParser::Value() {
  return RequireValue(Expression());
}
ExprPtr ExpressionParser::Condition() {
  return RequireCondition(Expression());
}

/// Either of both: what stands between brackets may be a condition or a value.
ExprPtr ExpressionParser::Expression() {
  const Nesting nesting(*this);
  ExprPtr first = AndChain();
  if (!IsWord("or")) return first;
  ExprPtr chain = Node(ExprKind::Or, "", RequireCondition(std::move(first)));
  while (TakeWord("or")) chain->args.push_back(RequireCondition(AndChain()));
  return chain;
}

ExprPtr ExpressionParser::AndChain() {
  ExprPtr first = NotLevel();
  if (!IsWord("and")) return first;
  ExprPtr chain = Node(ExprKind::And, "", RequireCondition(std::move(first)));
  while (TakeWord("and")) chain->args.push_back(RequireCondition(NotLevel()));
  return chain;
}

ExprPtr ExpressionParser::NotLevel() {
  const Nesting nesting(*this);
  if (TakeWord("not")) return Node(ExprKind::Not, "", RequireCondition(NotLevel()));
  return Predicate();
}

ExprPtr ExpressionParser::Predicate() {
  if (TakeWord("exists")) {
    ExprPtr exists = Make(ExprKind::Exists);
    ExpectSymbol("(");
    exists->query = ParseQuery();
    ExpectSymbol(")");
    return exists;
  }
  return PredicateOf(Sum());
}

ExprPtr ExpressionParser::PredicateOf(ExprPtr value) {
  for (const std::string_view sign : {"=", "<>", "<=", ">=", "<", ">"}) {
    if (TakeSymbol(sign))
      return Node(ExprKind::Compare, std::string(sign), RequireValue(std::move(value)), RequireValue(Sum()));
  }
  if (TakeWord("is")) {
    const bool negated = TakeWord("not");
    ExpectWord("null");
    return Flagged(Node(ExprKind::IsNull, "", RequireValue(std::move(value))), negated);
  }
  const bool negated = TakeWord("not");
  if (TakeWord("like")) {
    ExprPtr like =
        Flagged(Node(ExprKind::Like, "", RequireValue(std::move(value)), RequireValue(Sum())), negated);
    if (TakeWord("escape")) like->args.push_back(RequireValue(Sum()));
    return like;
  }
  if (TakeWord("between")) {
    ExprPtr low = RequireValue(Sum());
    ExpectWord("and");
    return Flagged(
        Node(ExprKind::Between, "", RequireValue(std::move(value)), std::move(low), RequireValue(Sum())),
        negated);
  }
  if (TakeWord("in")) return InList(std::move(value), negated);
  if (negated) Fail();
  return value;
}

ExprPtr ExpressionParser::InList(ExprPtr value, bool negated) {
  ExprPtr in = Flagged(Node(ExprKind::In, "", RequireValue(std::move(value))), negated);
  ExpectSymbol("(");
  if (IsWord("select")) {
    in->query = ParseQuery();
  } else {
    do {
      in->args.push_back(RequireValue(Sum()));
    } while (TakeSymbol(","));
  }
  ExpectSymbol(")");
  return in;
}

ExprPtr ExpressionParser::Sum() {
  ExprPtr left = Product();
  int chain = 0;
  while (IsSymbol("+") || IsSymbol("-")) {
    if (++chain > kLongestChain) Fail();
    const std::string sign = Next().text;
    left = Node(ExprKind::Arithmetic, sign, RequireValue(std::move(left)), RequireValue(Product()));
  }
  return left;
}

ExprPtr ExpressionParser::Product() {
  ExprPtr left = Unary();
  int chain = 0;
  while (IsSymbol("*") || IsSymbol("/") || IsSymbol("%")) {
    if (++chain > kLongestChain) Fail();
    const std::string sign = Next().text;
    left = Node(ExprKind::Arithmetic, sign, RequireValue(std::move(left)), RequireValue(Unary()));
  }
  return left;
}

ExprPtr ExpressionParser::Unary() {
  const Nesting nesting(*this);
  if (TakeSymbol("+")) return RequireValue(Unary());
  if (!TakeSymbol("-")) return Primary();
  ExprPtr operand = RequireValue(Unary());
  const bool plain = operand->kind == ExprKind::Number && operand->text.front() != '-';
  if (!plain) return Node(ExprKind::Negate, "", std::move(operand));
  operand->text.insert(0, 1, '-');
  return operand;
}

ExprPtr ExpressionParser::Primary() {
  switch (Peek().kind) {
    case TokenKind::Number:
      return Make(ExprKind::Number, Next().text);
    case TokenKind::String:
      return Make(ExprKind::String, Next().text);
    case TokenKind::Variable:
      return Variable();
    case TokenKind::Quoted:
      return ColumnName();
    case TokenKind::Word:
      return WordPrimary();
    case TokenKind::Parameter: {
      Next();
      ExprPtr mark = Make(ExprKind::Parameter);
      mark->number = parameters_++;
      return mark;
    }
    default:
      break;
  }
  if (TakeSymbol("*")) return Make(ExprKind::Star);
  return Bracketed();
}

ExprPtr ExpressionParser::Variable() {
  ExprPtr variable = Make(ExprKind::Variable, LowerName(Peek().text));
  if (variable->text.starts_with("@@")) {
    Next();
    return variable;
  }
  variable->number = ExpectVariable();
  variable->type = variables_[static_cast<std::size_t>(variable->number)].type;
  return variable;
}

int ExpressionParser::ExpectVariable() {
  if (Peek().kind != TokenKind::Variable) Fail();
  const std::string name = LowerName(Next().text);
  for (std::size_t i = 0; i < variables_.size(); ++i) {
    if (variables_[i].name == name) return static_cast<int>(i);
  }
  throw Failed(Code::NoVariable, "A variável '" + name + "' tem de ser declarada");
}

int ExpressionParser::DeclareVariable(std::string name, const ColumnType& type) {
  for (const VariableDefinition& other : variables_) {
    if (other.name == name) throw Failed(Code::VariableTwice, "A variável '" + name + "' já foi declarada");
  }
  variables_.push_back({std::move(name), type});
  return static_cast<int>(variables_.size()) - 1;
}

ExprPtr ExpressionParser::Bracketed() {
  ExpectSymbol("(");
  ExprPtr inner;
  if (IsWord("select")) {
    inner = Make(ExprKind::Subquery);
    inner->query = ParseQuery();
  } else {
    inner = Expression();
  }
  ExpectSymbol(")");
  return inner;
}

ExprPtr ExpressionParser::WordPrimary() {
  if (TakeWord("null")) return Make(ExprKind::Null);
  if (TakeWord("case")) return Case();
  if (TakeWord("convert")) return ConvertCall();
  const bool call = IsSymbol("(", 1);
  if (call && IsWord("cast")) return CastCall();
  static constexpr std::array<std::string_view, 5> kReservedFunctions = {"left", "right", "coalesce",
                                                                         "nullif", "user"};
  const bool reservedFunction = std::any_of(kReservedFunctions.begin(), kReservedFunctions.end(),
                                            [this](std::string_view word) { return IsWord(word); });
  if (call && (reservedFunction || IsName())) return FunctionCall();
  return ColumnName();
}

ExprPtr ExpressionParser::FunctionCall() {
  ExprPtr call = Make(ExprKind::Call, LowerName(Next().text));
  ExpectSymbol("(");
  if (TakeSymbol(")")) return call;
  call->distinct = TakeWord("distinct");
  if (!call->distinct) TakeWord("all");
  do {
    call->args.push_back(Value());
  } while (TakeSymbol(","));
  ExpectSymbol(")");
  return call;
}

ExprPtr ExpressionParser::Case() {
  ExprPtr result = Make(ExprKind::Case);
  ExprPtr operand = IsWord("when") ? nullptr : Value();
  if (operand && HoldsQuery(*operand)) Fail();
  while (TakeWord("when")) {
    ExprPtr when = operand ? Node(ExprKind::Compare, "=", Copy(*operand), Value()) : Condition();
    result->args.push_back(std::move(when));
    ExpectWord("then");
    result->args.push_back(Value());
  }
  if (result->args.empty()) Fail();
  result->flag = TakeWord("else");
  if (result->flag) result->args.push_back(Value());
  ExpectWord("end");
  return result;
}

ExprPtr ExpressionParser::ConvertCall() {
  ExprPtr convert = Make(ExprKind::Convert);
  ExpectSymbol("(");
  convert->type = ExpectType(kDefaultVarchar);
  ExpectSymbol(",");
  convert->args.push_back(Value());
  if (TakeSymbol(",")) {
    const std::int64_t style = ExpectInteger();
    if (style < 0 || style > 131) Fail();
    convert->number = static_cast<int>(style);
  }
  ExpectSymbol(")");
  return convert;
}

ExprPtr ExpressionParser::CastCall() {
  Next();
  ExpectSymbol("(");
  ExprPtr convert = Node(ExprKind::Convert, "", Value());
  ExpectWord("as");
  convert->type = ExpectType(kDefaultVarchar);
  ExpectSymbol(")");
  return convert;
}

ExprPtr ExpressionParser::ColumnName() {
  ExprPtr name = Make(ExprKind::Name);
  name->names.push_back(ExpectName());
  while (TakeSymbol(".")) {
    if (TakeSymbol("*")) {
      name->kind = ExprKind::Star;
      return name;
    }
    if (name->names.size() == 4) Fail();
    name->names.push_back(IsSymbol(".") ? std::string() : ExpectName());
  }
  return name;
}

}  // namespace korvel::data::embedded
