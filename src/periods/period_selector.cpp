#include "periods/period_selector.h"

#include <fmt/format.h>

#include <algorithm>

#include "session/regional_values.h"
#include "toolkit/dates.h"
#include "toolkit/text.h"

namespace korvel::periods {

namespace {

/// How a label ends for a kind of system; "" for rows of an earlier version, which hold a longer text.
std::string KindText(std::string_view basis, std::string_view cliente) {
  if (basis == "F" && !toolkit::IsBlank(cliente))
    return fmt::format("  -  [Facturação] - [{}] Autofacturação", cliente);
  if (basis == "F") return "  -  [Facturação]";
  if (basis == "I") return "  -  [Integrados - Facturação e Contabilidade]";
  if (basis == "C") return "  -  [Contabilidade]";
  if (basis == "S") return "  -  [Autofacturação]";
  if (basis == "P") return "  -  [Dados Parciais de Facturação]";
  return {};
}

toolkit::Option ReadOption(const data::Recordset& row, const toolkit::DateMarks& marks) {
  const std::string year(row.Text("FiscalYear"));
  const std::string start(row.Text("StartDate"));
  const std::string end(row.Text("EndDate"));
  const std::string cliente(row.Text("Cliente"));
  return {year + start + end + cliente,
          fmt::format("Ano {} ({} até {}){}", year, toolkit::GData(start, marks), toolkit::GData(end, marks),
                      KindText(row.Text("TaxAccountingBasis"), cliente))};
}

/// The next `length` characters off the front of a key.
std::string Take(std::string_view& key, std::size_t length) {
  const std::string_view piece = key.substr(0, length);
  key.remove_prefix(piece.size());
  return std::string(piece);
}

}  // namespace

std::vector<toolkit::Option> PeriodOptions(const session::SessionRecord& session, data::Connection& company,
                                           std::string_view filter) {
  auto rows = company.Query(
      fmt::format("Select FiscalYear,StartDate,EndDate,TaxAccountingBasis,isnull(Cliente,'') as Cliente from "
                  "TabHeader where FiscalYear<>'' {} order by FiscalYear,StartDate",
                  filter));
  std::vector<toolkit::Option> options;
  for (; !rows.Eof(); rows.MoveNext()) options.push_back(ReadOption(rows, session::DateMarks(session)));
  return options;
}

ChosenPeriod ChosenBy(std::string_view key) {
  constexpr std::size_t kYear = 4;
  constexpr std::size_t kDate = 10;
  PeriodKey period{Take(key, kYear), Take(key, kDate), Take(key, kDate)};
  return {std::move(period), std::string(key)};
}

}  // namespace korvel::periods
