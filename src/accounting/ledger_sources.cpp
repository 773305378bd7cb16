#include "accounting/ledger_sources.h"

#include <fmt/format.h>

#include <array>

#include "data/sql_text.h"
#include "periods/parameters.h"
#include "session/lookups.h"
#include "toolkit/text.h"

namespace korvel::accounting {
namespace {

constexpr JournalRole kStocks{"13", "Apuramento de Existências"};
constexpr JournalRole kResults{"14", "Apuramento de Resultados"};
constexpr JournalRole kClosing{"15", "Encerramento"};

struct RoleColumn {
  std::string_view column;  // of `Configura`
  const JournalRole* role;
};
/// The first role of a journal counts.
constexpr std::array<RoleColumn, 5> kRoles{
    {{"DiTc", &kStocks}, {"DiTm", &kStocks}, {"DiAp", &kResults}, {"DiIl", &kResults}, {"DiEn", &kClosing}}};

/// Of several rows of one code the first counts.
void ReadDescriptions(data::Connection& lunder, Journals& journals) {
  data::Recordset rows =
      lunder.Query("select Codigo,Descricao from Diarios With (NoLock) order by NumRegisto");
  for (; !rows.Eof(); rows.MoveNext()) {
    std::string& description = journals[rows.Text(0)].description;
    if (description.empty()) description = rows.Text(1);
  }
}

void ReadRoles(data::Connection& lunder, Journals& journals) {
  const data::Recordset row =
      lunder.Query("select top 1 DiTc,DiTm,DiAp,DiIl,DiEn from Configura With (NoLock) order by NumRegisto");
  if (row.Eof()) return;
  for (const RoleColumn& role : kRoles) {
    const std::string_view code = row.Text(role.column);
    if (toolkit::IsBlank(code)) continue;
    Journal& journal = journals[code];
    if (!journal.role) journal.role = role.role;
  }
}

}  // namespace

AccountSet ReadStagedAccounts(data::Connection& company, const periods::PeriodKey& period) {
  AccountSet accounts;
  data::Recordset rows = company.Query("Select AccountID from TabGeneralLedger where " + period.Condition());
  for (; !rows.Eof(); rows.MoveNext()) {
    if (!rows.IsNull(0)) accounts[rows.Text(0)];
  }
  return accounts;
}

Journals ReadJournals(data::Connection& lunder) {
  Journals journals;
  ReadDescriptions(lunder, journals);
  ReadRoles(lunder, journals);
  return journals;
}

std::string JournalClause(data::Connection& lunder, data::Connection& company,
                          const periods::PeriodKey& period) {
  std::string clause = fmt::format(" And MovDiario.Data>={} and MovDiario.Data<={}",
                                   data::Quoted(period.startDate), data::Quoted(period.endDate));
  const auto parameters = periods::ReadParameters(company);
  if (parameters && parameters->GeneralLedgerEntries_IncluirSI) return clause;
  return clause + " and Diario<>" + data::Quoted(session::LerCampoTabela(lunder, "Configura", "DiSi"));
}

bool IsIntegrated(data::Connection& company, const periods::PeriodKey& period) {
  const data::Recordset row = company.Query("Select TaxAccountingBasis from TabHeader where " +
                                            period.Condition() + " order by NumRegisto");
  return !row.Eof() && row.Text(0) == "I";
}

}  // namespace korvel::accounting
