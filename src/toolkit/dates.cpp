#include "toolkit/dates.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iterator>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::toolkit {
namespace {

constexpr std::size_t kNeutralLength = 10;

/// The whole number at the start of a text, bounded to nine characters so that it always fits.
int NumberOf(std::string_view text) {
  return static_cast<int>(NumericPrefix(CutTo(Trim(text), 9)).Whole());
}

/// 'D', 'M' or 'Y' for a letter of a date format, "A" counting as "Y"; 0 for any other character.
char PartLetter(char c) {
  switch (c) {
    case 'd':
    case 'D':
      return 'D';
    case 'm':
    case 'M':
      return 'M';
    case 'y':
    case 'Y':
    case 'a':
    case 'A':
      return 'Y';
    default:
      return 0;
  }
}

int PartOf(const DateTime& date, char letter) {
  if (letter == 'D') return date.day;
  return letter == 'M' ? date.month : date.year;
}

std::string Padded(std::string_view part, char letter, const DateTime& today) {
  const std::string value = IsBlank(part) ? std::to_string(PartOf(today, letter)) : std::string(part);
  return Zerar(value, letter == 'Y' ? 4 : 2);
}

struct CutRule {
  std::string_view order;
  std::array<std::size_t, 3> widths;
};
/// The order MDY has no row here, deliberately: its parts stay blank.
constexpr CutRule kCutRules[] = {
    {"YMD", {4, 2, 2}}, {"YDM", {4, 2, 2}}, {"DYM", {2, 4, 2}}, {"MYD", {2, 4, 2}}, {"DMY", {2, 2, 4}}};

std::vector<std::string> CutByOrder(std::string_view texto, std::string_view order) {
  std::string text(texto);
  text.resize(8, ' ');
  std::vector<std::string> parts(3);
  for (const CutRule& rule : kCutRules) {
    if (rule.order != order) continue;
    for (std::size_t i = 0, at = 0; i < parts.size(); at += rule.widths[i], ++i) {
      parts[i] = text.substr(at, rule.widths[i]);
    }
  }
  return parts;
}

/// The three parts of a typed date in the order of the format; none for a text of separators alone.
std::vector<std::string> TypedParts(std::string_view texto, std::string_view order,
                                    std::string_view separator) {
  if (separator.empty() || texto.find(separator) == std::string_view::npos) return CutByOrder(texto, order);
  std::vector<std::string> parts = FastStripString(texto, separator);
  if (parts.size() == 1 && IsBlank(parts.front())) return {};
  parts.resize(3);
  return parts;
}

/// Day, month and year as they were typed, padded.
struct TypedDate {
  std::string day;
  std::string month;
  std::string year;

  std::string& Of(char letter) {
    if (letter == 'D') return day;
    return letter == 'M' ? month : year;
  }
  bool Plausible() const {
    const int dayNumber = NumberOf(day);
    const int monthNumber = NumberOf(month);
    return dayNumber >= 1 && dayNumber <= 31 && monthNumber >= 1 && monthNumber <= 12 && NumberOf(year) != 0;
  }
  std::string Neutral() const { return year + "-" + month + "-" + day; }
};

TypedDate PadParts(const std::vector<std::string>& parts, std::string_view order, const DateTime& today) {
  TypedDate typed{Padded("", 'D', today), Padded("", 'M', today), Padded("", 'Y', today)};
  for (std::size_t i = 0; i < order.size() && i < parts.size(); ++i) {
    typed.Of(order[i]) = Padded(parts[i], order[i], today);
  }
  return typed;
}

std::string RegionalText(TypedDate typed, std::string_view order, std::string_view separator) {
  std::string text;
  for (const char letter : order) {
    if (!text.empty()) text += separator;
    text += typed.Of(letter);
  }
  return text;
}

bool IsNeutralDate(std::string_view text) {
  return text.size() == kNeutralLength && DateTime::FromText(text);
}

std::string LettersOf(std::string_view format) {
  std::string letters;
  std::copy_if(format.begin(), format.end(), std::back_inserter(letters),
               [](char c) { return PartLetter(c) != 0; });
  return letters;
}

/// The characters of `data` that stand where `format` has the letter.
int PartAt(std::string_view data, std::string_view format, char letter) {
  std::string part;
  for (std::size_t i = 0; i < data.size() && i < format.size(); ++i) {
    if (PartLetter(format[i]) == letter) part += data[i];
  }
  return NumberOf(part);
}

DateTime CutByFormat(std::string_view data, std::string_view format) {
  DateTime date;
  date.year = PartAt(data, format, 'Y');
  date.month = PartAt(data, format, 'M');
  date.day = PartAt(data, format, 'D');
  return date;
}

std::optional<DateTime> SplitDate(std::string_view data, std::string_view format, const DateTime& today) {
  if (!data.empty() && data.size() <= 4) {
    DateTime date = today;
    date.day = NumberOf(data.substr(0, 2));
    if (data.size() > 2) date.month = NumberOf(data.substr(2));
    return date;
  }
  const std::string letters = LettersOf(format);
  if (data.size() != 8 && data.size() != kNeutralLength) return std::nullopt;
  if (data.size() == format.size()) return CutByFormat(data, format);
  if (data.size() == letters.size()) return CutByFormat(data, letters);
  return std::nullopt;
}

std::string WritePart(const DateTime& date, char letter, std::size_t run) {
  const int value = PartOf(date, letter);
  if (letter == 'Y') return run <= 2 ? fmt::format("{:02}", value % 100) : fmt::format("{:04}", value);
  return fmt::format("{:0{}}", value, run == 1 ? 1 : 2);
}

}  // namespace

