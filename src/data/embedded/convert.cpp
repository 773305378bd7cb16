#include "data/embedded/convert.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <ctime>

#include <fmt/format.h>

#include "data/embedded/date_text.h"
#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

constexpr std::int64_t kTicksPerSecond = 300;
constexpr std::int64_t kTicksPerMinute = kTicksPerSecond * 60;
constexpr std::int64_t kTicksPerDay = kTicksPerMinute * 60 * 24;
constexpr int kMoneyScale = 4;

std::string_view TrimBlanks(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

std::int64_t InBounds(std::optional<std::int64_t> units, const ColumnType& type) {
  const Bounds bounds = BoundsOf(type);
  if (units && *units >= bounds.low && *units <= bounds.high) return *units;
  if (IsDate(type)) {
    throw Failed(Code::DateRange,
                 fmt::format("A data está fora dos limites do tipo {}", TypeName(type.base)));
  }
  throw Failed(Code::ArithmeticOverflow,
               fmt::format("Erro de excesso aritmético ao converter para o tipo {}", TypeName(type.base)));
}

[[noreturn]] void FailConversion(const ColumnType& to) {
  const Code code = IsDate(to)                                           ? Code::DateConversion
                    : to.base == Type::Numeric || to.base == Type::Float ? Code::NumericConversion
                                                                         : Code::Conversion;
  throw Failed(code, fmt::format("A conversão de um valor varchar para o tipo {} falhou", TypeName(to.base)));
}

/// Decimal digits with an optional sign and mark, as units of `scale`, halves away from zero.
std::optional<std::int64_t> ParseDecimal(std::string_view text, int scale, bool& readable) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // Digits count in their own sign, for the lowest number has no counterpart.
  const std::int64_t sign = negative ? -1 : 1;
  std::int64_t units = 0;
  int decimals = -1;
  bool overflow = false;
  bool digits = false;
  char next = '0';
  for (const char c : text) {
    readable = (c >= '0' && c <= '9') || (c == '.' && decimals < 0);
    if (!readable) return std::nullopt;
    if (c == '.') {
      decimals = 0;
      continue;
    }
    digits = true;
    if (decimals >= scale) {
      if (decimals++ == scale) next = c;
      continue;
    }
    if (decimals >= 0) ++decimals;
    overflow |= __builtin_mul_overflow(units, std::int64_t{10}, &units) ||
                __builtin_add_overflow(units, sign * (c - '0'), &units);
  }
  readable = digits;
  for (int i = std::max(decimals, 0); i < scale; ++i) overflow |= __builtin_mul_overflow(units, 10, &units);
  overflow |= next >= '5' && __builtin_add_overflow(units, sign, &units);
  if (overflow) return std::nullopt;
  return units;
}

std::int64_t ExactFromText(std::string_view text, const ColumnType& to) {
  text = TrimBlanks(text);
  if (text.empty()) {
    // A blank text is zero for whole numbers and money, and no number at all for numeric: the server's own rule.
    if (to.base == Type::Numeric) FailConversion(to);
    return 0;
  }
  const bool pointless = IsWhole(to) && text.find('.') != std::string_view::npos;
  std::string withoutCommas;
  if (to.base == Type::Money && text.find(',') != std::string_view::npos) {
    std::copy_if(text.begin(), text.end(), std::back_inserter(withoutCommas),
                 [](char c) { return c != ','; });
    text = withoutCommas;
  }
  bool readable = false;
  const auto units = ParseDecimal(text, ScaleOf(to), readable);
  if (!readable || pointless) FailConversion(to);
  if (to.base == Type::Bit) return units.value_or(1) != 0 ? 1 : 0;
  return InBounds(units, to);
}

