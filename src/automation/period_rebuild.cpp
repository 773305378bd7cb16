#include "automation/period_rebuild.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "databases/version.h"
#include "periods/staged_tables.h"
#include "session/lookups.h"
#include "session/records.h"

namespace korvel::automation {
namespace {

/// Stands for the year until the earlier period of the same dates has gone: a period cannot be defined twice.
constexpr std::string_view kYearPlaceholder = "YYYY";

/// The last row of `TabHeader` of that kind, 0 when there is none.
std::int64_t LastOfKind(data::Connection& company, std::string_view basis) {
  const data::Recordset row = company.Query(
      fmt::format("Select top 1 NumRegisto from TabHeader With (NoLock) Where TaxAccountingBasis={} "
                  "Order by NumRegisto DESC",
                  data::Quoted(basis)));
  return row.Eof() ? 0 : row.Integer("NumRegisto");
}

std::int64_t CopyHeader(data::Connection& company, std::int64_t numRegisto) {
  return session::Duplica_Registo(company, company, periods::kHeaderTable, "FiscalYear",
                                  std::string(kYearPlaceholder),
                                  fmt::format(" where NumRegisto={}", numRegisto));
}

/// The new row keeps what the company's last header held, but for the period, the version and the kind.
void FillHeader(data::Connection& company, std::int64_t numRegisto, const periods::PeriodKey& period,
                std::string_view basis) {
  company.Execute("Update TabHeader set FiscalYear=?,StartDate=?,EndDate=? where NumRegisto=?",
                  {period.fiscalYear, period.startDate, period.endDate, numRegisto});
  company.Execute("Update TabHeader set ProductVersion=? where NumRegisto=?",
                  {databases::ProgramVersion(), numRegisto});
  company.Execute("Update TabHeader set TaxAccountingBasis=? where NumRegisto=?", {basis, numRegisto});
}

}  // namespace

std::optional<std::string> RebuildPeriod(data::Connection& company, const periods::PeriodKey& period,
                                         periods::Basis basis, std::string_view cliente) {
  const char letter = static_cast<char>(basis);
  const std::string_view kind(&letter, 1);
  data::Transaction transaction(company);
  periods::DeletePeriodRows(company, period, cliente, false);
  const std::int64_t last = LastOfKind(company, kind);
  const std::int64_t made = last == 0 ? 0 : CopyHeader(company, last);
  if (made == 0) return std::nullopt;
  company.Execute(periods::DeleteStatement({periods::kHeaderTable, true}, period, cliente));
  FillHeader(company, made, period, kind);
  transaction.Commit();
  return session::LerCampoTabela(company, periods::kHeaderTable, "Cliente",
                                 {"NumRegisto", std::to_string(made), true});
}

}  // namespace korvel::automation