std::string CreateStrPos(std::string_view format) {
  std::string order;
  for (const char c : format) {
    const char letter = PartLetter(c);
    if (letter != 0 && order.find(letter) == std::string::npos) order += letter;
  }
  return order;
}

DateReading ReadTypedDate(std::string_view texto, const DateMarks& marks, const DateTime& today) {
  if (IsBlank(texto)) return {};
  const std::string order = CreateStrPos(marks.format);
  const std::vector<std::string> parts = TypedParts(texto, order, marks.separator);
  if (parts.empty()) return {};
  const TypedDate typed = PadParts(parts, order, today);
  if (!typed.Plausible()) {
    return {{},
            "Data Inválida de Acordo com o formato de data existente no  Painel de Control (" + marks.format +
                ")"};
  }
  if (!IsNeutralDate(typed.Neutral())) return {{}, "Data Invalida\n-"};
  return {{typed.Neutral(), RegionalText(typed, order, marks.separator)}, {}};
}

DateTexts pData(std::string_view texto, const DateMarks& marks, const DateTime& today, Dialogs& dialogs) {
  DateReading reading = ReadTypedDate(texto, marks, today);
  if (!reading.refusal.empty()) dialogs.Message(Icon::Critical, reading.refusal);
  return std::move(reading.texts);
}

DateTexts TextsOfDate(std::string_view neutral, const DateMarks& marks) {
  const auto date = DateTime::FromText(Trim(neutral));
  if (!date) return {};
  const std::string order = CreateStrPos(marks.format);
  return {date->DateText(), RegionalText(PadParts({}, order, *date), order, marks.separator)};
}

std::string WriteDate(const DateTime& date, std::string_view format) {
  std::string text;
  for (std::size_t at = 0; at < format.size();) {
    const char letter = PartLetter(format[at]);
    std::size_t end = at + 1;
    while (letter != 0 && end < format.size() && PartLetter(format[end]) == letter) ++end;
    text += letter == 0 ? std::string(1, format[at]) : WritePart(date, letter, end - at);
    at = end;
  }
  return text;
}

std::string GData(std::string_view data, const DateMarks& marks) {
  const auto date = DateTime::FromText(Trim(data));
  return date ? WriteDate(*date, marks.format) : std::string(data);
}

std::optional<DateTexts> FormataData(std::string_view data, std::string_view formato, const DateMarks& marks,
                                     const DateTime& today) {
  if (formato.empty()) formato = marks.format;
  if (formato.empty()) formato = "yyyy-mm-dd";
  const auto date = SplitDate(Trim(data), formato, today);
  if (!date || !data::IsCalendarDate(date->year, date->month, date->day)) return std::nullopt;
  return DateTexts{date->DateText(), WriteDate(*date, formato)};
}

std::string GetDate(const Clock& clock, Dialogs& dialogs) {
  try {
    return clock.Now().DateText();
  } catch (const std::exception&) {
    dialogs.Message(Icon::Critical, "Erro Interno ( GetDate )");
    return {};
  }
}

std::string Data_Actual_PData_str(std::string_view ano, std::string_view mes, std::string_view dia,
                                  const DateTime& today) {
  const std::string year = IsBlank(ano) ? Zerar(std::to_string(today.year), 4) : std::string(ano);
  return year + "-" + Padded(mes, 'M', today) + "-" + Padded(dia, 'D', today);
}

std::string DataExtenso(std::string_view data) {
  if (data.size() != kNeutralLength) return {};
  return fmt::format("{} de {} de {}", data.substr(8, 2), MesesStr(data.substr(5, 2)), data.substr(0, 4));
}

std::string FormataHora_str(std::string_view hora) {
  hora = Trim(hora);
  const auto digits = [](std::string_view text) {
    std::string kept;
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept), [](char c) {
      return SoDigitos({&c, 1});
    });
    return NumberOf(kept);
  };
  if (hora.size() < 3 || hora[2] != ':') return "00:00";
  int hour = digits(hora.substr(0, 2));
  int minute = digits(hora.substr(3));
  if (minute == 60) {
    ++hour;
    minute = 0;
  }
  return hour > 23 || minute > 59 ? "00:00" : fmt::format("{:02}:{:02}", hour, minute);
}

}  // namespace korvel::toolkit
