#include <algorithm>

#include <fmt/format.h>

#include "data/embedded/binder.h"
#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

constexpr int kMaxDigits = 38;
constexpr int kLeastQuotientScale = 6;

/// Digits beyond what the store keeps are taken from the decimals, down to six, as the server does with its 38.
ColumnType Fitted(int precision, int scale) {
  const int whole = precision - scale;
  if (precision > kMaxStoredDigits)
    scale = std::max(std::min(scale, kLeastQuotientScale), kMaxStoredDigits - whole);
  scale = std::clamp(scale, 0, kMaxStoredDigits);
  return Numeric(std::clamp(whole + scale, 1, kMaxDigits), scale);
}

/// The result type of exact operands; money and whole numbers keep their own arithmetic.
ColumnType ExactResult(const ColumnType& a, const ColumnType& b, char sign) {
  if (a.base != Type::Numeric && b.base != Type::Numeric) {
    const ColumnType higher = CommonType(a, b);
    return higher.base == Type::Bit ? kInt : higher;
  }
  const int pa = PrecisionOf(a);
  const int pb = PrecisionOf(b);
  const int sa = ScaleOf(a);
  const int sb = ScaleOf(b);
  if (sign == '*') return Fitted(pa + pb + 1, sa + sb);
  if (sign == '/') {
    const int scale = std::max(kLeastQuotientScale, sa + pb + 1);
    return Fitted(pa - sa + sb + scale, scale);
  }
  const int scale = std::max(sa, sb);
  const int whole = std::max(pa - sa, pb - sb);
  return Fitted(whole + scale + (sign == '%' ? 0 : 1), scale);
}

Bound AtScale(Binder& binder, Bound value, int scale) {
  if (ScaleOf(value.type) == scale) return value;
  return binder.ConvertTo(std::move(value), Numeric(kMaxDigits, scale));
}

Bound ExactProduct(Bound left, Bound right, const ColumnType& type) {
  const int drop = ScaleOf(left.type) + ScaleOf(right.type) - ScaleOf(type);
  return ExpressionOf(fmt::format("t_mul({},{},{},{})", left.sql, right.sql, std::max(drop, 0), Pack(type)),
                      type);
}

Bound ExactQuotient(Binder& binder, Bound left, Bound right, const ColumnType& type) {
  int raise = ScaleOf(type) + ScaleOf(right.type) - ScaleOf(left.type);
  if (raise < 0) {
    left = AtScale(binder, std::move(left), ScaleOf(type) + ScaleOf(right.type));
    raise = 0;
  }
  raise = std::min(raise, kMaxStoredDigits);
  return ExpressionOf(fmt::format("t_div({},{},{},{})", left.sql, right.sql, raise, Pack(type)), type);
}

Bound Exact(Binder& binder, Bound left, char sign, Bound right) {
  const ColumnType type = ExactResult(left.type, right.type, sign);
  if (sign == '*') return ExactProduct(std::move(left), std::move(right), type);
  if (sign == '/') return ExactQuotient(binder, std::move(left), std::move(right), type);
  left = AtScale(binder, std::move(left), ScaleOf(type));
  right = AtScale(binder, std::move(right), ScaleOf(type));
  if (sign == '%') return ExpressionOf(fmt::format("t_mod({},{})", left.sql, right.sql), type);
  return ExpressionOf(
      fmt::format("{}({},{},{})", sign == '+' ? "t_add" : "t_sub", left.sql, right.sql, Pack(type)), type);
}

Bound Floats(Binder& binder, Bound left, char sign, Bound right) {
  left = binder.ConvertTo(std::move(left), kFloat);
  right = binder.ConvertTo(std::move(right), kFloat);
  if (sign == '/') return ExpressionOf(fmt::format("t_fdiv({},{})", left.sql, right.sql), kFloat);
  return ExpressionOf(fmt::format("({}{}{})", left.sql, sign, right.sql), kFloat);
}

/// A date with days added or taken away.
Bound Dates(Binder& binder, Bound left, char sign, Bound right) {
  if (sign != '+' && sign != '-') {
    throw Failed(Code::OperandType, "Uma data só se soma ou subtrai");
  }
  const ColumnType type = CommonType(left.type, right.type);
  left = binder.ConvertTo(std::move(left), type);
  right = binder.ConvertTo(std::move(right), type);
  return ExpressionOf(
      fmt::format("{}({},{},{})", sign == '+' ? "t_add" : "t_sub", left.sql, right.sql, Pack(type)), type);
}

}  // namespace

Bound BindArithmetic(Binder& binder, Bound left, char sign, Bound right) {
  if (left.null && !right.null) left.type = right.type;
  if (right.null && !left.null) right.type = left.type;
  const bool texts = IsText(left.type) && IsText(right.type);
  if (texts && sign == '+' && left.type.base != Type::Text && right.type.base != Type::Text) {
    const int length = std::min(left.type.length + right.type.length, kMaxVarchar);
    return ExpressionOf(fmt::format("({}||{})", left.sql, right.sql), Varchar(length),
                        left.nullable || right.nullable);
  }
  const bool unfit = left.type.base == Type::Text || right.type.base == Type::Text;
  if (texts || unfit)
    throw Failed(Code::OperandType, fmt::format("Tipos inválidos para o operador '{}'", sign));
  if (IsText(left.type) || IsText(right.type)) {
    const ColumnType type = CommonType(left.type, right.type);
    (IsText(left.type) ? left : right) = binder.ConvertTo(std::move(IsText(left.type) ? left : right), type);
  }
  if (IsDate(left.type) || IsDate(right.type)) return Dates(binder, std::move(left), sign, std::move(right));
  if (left.type.base == Type::Float || right.type.base == Type::Float) {
    return Floats(binder, std::move(left), sign, std::move(right));
  }
  return Exact(binder, std::move(left), sign, std::move(right));
}

}  // namespace korvel::data::embedded
