#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/embedded/lexer.h"
#include "data/embedded/tree.h"

namespace korvel::data::embedded {

/// Steps over the tokens of a batch. "Take" goes on when what it looks for is there and says whether it was;
/// "Expect" throws the syntax error when it is not.
class TokenReader {
 public:
  explicit TokenReader(std::string_view text) : text_(text), tokens_(Tokenize(text)) {}

  const Token& Peek(std::size_t ahead = 0) const;
  const Token& Next();
  bool AtEnd() const { return Peek().kind == TokenKind::End; }

  bool IsWord(std::string_view word, std::size_t ahead = 0) const;
  bool IsSymbol(std::string_view symbol, std::size_t ahead = 0) const;
  bool TakeWord(std::string_view word);
  /// All of the words in a row, or none.
  bool TakeWords(std::initializer_list<std::string_view> words);
  bool TakeSymbol(std::string_view symbol);
  void ExpectWord(std::string_view word);
  void ExpectSymbol(std::string_view symbol);

  /// A word that is not reserved, or a name between brackets or double quotes.
  bool IsName(std::size_t ahead = 0) const;
  std::string ExpectName();
  ObjectName ExpectObjectName();
  std::vector<std::string> ExpectNameList();
  std::int64_t ExpectInteger();
  /// `defaultLength` is the length of a varchar that names none.
  ColumnType ExpectType(int defaultLength = 1);

  [[noreturn]] void Fail() const;

  std::size_t Offset() const { return Peek().start; }
  /// The text from an offset up to the end of the last token taken.
  std::string TextFrom(std::size_t offset) const;
  std::string_view Text() const { return text_; }

 private:
  std::string_view text_;
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
};

/// Expressions and queries; statements build on it.
class ExpressionParser : public TokenReader {
 public:
  using TokenReader::TokenReader;

  /// A value; a condition is refused.
  ExprPtr Value();
  /// A query that brings rows.
  QueryPtr ParseQuery();
  int Parameters() const { return parameters_; }

 protected:
  /// A query whose items may all go to variables instead, which `assigns` tells.
  QueryPtr ParseQuery(bool& assigns);
  /// A condition; a value is refused.
  ExprPtr Condition();
  void SkipTableHints();
  /// Throws 134 for a name that is there already.
  int DeclareVariable(std::string name, const ColumnType& type);
  /// Takes a variable's name. Throws 137 when it was not declared.
  int ExpectVariable();
  std::vector<VariableDefinition> TakeVariables() { return std::move(variables_); }

 private:
  class Nesting;

  ExprPtr Expression();
  ExprPtr RequireValue(ExprPtr expr) const;
  ExprPtr RequireCondition(ExprPtr expr) const;
  ExprPtr AndChain();
  ExprPtr NotLevel();
  ExprPtr Predicate();
  ExprPtr PredicateOf(ExprPtr value);
  ExprPtr InList(ExprPtr value, bool negated);
  ExprPtr Sum();
  ExprPtr Product();
  ExprPtr Unary();
  ExprPtr Primary();
  ExprPtr WordPrimary();
  ExprPtr Bracketed();
  ExprPtr Case();
  ExprPtr ConvertCall();
  ExprPtr CastCall();
  ExprPtr FunctionCall();
  ExprPtr ColumnName();
  ExprPtr Variable();
  std::string ExpectAlias();

  Select SelectBody();
  SelectItem Item();
  std::vector<std::unique_ptr<Source>> FromList();
  std::unique_ptr<Source> JoinedSource();
  std::unique_ptr<Source> OneSource();
  std::optional<JoinKind> TakeJoin();
  std::vector<OrderItem> OrderList();

  int depth_ = 0;
  int parameters_ = 0;
  std::vector<VariableDefinition> variables_;
};

}  // namespace korvel::data::embedded