double FloatFromText(std::string_view text) {
  text = TrimBlanks(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (!text.empty() && (error != std::errc() || end != text.data() + text.size())) FailConversion(kFloat);
  return number;
}

std::int64_t RoundToType(std::int64_t ticks, const ColumnType& to) {
  if (to.base == Type::DateTime) return InBounds(ticks, to);
  std::int64_t minutes = ticks / kTicksPerMinute;
  std::int64_t rest = ticks % kTicksPerMinute;
  if (rest < 0) {
    rest += kTicksPerMinute;
    --minutes;
  }
  // 29.998 seconds round down and 29.999 up: in ticks, half a minute rounds up.
  return InBounds((minutes + (rest >= kTicksPerMinute / 2 ? 1 : 0)) * kTicksPerMinute, to);
}

std::int64_t DateFromStored(const Stored& value, const ColumnType& from, const ColumnType& to) {
  if (IsDate(from)) return RoundToType(std::get<std::int64_t>(value), to);
  if (IsText(from)) {
    const auto moment = DateFromText(std::get<std::string_view>(value));
    if (!moment) FailConversion(to);
    return RoundToType(TicksFromDate(*moment), to);
  }
  const double days = from.base == Type::Float ? std::get<double>(value)
                                               : static_cast<double>(std::get<std::int64_t>(value)) /
                                                     static_cast<double>(PowerOfTen(ScaleOf(from)));
  if (std::abs(days) > 1e7) InBounds(std::nullopt, to);
  return RoundToType(std::llround(days * static_cast<double>(kTicksPerDay)), to);
}

std::optional<std::int64_t> UnitsFromFloat(double number, const ColumnType& to) {
  const double scaled = number * static_cast<double>(PowerOfTen(ScaleOf(to)));
  if (!(std::abs(scaled) < 9.2e18)) return std::nullopt;
  return IsWhole(to) ? static_cast<std::int64_t>(scaled) : std::llround(scaled);
}

std::int64_t ExactFromStored(const Stored& value, const ColumnType& from, const ColumnType& to) {
  if (IsText(from)) return ExactFromText(std::get<std::string_view>(value), to);
  if (from.base == Type::Float) {
    if (to.base == Type::Bit) return std::get<double>(value) != 0 ? 1 : 0;
    return InBounds(UnitsFromFloat(std::get<double>(value), to), to);
  }
  const std::int64_t units = std::get<std::int64_t>(value);
  if (to.base == Type::Bit) return units != 0 ? 1 : 0;
  if (IsDate(from)) return InBounds(Rescale(units / kTicksPerDay, 0, ScaleOf(to)), to);
  // A fraction is cut off on the way from numeric to a whole number, and rounded on the way from money.
  if (IsWhole(to) && from.base == Type::Numeric) return InBounds(units / PowerOfTen(from.scale), to);
  return InBounds(Rescale(units, ScaleOf(from), ScaleOf(to)), to);
}

double FloatFromStored(const Stored& value, const ColumnType& from) {
  if (IsText(from)) return FloatFromText(std::get<std::string_view>(value));
  if (from.base == Type::Float) return std::get<double>(value);
  const auto units = static_cast<double>(std::get<std::int64_t>(value));
  return IsDate(from) ? units / static_cast<double>(kTicksPerDay)
                      : units / static_cast<double>(PowerOfTen(ScaleOf(from)));
}

/// Money as text: style 0 rounds to two decimals, 1 groups thousands too, 2 gives all four.
void AppendStyledMoney(std::string& text, std::int64_t units, int style) {
  if (style == 2) return AppendDecimal(text, units, kMoneyScale);
  const std::size_t start = text.size() + (units < 0 ? 1 : 0);
  AppendDecimal(text, *Rescale(units, kMoneyScale, 2), 2);
  if (style != 1) return;
  for (std::size_t at = text.size() - 3; at > start + 3; at -= 3) text.insert(at - 3, 1, ',');
}

void AppendAsText(std::string& text, const Stored& value, const ColumnType& from, int style) {
  if (from.base == Type::Float) {
    text += fmt::format("{:.6g}", std::get<double>(value));
  } else if (IsDate(from)) {
    const auto written = DateInStyle(DateFromTicks(std::get<std::int64_t>(value)), style);
    if (!written) throw Failed(Code::OperandType, fmt::format("O estilo {} não é um estilo de data", style));
    text += *written;
  } else if (from.base == Type::Money) {
    AppendStyledMoney(text, std::get<std::int64_t>(value), style);
  } else {
    AppendDecimal(text, std::get<std::int64_t>(value), ScaleOf(from));
  }
}

std::string_view FitText(std::string_view text, const ColumnType& to, ConvertMode mode) {
  const auto length = static_cast<std::size_t>(to.length);
  if (to.base == Type::Text || text.size() <= length || CountCharacters(text) <= length) return text;
  const std::string_view fitting = FirstCharacters(text, length);
  // Blanks that fall off at the end are no loss, to the server either.
  const bool onlyBlanks = text.find_first_not_of(' ', fitting.size()) == std::string_view::npos;
  if (mode == ConvertMode::Assign && !onlyBlanks) {
    throw Failed(Code::Truncated, "Os dados da cadeia de caracteres seriam truncados; nada foi gravado");
  }
  return fitting;
}

std::string_view TextFromStored(const Stored& value, const ColumnType& from, const ColumnType& to,
                                ConvertMode mode, int style, std::string& scratch) {
  if (IsText(from)) return FitText(std::get<std::string_view>(value), to, mode);
  scratch.clear();
  AppendAsText(scratch, value, from, style);
  if (IsExact(from) && to.base == Type::Varchar && scratch.size() > static_cast<std::size_t>(to.length)) {
    throw Failed(Code::ArithmeticOverflow, "Erro de excesso aritmético ao converter um número para varchar");
  }
  return FitText(scratch, to, mode);
}

}  // namespace

