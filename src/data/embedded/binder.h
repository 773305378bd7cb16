#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/sql_functions.h"
#include "data/embedded/store.h"
#include "data/embedded/translation.h"

namespace korvel::data::embedded {

/// An expression with its type, printed in the store's SQL.
struct Bound {
  enum class Form { Expression, Column, Constant, Slot };
  std::string sql;
  ColumnType type = kInt;
  Form form = Form::Expression;
  bool null = false;  // the word NULL, which takes any type
  bool nullable = true;
  OwnedStored constant;  // Form::Constant
  std::size_t slot = 0;  // Form::Slot
};

Bound ConstantOf(OwnedStored value, const ColumnType& type);
Bound NullOf(const ColumnType& type);
Bound ExpressionOf(std::string sql, const ColumnType& type, bool nullable = true);
Bound IntegerConstant(std::int64_t number);

/// A column that names can mean.
struct VisibleColumn {
  std::string name;
  ColumnType type;
  bool nullable = true;
  std::string sql;
};

/// A table of a FROM list under the name by which the query calls it.
struct VisibleSource {
  std::string alias;
  std::vector<VisibleColumn> columns;
};

/// Names in reach of an expression; a subquery sees those of the queries around it too.
struct Scope {
  std::vector<VisibleSource> sources;
  const Scope* outer = nullptr;
};

/// Gives names and types to expressions and prints them. One for each statement.
class Binder {
 public:
  Binder(const Surroundings& around, const ParameterTypes& parameters)
      : around_(around), parameters_(parameters) {}

  const Surroundings& Around() const { return around_; }
  std::vector<Slot>& Slots() { return slots_; }
  bool Once() const { return once_; }
  void MarkOnce() { once_ = true; }
  const ObjectUse& Reads() const { return reads_; }
  void MarkReads(const Object& object) {
    if (reads_.id == 0) reads_ = {object.name, object.id};
  }

  Bound Scalar(const Expr& expr, const Scope& scope);
  /// A WHERE, ON, HAVING or WHEN condition.
  std::string Condition(const Expr& expr, const Scope& scope);
  /// A text operand; numbers and dates are converted.
  Bound TextArgument(const Expr& expr, const Scope& scope);

  /// As `to`, with the server's implicit conversion.
  Bound ConvertTo(Bound value, const ColumnType& to, ConvertMode mode = ConvertMode::Cast, int style = -1);
  /// The value for a column of a table: fits or fails when the statement runs.
  Bound AssignTo(Bound value, const Column& column);
  Bound SlotOf(Slot::Source source, const ColumnType& type);

  /// A query inside the statement, its output columns given to `output`.
  std::string Nested(const Query& query, const Scope* outer, std::vector<VisibleColumn>& output);

  /// Aggregates are allowed while one of these is set; names outside them must be grouped.
  struct Grouping {
    std::vector<std::string> keys;  // printed GROUP BY expressions
    std::string ungrouped;          // first name seen that is none of them
    bool inside = false;            // within an aggregate's argument
    const Scope* scope = nullptr;
  };
  Grouping* grouping = nullptr;

 private:
  Bound ScalarOf(const Expr& expr, const Scope& scope);
  Bound Name(const Expr& expr, const Scope& scope);
  Bound Number(const std::string& text);
  Bound Variable(const Expr& expr);
  Bound Parameter(const Expr& expr);
  Bound Negate(const Expr& expr, const Scope& scope);
  Bound Arithmetic(const Expr& expr, const Scope& scope);
  Bound Case(const Expr& expr, const Scope& scope);
  Bound ScalarQuery(const Expr& expr, const Scope& scope);
  std::string Compare(const Expr& expr, const Scope& scope);
  std::string CompareBound(Bound left, std::string_view sign, Bound right);
  std::string Chain(const std::vector<ExprPtr>& args, std::size_t from, std::size_t to, std::string_view word,
                    const Scope& scope);
  std::string LikeCondition(const Expr& expr, const Scope& scope);
  std::string InCondition(const Expr& expr, const Scope& scope);
  std::string BetweenCondition(const Expr& expr, const Scope& scope);

  const Surroundings& around_;
  const ParameterTypes& parameters_;
  std::vector<Slot> slots_;
  bool once_ = false;
  ObjectUse reads_;
};

/// The type of two operands together, as in a comparison or the branches of a CASE.
ColumnType CommonType(const ColumnType& a, const ColumnType& b);
/// `left` sign `right` for + - * / %, by the types of both.
Bound BindArithmetic(Binder& binder, Bound left, char sign, Bound right);
/// A function of the table of functions. Throws 195 for one that is not there.
Bound BindFunction(Binder& binder, const Expr& call, const Scope& scope);
bool IsAggregate(std::string_view function);
bool HoldsAggregate(const Expr& expr);
/// Text that is no bare column, with the collation beside it.
std::string Collated(const Bound& value);
/// Refuses `text` columns where values are compared (native 306 or 402).
void RequireComparable(const ColumnType& type);

}  // namespace korvel::data::embedded
