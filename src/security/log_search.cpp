#include "security/log_search.h"

#include "data/collation.h"
#include "toolkit/dates.h"
#include "toolkit/text.h"

namespace korvel::security {

namespace {

/// A statement in the making with the values that go to its marks.
struct Search {
  std::string statement;
  std::vector<data::Parameter> values;

  void Add(std::string_view clause, std::string_view value) {
    statement += clause;
    values.emplace_back(value);
  }
  void AddBound(std::string_view clause, std::string_view value) {
    if (!toolkit::IsBlank(value)) Add(clause, value);
  }
};

/// `filter` and `company` must outlive the result.
Search Compose(std::string_view company, const LogFilter& filter) {
  Search search{"select * from LogGeral Where NumRegisto > 0", {}};
  search.Add(" and CodEmpresa=?", company);
  if (filter.accao != kEveryCode) search.Add(" and Accao=?", filter.accao);
  if (filter.modulo != kEveryCode) search.Add(" and Modulo=?", filter.modulo);
  search.AddBound(" and Data >=?", filter.dataInicial);
  search.AddBound(" and Data <=?", filter.dataFinal);
  if (!data::SameText(filter.utilizador, kEveryUser)) search.AddBound(" and Utilizador=?", filter.utilizador);
  search.AddBound(" and Hora >=?", filter.horaInicial);
  search.AddBound(" and Hora <=?", filter.horaFinal);
  search.statement += " order by NumRegisto";
  return search;
}

LogEntry ReadEntry(const data::Recordset& row) {
  const auto text = [&](std::string_view column) { return std::string(row.Text(column)); };
  return {text("Utilizador"), text("CodEmpresa"),  text("DescEmpresa"), text("Modulo"),
          text("Accao"),      text("FormCaption"), row.Money("Valor"),  text("Data"),
          text("DataMov"),    text("Hora"),        text("Conteudo")};
}

}  // namespace

LogFilter DefaultLogFilter(const toolkit::Clock& clock) {
  constexpr int kDaysBefore = 2;
  LogFilter filter;
  filter.dataFinal = clock.Now().DateText();
  filter.dataInicial = toolkit::AddToDate("d", -kDaysBefore, filter.dataFinal).value_or(filter.dataFinal);
  return filter;
}

std::vector<LogEntry> SearchLog(data::Connection& config, std::string_view company, const LogFilter& filter) {
  const Search search = Compose(company, filter);
  std::vector<LogEntry> entries;
  for (auto rows = config.Query(search.statement, search.values); !rows.Eof(); rows.MoveNext())
    entries.push_back(ReadEntry(rows));
  return entries;
}

}  // namespace korvel::security