Stored View(const OwnedStored& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return std::string_view(*text);
  if (const auto* units = std::get_if<std::int64_t>(&value)) return *units;
  if (const auto* number = std::get_if<double>(&value)) return *number;
  return Null{};
}

OwnedStored Own(const Stored& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) return std::string(*text);
  if (const auto* units = std::get_if<std::int64_t>(&value)) return *units;
  if (const auto* number = std::get_if<double>(&value)) return *number;
  return Null{};
}

Stored Convert(const Stored& value, const ColumnType& from, const ColumnType& to, ConvertMode mode, int style,
               std::string& scratch) {
  if (std::holds_alternative<Null>(value)) return value;
  if (IsText(to)) return TextFromStored(value, from, to, mode, style, scratch);
  if (IsDate(to)) return DateFromStored(value, from, to);
  if (to.base == Type::Float) return FloatFromStored(value, from);
  return ExactFromStored(value, from, to);
}

Stored FromParameter(const Parameter& parameter) {
  struct Visitor {
    Stored operator()(Null) const { return Null{}; }
    Stored operator()(std::int64_t number) const { return number; }
    Stored operator()(Currency money) const { return money.Units(); }
    Stored operator()(double number) const { return number; }
    Stored operator()(const DateTime& moment) const { return TicksFromDate(moment); }
    Stored operator()(std::string_view text) const { return text; }
  };
  return std::visit(Visitor{}, static_cast<const Parameter::variant&>(parameter));
}

std::optional<ColumnType> ParameterType(const Parameter& parameter) {
  if (parameter.IsNull()) return std::nullopt;
  if (const auto* number = std::get_if<std::int64_t>(&parameter)) {
    const Bounds bounds = BoundsOf(kInt);
    return *number >= bounds.low && *number <= bounds.high ? kInt : kBigInt;
  }
  if (std::holds_alternative<Currency>(parameter)) return kMoney;
  if (std::holds_alternative<double>(parameter)) return kFloat;
  return std::holds_alternative<DateTime>(parameter) ? kDateTime : Varchar(kMaxVarchar);
}

