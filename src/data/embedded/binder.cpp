#include "data/embedded/binder.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

std::string Print(const OwnedStored& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return QuoteText(*text);
  if (const auto* number = std::get_if<double>(&value)) return fmt::format("{:.17e}", *number);
  // The lowest integer has no literal of its own in the store.
  if (const auto* units = std::get_if<std::int64_t>(&value)) {
    return *units == INT64_MIN ? "(-9223372036854775807-1)" : std::to_string(*units);
  }
  return "NULL";
}

/// Whether every value of one type is one of the other, without any change of its stored form.
bool Contains(const ColumnType& to, const ColumnType& from) {
  if (IsText(to) && IsText(from))
    return to.base == Type::Text || (from.base != Type::Text && from.length <= to.length);
  if (to.base == from.base && to.base != Type::Numeric) return true;
  if (to.base == Type::DateTime && from.base == Type::SmallDateTime) return true;
  if (!IsExact(to) || !IsExact(from) || ScaleOf(to) != ScaleOf(from) || to.base == Type::Bit) return false;
  const Bounds outer = BoundsOf(to);
  const Bounds inner = BoundsOf(from);
  return outer.low <= inner.low && inner.high <= outer.high;
}

/// An exact value multiplied up to more decimals, for comparisons.
Bound Upscaled(Binder& binder, Bound value, int scale) {
  const int raise = scale - ScaleOf(value.type);
  if (raise == 0 || value.null) return value;
  const ColumnType wide = Numeric(kMaxStoredDigits + 1, scale);
  if (value.form == Bound::Form::Constant || value.form == Bound::Form::Slot) {
    return binder.ConvertTo(std::move(value), wide);
  }
  return ExpressionOf(fmt::format("({}*{})", value.sql, PowerOfTen(raise)), wide, value.nullable);
}

struct Variables {
  std::string_view name;
  Slot::Source source;
  ColumnType type;
};
constexpr Variables kVariables[] = {
    {"@@rowcount", Slot::Source::RowCount, kInt},
    {"@@identity", Slot::Source::Identity, Numeric(38, 0)},
    {"@@trancount", Slot::Source::TransactionCount, kInt},
    {"@@error", Slot::Source::LastError, kInt},
};

bool IsQualified(const Expr& name) {
  return name.names.size() > 1;
}

}  // namespace

Bound ConstantOf(OwnedStored value, const ColumnType& type) {
  Bound bound;
  bound.sql = Print(value);
  bound.type = type;
  bound.form = Bound::Form::Constant;
  bound.nullable = false;
  bound.constant = std::move(value);
  return bound;
}

Bound NullOf(const ColumnType& type) {
  Bound bound;
  bound.sql = "NULL";
  bound.type = type;
  bound.null = true;
  return bound;
}

Bound ExpressionOf(std::string sql, const ColumnType& type, bool nullable) {
  Bound bound;
  bound.sql = std::move(sql);
  bound.type = type;
  bound.nullable = nullable;
  return bound;
}

Bound IntegerConstant(std::int64_t number) {
  return ConstantOf(number, kInt);
}

ColumnType CommonType(const ColumnType& a, const ColumnType& b) {
  if (IsText(a) && IsText(b)) {
    if (a.base == Type::Text || b.base == Type::Text) return {Type::Text};
    return Varchar(std::max(a.length, b.length));
  }
  if (IsExact(a) && IsExact(b) && (a.base == Type::Numeric || b.base == Type::Numeric)) {
    const int scale = std::max(ScaleOf(a), ScaleOf(b));
    const int whole = std::max(PrecisionOf(a) - ScaleOf(a), PrecisionOf(b) - ScaleOf(b));
    return Numeric(std::min(whole + scale, 38), scale);
  }
  return Precedence(a.base) >= Precedence(b.base) ? a : b;
}

std::string Collated(const Bound& value) {
  const bool own = value.form == Bound::Form::Column || !IsText(value.type) || value.null;
  return own ? value.sql : fmt::format("({}) COLLATE {}", value.sql, kCollation);
}

