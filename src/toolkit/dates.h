#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/date_time.h"
#include "toolkit/ports.h"

/// Dates as texts. The neutral form is "yyyy-mm-dd"; "today" is an argument, or comes from the Clock.
namespace korvel::toolkit {

using data::DateTime;

/// The user's date symbols.
struct DateMarks {
  std::string format = "dd-MM-yyyy";
  std::string separator = "-";
};

/// A date in the neutral form and in the user's; both empty when there is none.
struct DateTexts {
  std::string neutral;
  std::string regional;
};

/// The order of the letters D, M and Y in a date format, as "DMY"; "A" counts as "Y".
std::string CreateStrPos(std::string_view format);

struct DateReading {
  DateTexts texts;
  std::string refusal;  // what is wrong with a bad date, "" otherwise
};
/// Reads a typed date, parts in the order of the format, blank ones taken from `today`. Both texts are empty
/// for a blank text and for a bad date. Without its separator a text is cut by position, except under the
/// order MDY, which is deliberate: all its parts then come from `today`.
DateReading ReadTypedDate(std::string_view texto, const DateMarks& marks, const DateTime& today);
/// The same; a refusal is said as a critical message.
DateTexts pData(std::string_view texto, const DateMarks& marks, const DateTime& today, Dialogs& dialogs);

/// Both forms of a neutral date, the user's one as pData writes it; empty for a text that is none.
DateTexts TextsOfDate(std::string_view neutral, const DateMarks& marks);

/// A date written by a format: d, dd, M, MM, yy, yyyy in any case, "a" as "y", other characters as they
/// stand.
std::string WriteDate(const DateTime& date, std::string_view format);
/// A neutral date, with or without a time behind it, in the user's form; a text that is no date comes back as
/// it is.
std::string GData(std::string_view data, const DateMarks& marks);

/// Splits a date text by the places of year, month and day in `formato` (empty: the user's; empty too:
/// "yyyy-mm-dd"). A text as long as the format is cut by its places, one of 8 characters by the places
/// without separators. One of 1 to 4 characters is a day, or a day and a month, the rest from `today`.
/// `regional` is in `formato`. Nothing for any other length and for a date that no calendar has.
std::optional<DateTexts> FormataData(std::string_view data, std::string_view formato, const DateMarks& marks,
                                     const DateTime& today);

/// Calendar addition of days ("d"), months ("m") or years ("yyyy"), a day behind the month's end becoming its
/// last. Nothing for another interval, for a text that does not start with a neutral date, or outside the
/// years 1 to 9999.
std::optional<std::string> AddToDate(std::string_view intervalo, int numero, std::string_view data);
/// The same; a failure says "Erro Interno ( DataAdd )" and gives "".
std::string DataAdd(std::string_view intervalo, int numero, std::string_view data, Dialogs& dialogs);

/// Today, neutral. A clock that fails says "Erro Interno ( GetDate )" and gives "".
std::string GetDate(const Clock& clock, Dialogs& dialogs);

/// The parts joined by "-", a blank one taken from `today`, month and day padded to two digits.
std::string Data_Actual_PData_str(std::string_view ano, std::string_view mes, std::string_view dia,
                                  const DateTime& today);
/// "<dia> de <nome do mês> de <ano>" of a neutral date; "" for a text of any length but 10.
std::string DataExtenso(std::string_view data);
inline int DataToMinutes(const DateTime& date) {
  return date.hour * 60 + date.minute;
}

struct DateSpan {
  std::string first;
  std::string last;
};
/// First and last day of a month, neutral; nothing for a month that is none. A blank `ano` or `mes` is to be
/// filled by the caller from the company's working year and month.
std::optional<DateSpan> GetDataIniFimParaMovs(std::string_view ano, std::string_view mes);

/// A typed time as "hh:mm": characters that are no digits dropped, minute 60 carried into the hour. "00:00"
/// without a ":" in third place, above hour 23 or minute 59.
std::string FormataHora_str(std::string_view hora);

enum class NameForm { Full, Short };
/// " - Não Defenido" outside 1 to 12; the spelling is the system's.
std::string_view meses(int mes, NameForm form = NameForm::Full);
/// The same for a month written as digits.
std::string_view MesesStr(std::string_view mes, NameForm form = NameForm::Full);
/// Weekdays from 1, "Domingo", to 7; " - Não Defenido" for others.
std::string_view Dias(int dia, NameForm form = NameForm::Full);

/// Whole years of 365 days ("A"), months of 30 ("M") or days ("D") in a count of days, and back; any other
/// unit counts as days.
std::int64_t ConvertDaysToOther(std::int64_t days, std::string_view unit);
std::int64_t ConvertOtherToDays(std::int64_t count, std::string_view unit);

struct CalendarSpan {
  int years = 0;
  int months = 0;
  int days = 0;
};
/// Whole years, then whole months, then days between two neutral dates; nothing when one is no date or they
/// stand in the wrong order.
std::optional<CalendarSpan> DivideDiasMesesAnos(std::string_view from, std::string_view to);

}  // namespace korvel::toolkit