Value ToValue(const Stored& value, const ColumnType& type) {
  if (std::holds_alternative<Null>(value)) return {};
  if (const auto* text = std::get_if<std::string_view>(&value)) return Value(*text);
  if (const auto* number = std::get_if<double>(&value)) return Value(*number);
  const std::int64_t units = std::get<std::int64_t>(value);
  if (IsDate(type)) return Value(DateFromTicks(units));
  if (ScaleOf(type) == 0) return Value(units);
  return Value(Currency::FromUnits(InBounds(Rescale(units, ScaleOf(type), kMoneyScale), kMoney)));
}

std::size_t CountCharacters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string_view FirstCharacters(std::string_view text, std::size_t count) {
  std::size_t at = 0;
  for (; at < text.size(); ++at) {
    if ((static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) continue;
    if (count-- == 0) break;
  }
  return text.substr(0, at);
}

std::optional<std::int64_t> Rescale(std::int64_t units, int fromScale, int toScale) {
  std::int64_t result = 0;
  if (toScale >= fromScale) {
    if (__builtin_mul_overflow(units, PowerOfTen(toScale - fromScale), &result)) return std::nullopt;
    return result;
  }
  const std::int64_t divisor = PowerOfTen(fromScale - toScale);
  result = units / divisor;
  const std::int64_t rest = units % divisor;
  if (rest >= divisor - rest && rest > 0) ++result;
  if (-rest >= divisor + rest && rest < 0) --result;
  return result;
}

std::int64_t TicksFromDate(const DateTime& moment) {
  static const std::int64_t kEpoch = DaysFromCivil(1900, 1, 1);
  const std::int64_t days = DaysFromCivil(moment.year, moment.month, moment.day) - kEpoch;
  const std::int64_t seconds = (moment.hour * 60 + moment.minute) * 60 + moment.second;
  const std::int64_t ticks = (moment.millisecond * 3 + 5) / 10;
  return InBounds(days * kTicksPerDay + seconds * kTicksPerSecond + ticks, kDateTime);
}

DateTime DateFromTicks(std::int64_t ticks) {
  static const std::int64_t kEpoch = DaysFromCivil(1900, 1, 1);
  std::int64_t days = ticks / kTicksPerDay;
  std::int64_t rest = ticks % kTicksPerDay;
  if (rest < 0) {
    rest += kTicksPerDay;
    --days;
  }
  DateTime moment = CivilFromDays(days + kEpoch);
  moment.millisecond = static_cast<int>((rest % kTicksPerSecond * 10 + 1) / 3);
  const auto seconds = static_cast<int>(rest / kTicksPerSecond);
  moment.hour = seconds / 3600;
  moment.minute = seconds / 60 % 60;
  moment.second = seconds % 60;
  return moment;
}

std::int64_t TicksNow() {
  using std::chrono::milliseconds;
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&seconds, &local);
  const auto since = std::chrono::duration_cast<milliseconds>(now.time_since_epoch()).count();
  return TicksFromDate({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                        std::min(local.tm_sec, 59), static_cast<int>(since % 1000)});
}

void AppendDecimal(std::string& text, std::int64_t units, int scale) {
  const std::uint64_t magnitude =
      units < 0 ? 0 - static_cast<std::uint64_t>(units) : static_cast<std::uint64_t>(units);
  char digits[20];
  const auto end = std::to_chars(digits, digits + sizeof digits, magnitude).ptr;
  const auto count = static_cast<int>(end - digits);
  if (units < 0) text += '-';
  if (count <= scale) {
    text += "0.";
    text.append(static_cast<std::size_t>(scale - count), '0').append(digits, end);
    return;
  }
  text.append(digits, end - scale);
  if (scale > 0) text.append(".").append(end - scale, end);
}

void AppendMoney(std::string& text, std::int64_t units) {
  AppendDecimal(text, units, kMoneyScale);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
}

}  // namespace korvel::data::embedded
