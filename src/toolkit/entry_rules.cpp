#include "toolkit/entry_rules.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "toolkit/text.h"
#include "toolkit/utf8.h"

namespace korvel::toolkit {

std::string_view TypedSymbol(std::string_view key, const Marks& marks) {
  return key == "." && !marks.decimal.empty() ? std::string_view(marks.decimal) : key;
}

bool AdmitsNumber(std::string_view text, const NumberEntry& entry) {
  const std::string plain = ReplaceAll(text, entry.marks.thousands, "");
  if (CharacterCount(plain) > static_cast<std::size_t>(std::max(entry.characters, 0))) return false;
  std::string_view rest = plain;
  if (rest.starts_with('-')) rest.remove_prefix(1);
  const std::size_t mark = entry.marks.decimal.empty() ? rest.npos : rest.find(entry.marks.decimal);
  if (mark == rest.npos) return SoDigitos(rest);
  const std::string_view decimals = rest.substr(mark + entry.marks.decimal.size());
  return SoDigitos(rest.substr(0, mark)) && SoDigitos(decimals) && entry.decimals > 0 &&
         decimals.size() <= static_cast<std::size_t>(entry.decimals);
}

std::optional<NumberReading> ReadNumber(std::string_view text, const NumberEntry& entry) {
  try {
    const Currency value = StrToCurr(text, {}, {}, entry.marks);
    return NumberReading{value, ShowNumber(value, entry)};
  } catch (const std::overflow_error&) {
    return std::nullopt;
  }
}

std::string ShowNumber(Currency value, const NumberEntry& entry) {
  return FDNum(value, entry.decimals, entry.grouped ? std::string_view() : kNoGrouping, {}, entry.marks);
}

std::string IntegerRefusal(int value, const IntegerBounds& bounds) {
  if (value > bounds.most) return "Número demasiado Grande !\no Máximo é " + std::to_string(bounds.most);
  if (value < bounds.least) return "Número demasiado Pequeno !\no Mínimo é " + std::to_string(bounds.least);
  return {};
}

int StepInteger(int value, int steps, const IntegerBounds& bounds) {
  const std::int64_t stepped = std::int64_t{value} + steps;
  return static_cast<int>(std::min<std::int64_t>(std::max<std::int64_t>(stepped, bounds.least), bounds.most));
}

DateTexts StepDate(std::string_view neutral, int days, const DateMarks& marks, const DateTime& today,
                   Dialogs& dialogs) {
  const std::string from = neutral.empty() ? today.DateText() : std::string(neutral);
  return TextsOfDate(DataAdd("d", days, from, dialogs), marks);
}

}  // namespace korvel::toolkit
