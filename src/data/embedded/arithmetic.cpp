#include "data/embedded/arithmetic.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

__extension__ using Wide = __int128;

std::int64_t Checked(Wide result, const ColumnType& type) {
  const Bounds bounds = BoundsOf(type);
  if (result < bounds.low || result > bounds.high) {
    throw Failed(Code::ArithmeticOverflow,
                 fmt::format("Erro de excesso aritmético ao converter a expressão para o tipo {}",
                             TypeName(type.base)));
  }
  return static_cast<std::int64_t>(result);
}

Wide RoundedQuotient(Wide a, Wide divisor) {
  const Wide half = divisor / 2;
  return (a < 0 ? a - half : a + half) / divisor;
}

[[noreturn]] void FailZero() {
  throw Failed(Code::DivisionByZero, "Foi encontrada uma divisão por zero");
}

}  // namespace

std::int64_t Add(std::int64_t a, std::int64_t b, const ColumnType& type) {
  return Checked(Wide{a} + b, type);
}
std::int64_t Subtract(std::int64_t a, std::int64_t b, const ColumnType& type) {
  return Checked(Wide{a} - b, type);
}

std::int64_t Multiply(std::int64_t a, std::int64_t b, int drop, const ColumnType& type) {
  return Checked(RoundedQuotient(Wide{a} * b, PowerOfTen(drop)), type);
}

std::int64_t Divide(std::int64_t a, std::int64_t b, int raise, const ColumnType& type) {
  if (b == 0) FailZero();
  return Checked(Wide{a} * PowerOfTen(raise) / b, type);
}

std::int64_t Remainder(std::int64_t a, std::int64_t b) {
  if (b == 0) FailZero();
  return b == -1 ? 0 : a % b;
}

double Divide(double a, double b) {
  if (b == 0) FailZero();
  return a / b;
}

std::int64_t Round(std::int64_t units, int decimals, const ColumnType& type) {
  const int drop = ScaleOf(type) - decimals;
  if (drop <= 0) return units;
  if (drop > kMaxStoredDigits) return 0;
  return Checked(RoundedQuotient(units, PowerOfTen(drop)) * PowerOfTen(drop), type);
}

}  // namespace korvel::data::embedded
