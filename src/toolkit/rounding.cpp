#include <algorithm>
#include <array>
#include <stdexcept>

#include "toolkit/numbers.h"

namespace korvel::toolkit {
namespace {

constexpr int kMaxDecimals = 4;
constexpr std::array<std::int64_t, kMaxDecimals + 1> kStepOfDecimals = {10000, 1000, 100, 10, 1};

/// Decimals in the shortest writing of a value.
int DecimalsOf(Currency valor) {
  std::int64_t fraction = valor.Units() % Currency::kScale;
  if (fraction == 0) return 0;
  int decimals = kMaxDecimals;
  for (; fraction % 10 == 0; fraction /= 10) --decimals;
  return decimals;
}

/// `quotient` times `step`, moved one step away from zero when `up`.
Currency Multiple(std::int64_t quotient, std::int64_t step, bool up, bool negative) {
  if (up) quotient += negative ? -1 : 1;
  std::int64_t units = 0;
  if (__builtin_mul_overflow(quotient, step, &units))
    throw std::overflow_error("valor monetário fora dos limites");
  return Currency::FromUnits(units);
}

Currency HalfToEven(Currency valor, std::int64_t step) {
  const std::int64_t quotient = valor.Units() / step;
  const std::int64_t twice = 2 * std::abs(valor.Units() % step);
  return Multiple(quotient, step, twice > step || (twice == step && quotient % 2 != 0), valor.IsNegative());
}

Currency HalfUp(Currency valor, std::int64_t step) {
  const std::int64_t twice = 2 * std::abs(valor.Units() % step);
  return Multiple(valor.Units() / step, step, twice >= step, valor.IsNegative());
}

Currency Cut(Currency valor, std::int64_t step) {
  return Currency::FromUnits(valor.Units() - valor.Units() % step);
}

Currency Up(Currency valor, std::int64_t step) {
  return Multiple(valor.Units() / step, step, valor.Units() % step != 0, valor.IsNegative());
}

/// The sign of a negative value counts as one of its decimals, deliberately: a last 5 is then nudged where the
/// same positive value is left as it is.
int LoweredDecimals(Currency valor, int casas) {
  const int decimals = DecimalsOf(valor);
  const int counted = decimals > 0 && valor.IsNegative() ? decimals + 1 : decimals;
  return std::clamp(casas, 0, std::min(counted, kMaxDecimals));
}

/// What turns rounding half to even into rounding half up; positive for negative values too, deliberately.
Currency Nudge(Currency valor, int casas) {
  const int decimals = DecimalsOf(valor);
  if (decimals == 0) return {};
  const std::int64_t lastStep = kStepOfDecimals[static_cast<std::size_t>(decimals)];
  const bool endsInFive = std::abs(valor.Units() / lastStep) % 10 == 5;
  if (casas > 0) return Currency::FromUnits(endsInFive ? 1 : 0);
  return Currency::FromUnits(endsInFive && decimals == 1 && !valor.IsNegative() ? 100 : 0);
}

Currency Nudged(Currency valor, int casas) {
  const int kept = LoweredDecimals(valor, casas);
  return HalfToEven(valor + Nudge(valor, kept), kStepOfDecimals[static_cast<std::size_t>(kept)]);
}

enum class Way { Round, Cut, Up };

/// How a `Tipo` above 0 rounds: first to decimals, then, where `whole` is not 0, to that multiple of whole numbers.
struct Rule {
  Way way;
  int whole;
};

constexpr std::array<Rule, 15> kRules = {{
    {Way::Round, 0},
    {Way::Round, 10},
    {Way::Round, 100},
    {Way::Round, 1000},
    {Way::Cut, 0},
    {Way::Cut, 10},
    {Way::Cut, 100},
    {Way::Cut, 1000},
    {Way::Up, 0},
    {Way::Up, 10},
    {Way::Up, 100},
    {Way::Up, 1000},
    {Way::Round, 1},
    {Way::Cut, 1},
    {Way::Up, 1},
}};

Currency ToDecimals(Currency valor, int casas, Way way) {
  if (way == Way::Round) return Nudged(valor, casas);
  const std::int64_t step = kStepOfDecimals[static_cast<std::size_t>(LoweredDecimals(valor, casas))];
  return way == Way::Cut ? Cut(valor, step) : Up(valor, step);
}

Currency ToWhole(Currency valor, Rule rule) {
  const std::int64_t step = rule.whole * Currency::kScale;
  if (rule.way == Way::Cut) return Cut(valor, step);
  if (rule.way == Way::Up) return Up(valor, step);
  // Only the digits of the whole part decide between two tens: 14.9 goes down to 10.
  return rule.whole == 1 ? Nudged(valor, 0) : HalfUp(Cut(valor, Currency::kScale), step);
}

}  // namespace

Currency ArredondaVal(Currency valor, int casas, int tipo) {
  if (tipo < 1 || tipo > static_cast<int>(kRules.size())) return valor;
  const Rule rule = kRules[static_cast<std::size_t>(tipo - 1)];
  const Currency rounded = ToDecimals(valor, casas, rule.way);
  return rule.whole == 0 ? rounded : ToWhole(rounded, rule);
}

Currency ArredondaValDecimal(Currency valor, int casas, int tipo) {
  constexpr std::array<Way, 3> kWays = {Way::Round, Way::Cut, Way::Up};
  if (tipo < 1 || tipo > static_cast<int>(kWays.size())) return valor;
  return ToDecimals(valor, casas, kWays[static_cast<std::size_t>(tipo - 1)]);
}

}  // namespace korvel::toolkit