void RequireComparable(const ColumnType& type) {
  if (type.base != Type::Text) return;
  throw Failed(Code::TextNotComparable,
               "O tipo text não pode ser comparado nem ordenado, excepto com IS NULL ou LIKE");
}

Bound Binder::SlotOf(Slot::Source source, const ColumnType& type) {
  Slot slot;
  slot.source = source;
  slot.type = type;
  slots_.push_back(std::move(slot));
  Bound bound;
  bound.sql = fmt::format("?{}", slots_.size());
  bound.type = type;
  bound.form = Bound::Form::Slot;
  bound.slot = slots_.size() - 1;
  return bound;
}

Bound Binder::Scalar(const Expr& expr, const Scope& scope) {
  if (grouping == nullptr) return ScalarOf(expr, scope);
  std::string before = grouping->ungrouped;
  Bound bound = ScalarOf(expr, scope);
  const auto& keys = grouping->keys;
  if (std::find(keys.begin(), keys.end(), bound.sql) != keys.end()) grouping->ungrouped = std::move(before);
  return bound;
}

Bound Binder::ScalarOf(const Expr& expr, const Scope& scope) {
  switch (expr.kind) {
    case ExprKind::Number:
      return Number(expr.text);
    case ExprKind::String:
      return ConstantOf(expr.text,
                        Varchar(std::clamp(static_cast<int>(CountCharacters(expr.text)), 1, kMaxVarchar)));
    case ExprKind::Null:
      return NullOf(kInt);
    case ExprKind::Parameter:
      return Parameter(expr);
    case ExprKind::Name:
      return Name(expr, scope);
    case ExprKind::Variable:
      return Variable(expr);
    case ExprKind::Negate:
      return Negate(expr, scope);
    case ExprKind::Arithmetic:
      return Arithmetic(expr, scope);
    case ExprKind::Call:
      return BindFunction(*this, expr, scope);
    case ExprKind::Case:
      return Case(expr, scope);
    case ExprKind::Convert: {
      Bound value = Scalar(*expr.args[0], scope);
      // A NULL that was given a type keeps it.
      if (value.null) return ExpressionOf("NULL", expr.type);
      return ConvertTo(std::move(value), expr.type, ConvertMode::Cast, expr.number);
    }
    case ExprKind::Subquery:
      return ScalarQuery(expr, scope);
    default:
      throw SyntaxError(expr.kind == ExprKind::Star ? "*" : "condição", "uma condição não é um valor");
  }
}

Bound Binder::Name(const Expr& expr, const Scope& scope) {
  const std::string& column = expr.names.back();
  const std::string table = IsQualified(expr) ? expr.names[expr.names.size() - 2] : std::string();
  for (const Scope* level = &scope; level != nullptr; level = level->outer) {
    const VisibleColumn* found = nullptr;
    for (const VisibleSource& source : level->sources) {
      if (!table.empty() && !SameName(source.alias, table)) continue;
      for (const VisibleColumn& candidate : source.columns) {
        if (!SameName(candidate.name, column)) continue;
        if (found != nullptr) throw Failed(Code::AmbiguousColumn, "Nome de coluna ambíguo: '" + column + "'");
        found = &candidate;
      }
    }
    if (found == nullptr) continue;
    Bound bound = ExpressionOf(found->sql, found->type, found->nullable);
    bound.form = Bound::Form::Column;
    const bool counts = grouping != nullptr && !grouping->inside && grouping->scope == level;
    if (counts && grouping->ungrouped.empty()) grouping->ungrouped = column;
    return bound;
  }
  throw Failed(Code::NoColumn, "Nome de coluna inválido: '" + column + "'");
}

