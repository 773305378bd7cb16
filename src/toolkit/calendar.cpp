#include <array>

#include "toolkit/dates.h"
#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::toolkit {
namespace {

struct Name {
  std::string_view full;
  std::string_view brief;
};

constexpr std::array<Name, 12> kMonths = {{{"Janeiro", "Jan"},
                                           {"Fevereiro", "Fev"},
                                           {"Março", "Mar"},
                                           {"Abril", "Abr"},
                                           {"Maio", "Mai"},
                                           {"Junho", "Jun"},
                                           {"Julho", "Jul"},
                                           {"Agosto", "Ago"},
                                           {"Setembro", "Set"},
                                           {"Outubro", "Out"},
                                           {"Novembro", "Nov"},
                                           {"Dezembro", "Dez"}}};

constexpr std::array<Name, 7> kWeekdays = {{{"Domingo", "Dom"},
                                            {"Segunda-Feira", "Seg"},
                                            {"Terça-Feira", "Ter"},
                                            {"Quarta-Feira", "Qua"},
                                            {"Quinta-Feira", "Qui"},
                                            {"Sexta-Feira", "Sex"},
                                            {"Sábado", "Sab"}}};

template <std::size_t kCount>
std::string_view NameOf(const std::array<Name, kCount>& names, int number, NameForm form) {
  if (number < 1 || number > static_cast<int>(kCount)) return " - Não Defenido";
  const Name& name = names[static_cast<std::size_t>(number - 1)];
  return form == NameForm::Full ? name.full : name.brief;
}

std::int64_t DaysOfUnit(std::string_view unit) {
  if (unit == "A") return 365;
  return unit == "M" ? 30 : 1;
}

std::optional<DateTime> NeutralDate(std::string_view text) {
  return DateTime::FromText(text.substr(0, 10));
}

std::optional<DateTime> AddMonths(const DateTime& date, std::int64_t months) {
  const std::int64_t total = std::int64_t{date.year} * 12 + date.month - 1 + months;
  if (total < 12 || total >= std::int64_t{10000} * 12) return std::nullopt;
  DateTime sum;
  sum.year = static_cast<int>(total / 12);
  sum.month = static_cast<int>(total % 12) + 1;
  sum.day = std::min(date.day, data::DaysInMonth(sum.year, sum.month));
  return sum;
}

std::int64_t DayNumber(const DateTime& date) {
  return data::DaysFromCivil(date.year, date.month, date.day);
}

std::optional<DateTime> AddDays(const DateTime& date, std::int64_t days) {
  const std::int64_t sum = DayNumber(date) + days;
  if (sum < data::DaysFromCivil(1, 1, 1) || sum > data::DaysFromCivil(9999, 12, 31)) return std::nullopt;
  return data::CivilFromDays(sum);
}

std::optional<DateTime> AddInterval(std::string_view intervalo, int numero, const DateTime& date) {
  if (intervalo == "d") return AddDays(date, numero);
  if (intervalo == "m") return AddMonths(date, numero);
  if (intervalo == "yyyy") return AddMonths(date, std::int64_t{numero} * 12);
  return std::nullopt;
}

}  // namespace

std::string_view meses(int mes, NameForm form) {
  return NameOf(kMonths, mes, form);
}

std::string_view MesesStr(std::string_view mes, NameForm form) {
  return meses(static_cast<int>(NumericPrefix(CutTo(mes, 4)).Whole()), form);
}

std::string_view Dias(int dia, NameForm form) {
  return NameOf(kWeekdays, dia, form);
}

std::optional<std::string> AddToDate(std::string_view intervalo, int numero, std::string_view data) {
  const auto date = NeutralDate(data);
  if (!date) return std::nullopt;
  const auto sum = AddInterval(intervalo, numero, *date);
  if (!sum) return std::nullopt;
  return sum->DateText();
}

std::string DataAdd(std::string_view intervalo, int numero, std::string_view data, Dialogs& dialogs) {
  if (auto sum = AddToDate(intervalo, numero, data)) return *std::move(sum);
  dialogs.Message(Icon::Critical, "Erro Interno ( DataAdd )");
  return {};
}

std::optional<DateSpan> GetDataIniFimParaMovs(std::string_view ano, std::string_view mes) {
  const std::string first = Zerar(ano, 4) + "-" + Zerar(mes, 2) + "-01";
  const auto next = AddToDate("m", 1, first);
  if (!next) return std::nullopt;
  const auto last = AddToDate("d", -1, *next);
  if (!last) return std::nullopt;
  return DateSpan{first, *last};
}

std::int64_t ConvertDaysToOther(std::int64_t days, std::string_view unit) {
  return days / DaysOfUnit(unit);
}

std::int64_t ConvertOtherToDays(std::int64_t count, std::string_view unit) {
  return count * DaysOfUnit(unit);
}

std::optional<CalendarSpan> DivideDiasMesesAnos(std::string_view from, std::string_view to) {
  const auto first = NeutralDate(from);
  const auto last = NeutralDate(to);
  if (!first || !last || *last < *first) return std::nullopt;
  int months = (last->year - first->year) * 12 + last->month - first->month;
  auto reached = AddMonths(*first, months);
  if (*reached > *last) reached = AddMonths(*first, --months);
  return CalendarSpan{months / 12, months % 12, static_cast<int>(DayNumber(*last) - DayNumber(*reached))};
}

}  // namespace korvel::toolkit
