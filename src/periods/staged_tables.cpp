#include "periods/staged_tables.h"

#include <fmt/format.h>

#include "data/sql_text.h"

namespace korvel::periods {

std::string DeleteStatement(const PeriodTable& table, const PeriodKey& period, std::string_view cliente) {
  std::string statement = fmt::format("Delete from {} where {}", table.name, period.Condition());
  if (table.byCustomer) statement += fmt::format(" and isnull(cliente,'')={}", data::Quoted(cliente));
  return statement;
}

void ClearStaged(data::Connection& company, const PeriodTable& table, const PeriodKey& period,
                 std::string_view cliente) {
  company.Execute(DeleteStatement(table, period, cliente));
  // After the deletion, which keeps others from deleting the period until the transaction ends.
  const std::string header =
      fmt::format("select NumRegisto from {} where {}", kHeaderTable, period.Condition());
  if (company.Query(header).Eof()) throw PeriodGone();
}

void DeletePeriodRows(data::Connection& company, const PeriodKey& period, std::string_view cliente,
                      bool header) {
  for (const PeriodTable& table : kPeriodTables) {
    if (table.name == kHeaderTable && !header) continue;
    company.Execute(DeleteStatement(table, period, cliente));
  }
}

}  // namespace korvel::periods