Bound Binder::Number(const std::string& text) {
  if (text.find_first_of("eE") != std::string::npos) return ConstantOf(std::stod(text), kFloat);
  const std::size_t point = text.find('.');
  const std::size_t sign = text.front() == '-' ? 1 : 0;
  const int scale = point == std::string::npos ? 0 : static_cast<int>(text.size() - point - 1);
  const int digits = static_cast<int>(text.size() - sign) - (point == std::string::npos ? 0 : 1);
  std::string scratch;
  if (point == std::string::npos && digits <= kMaxStoredDigits) {
    const Stored units =
        Convert(std::string_view(text), Varchar(digits), kBigInt, ConvertMode::Cast, -1, scratch);
    const std::int64_t number = std::get<std::int64_t>(units);
    const Bounds bounds = BoundsOf(kInt);
    if (number >= bounds.low && number <= bounds.high) return ConstantOf(number, kInt);
    return ConstantOf(number, Numeric(digits, 0));
  }
  const ColumnType type = Numeric(std::max(digits, 1), std::min(scale, kMaxStoredDigits));
  return ConstantOf(
      Own(Convert(std::string_view(text), Varchar(digits), type, ConvertMode::Cast, -1, scratch)), type);
}

Bound Binder::Variable(const Expr& expr) {
  if (expr.number >= 0) {
    Bound bound = SlotOf(Slot::Source::Variable, expr.type);
    slots_.back().parameter = expr.number;
    return bound;
  }
  if (expr.text == "@@spid") return ExpressionOf("t_fact('@@spid','','')", ColumnType{Type::SmallInt}, false);
  if (expr.text == "@@version") return ExpressionOf("t_fact('@@version','','')", Varchar(300), false);
  const auto* found = std::find_if(std::begin(kVariables), std::end(kVariables),
                                   [&](const Variables& variable) { return variable.name == expr.text; });
  if (found == std::end(kVariables))
    throw Failed(Code::NoVariable, "A variável '" + expr.text + "' não existe");
  return SlotOf(found->source, found->type);
}

Bound Binder::Parameter(const Expr& expr) {
  const auto index = static_cast<std::size_t>(expr.number);
  if (index >= parameters_.size()) {
    throw Failed(Code::ProcedureArguments, fmt::format("Falta o valor do parâmetro {}", index + 1));
  }
  if (!parameters_[index]) return NullOf(kInt);
  Bound bound = SlotOf(Slot::Source::Parameter, *parameters_[index]);
  slots_.back().parameter = expr.number;
  return bound;
}

Bound Binder::Negate(const Expr& expr, const Scope& scope) {
  return BindArithmetic(*this, IntegerConstant(0), '-', Scalar(*expr.args[0], scope));
}

Bound Binder::Arithmetic(const Expr& expr, const Scope& scope) {
  Bound left = Scalar(*expr.args[0], scope);
  Bound right = Scalar(*expr.args[1], scope);
  return BindArithmetic(*this, std::move(left), expr.text.front(), std::move(right));
}

Bound Binder::Case(const Expr& expr, const Scope& scope) {
  std::vector<std::string> conditions;
  std::vector<Bound> results;
  for (std::size_t i = 0; i + 1 < expr.args.size(); i += 2) {
    conditions.push_back(Condition(*expr.args[i], scope));
    results.push_back(Scalar(*expr.args[i + 1], scope));
  }
  results.push_back(expr.flag ? Scalar(*expr.args.back(), scope) : NullOf(kInt));

  const Bound* typed = nullptr;
  ColumnType type = kInt;
  for (const Bound& result : results) {
    if (result.null) continue;
    type = typed == nullptr ? result.type : CommonType(type, result.type);
    typed = &result;
  }
  std::string sql = "CASE";
  for (std::size_t i = 0; i < conditions.size(); ++i) {
    sql += " WHEN " + conditions[i] + " THEN " + ConvertTo(std::move(results[i]), type).sql;
  }
  return ExpressionOf(sql + " ELSE " + ConvertTo(std::move(results.back()), type).sql + " END", type);
}

