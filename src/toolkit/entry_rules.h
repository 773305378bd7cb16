#pragma once

#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "toolkit/dates.h"
#include "toolkit/numbers.h"

/// The rules of the entry controls, without a screen: what may be typed, what is refused and in which words, how a value
/// is shown.
namespace korvel::toolkit {

/// How a number box takes and shows its value.
struct NumberEntry {
  Marks marks;
  int characters = 20;   // most that can be typed, thousands symbols not counted
  int decimals = 2;      // 0 to 4
  bool grouped = false;  // shown with thousands symbols
};

/// What a key writes into a number box: "." writes the decimal symbol, any other key itself.
std::string_view TypedSymbol(std::string_view key, const Marks& marks);

/// Whether a text may stand in the box while it is typed: "-" in front, digits, thousands symbols between them, and one
/// decimal symbol with no more digits behind it than the box has decimals.
bool AdmitsNumber(std::string_view text, const NumberEntry& entry);

struct NumberReading {
  Currency value;
  std::string shown;
};
/// Reads what was typed, 0 for a text without a number; nothing for a number that is too large.
std::optional<NumberReading> ReadNumber(std::string_view text, const NumberEntry& entry);
std::string ShowNumber(Currency value, const NumberEntry& entry);

/// The refusals of a number that is too large: of an amount, and of a number that is no money.
inline constexpr std::string_view kAmountTooLarge =
    "Número demasiado Grande !\no Máximo é 922,337,203,685,477.00";
inline constexpr std::string_view kDecimalTooLarge =
    "Número demasiado Grande !\no Máximo é 922,337,203,685,477";

struct IntegerBounds {
  int least = std::numeric_limits<int>::min();
  int most = std::numeric_limits<int>::max();
};
/// Why a whole number is refused, "" when it is not.
std::string IntegerRefusal(int value, const IntegerBounds& bounds);
/// The value after so many steps of the arrows, never outside the bounds.
int StepInteger(int value, int steps, const IntegerBounds& bounds);

/// A neutral date so many days later, from `today` without one. Both texts are empty outside the years 1 to 9999, which
/// is said.
DateTexts StepDate(std::string_view neutral, int days, const DateMarks& marks, const DateTime& today,
                   Dialogs& dialogs);

}  // namespace korvel::toolkit