Bound Binder::ScalarQuery(const Expr& expr, const Scope& scope) {
  std::vector<VisibleColumn> output;
  const std::string sql = Nested(*expr.query, &scope, output);
  if (output.size() != 1)
    throw Failed(Code::ColumnCount, "Uma subconsulta usada como valor dá uma só coluna");
  return ExpressionOf("(" + sql + ")", output[0].type);
}

Bound Binder::TextArgument(const Expr& expr, const Scope& scope) {
  Bound value = Scalar(expr, scope);
  if (IsText(value.type) && !value.null) return value;
  return ConvertTo(std::move(value), Varchar(kMaxVarchar));
}

Bound Binder::ConvertTo(Bound value, const ColumnType& to, ConvertMode mode, int style) {
  if (value.null) return NullOf(to);
  if (value.form == Bound::Form::Constant) {
    std::string scratch;
    return ConstantOf(Own(Convert(View(value.constant), value.type, to, mode, style, scratch)), to);
  }
  if (value.form == Bound::Form::Slot) {
    Slot& slot = slots_[value.slot];
    slot.type = to;
    slot.mode = mode;
    slot.style = style;
    return ExpressionOf(std::move(value.sql), to);
  }
  if (Contains(to, value.type)) {
    value.type = to;
    return value;
  }
  const int options = (mode == ConvertMode::Assign ? 1 : 0) | ((style + 1) << 1);
  return ExpressionOf(fmt::format("t_conv({},{},{},{})", value.sql, Pack(value.type), Pack(to), options), to,
                      value.nullable);
}

Bound Binder::AssignTo(Bound value, const Column& column) {
  const bool constant = value.form == Bound::Form::Constant;
  const bool slot = value.form == Bound::Form::Slot;
  const std::size_t at = value.slot;
  const bool nullable = value.nullable || value.null;
  Bound assigned = ConvertTo(std::move(value), column.type, ConvertMode::Assign);
  if (column.nullable || constant || !nullable) return assigned;
  if (slot) {
    slots_[at].notNull = column.name;
    return assigned;
  }
  return ExpressionOf(fmt::format("t_notnull({},{})", assigned.sql, QuoteText(column.name)), column.type,
                      false);
}

std::string Binder::Condition(const Expr& expr, const Scope& scope) {
  switch (expr.kind) {
    case ExprKind::And:
      return Chain(expr.args, 0, expr.args.size(), " AND ", scope);
    case ExprKind::Or:
      return Chain(expr.args, 0, expr.args.size(), " OR ", scope);
    case ExprKind::Not:
      return "(NOT " + Condition(*expr.args[0], scope) + ")";
    case ExprKind::Compare:
      return Compare(expr, scope);
    case ExprKind::Like:
      return LikeCondition(expr, scope);
    case ExprKind::In:
      return InCondition(expr, scope);
    case ExprKind::Between:
      return BetweenCondition(expr, scope);
    case ExprKind::IsNull:
      return fmt::format("({} IS {}NULL)", Scalar(*expr.args[0], scope).sql, expr.flag ? "NOT " : "");
    case ExprKind::Exists: {
      std::vector<VisibleColumn> output;
      return "EXISTS (" + Nested(*expr.query, &scope, output) + ")";
    }
    default:
      throw SyntaxError("valor", "um valor não é uma condição");
  }
}

/// Joined in halves, so that a long chain stays shallow.
std::string Binder::Chain(const std::vector<ExprPtr>& args, std::size_t from, std::size_t to,
                          std::string_view word, const Scope& scope) {
  if (to - from == 1) return Condition(*args[from], scope);
  const std::size_t middle = from + (to - from) / 2;
  std::string left = Chain(args, from, middle, word, scope);
  return "(" + std::move(left) + std::string(word) + Chain(args, middle, to, word, scope) + ")";
}

std::string Binder::Compare(const Expr& expr, const Scope& scope) {
  Bound left = Scalar(*expr.args[0], scope);
  Bound right = Scalar(*expr.args[1], scope);
  return CompareBound(std::move(left), expr.text, std::move(right));
}

std::string Binder::CompareBound(Bound left, std::string_view sign, Bound right) {
  RequireComparable(left.type);
  RequireComparable(right.type);
  if (!left.null && !right.null) {
    if (IsExact(left.type) && IsExact(right.type)) {
      const int scale = std::max(ScaleOf(left.type), ScaleOf(right.type));
      left = Upscaled(*this, std::move(left), scale);
      right = Upscaled(*this, std::move(right), scale);
    } else if (!IsText(left.type) || !IsText(right.type)) {
      const ColumnType common = CommonType(left.type, right.type);
      left = ConvertTo(std::move(left), common);
      right = ConvertTo(std::move(right), common);
    }
  }
  const bool collates = left.form == Bound::Form::Column || right.form == Bound::Form::Column;
  return fmt::format("({}{}{})", collates ? left.sql : Collated(left), sign, right.sql);
}

std::string Binder::LikeCondition(const Expr& expr, const Scope& scope) {
  Bound text = TextArgument(*expr.args[0], scope);
  Bound pattern = TextArgument(*expr.args[1], scope);
  const char* negation = expr.flag ? "NOT " : "";
  const auto* fixed = std::get_if<std::string>(&pattern.constant);
  const bool plain = pattern.form == Bound::Form::Constant && fixed != nullptr && expr.args.size() == 2 &&
                     text.type.base != Type::Text && fixed->find_first_of("%_[") == std::string::npos &&
                     !fixed->empty() && !fixed->ends_with(' ');
  // A pattern without wildcards is a comparison, which needs no walk.
  if (plain) return negation + CompareBound(std::move(text), "=", std::move(pattern));
  std::string sql = fmt::format("{}t_like({},{}", negation, text.sql, pattern.sql);
  if (expr.args.size() > 2) sql += "," + TextArgument(*expr.args[2], scope).sql;
  return "(" + sql + "))";
}

std::string Binder::InCondition(const Expr& expr, const Scope& scope) {
  const std::string word = expr.flag ? " NOT IN (" : " IN (";
  Bound value = Scalar(*expr.args[0], scope);
  RequireComparable(value.type);
  if (expr.query) {
    std::vector<VisibleColumn> output;
    const std::string sql = Nested(*expr.query, &scope, output);
    if (output.size() != 1) throw Failed(Code::ColumnCount, "A subconsulta de IN dá uma só coluna");
    const ColumnType common = CommonType(value.type, output[0].type);
    const Bound inner = ConvertTo(ExpressionOf("\"c1\"", output[0].type), common);
    value = ConvertTo(std::move(value), common);
    return fmt::format("({}{}SELECT {} FROM ({})))", Collated(value), word, inner.sql, sql);
  }
  std::vector<Bound> items;
  ColumnType common = value.type;
  for (std::size_t i = 1; i < expr.args.size(); ++i) {
    items.push_back(Scalar(*expr.args[i], scope));
    if (!items.back().null) common = value.null ? items.back().type : CommonType(common, items.back().type);
  }
  std::string sql = "(" + Collated(ConvertTo(std::move(value), common)) + word;
  for (std::size_t i = 0; i < items.size(); ++i) {
    sql += (i == 0 ? "" : ",") + ConvertTo(std::move(items[i]), common).sql;
  }
  return sql + "))";
}

std::string Binder::BetweenCondition(const Expr& expr, const Scope& scope) {
  // The value is bound twice: each comparison may convert it in its own way.
  const std::string low = CompareBound(Scalar(*expr.args[0], scope), ">=", Scalar(*expr.args[1], scope));
  const std::string high = CompareBound(Scalar(*expr.args[0], scope), "<=", Scalar(*expr.args[2], scope));
  return fmt::format("({}({} AND {}))", expr.flag ? "NOT " : "", low, high);
}

}  // namespace korvel::data::embedded
