#include <algorithm>

#include "auditfile/export_run.h"
#include "auditfile/file_plan.h"
#include "auditfile/sections.h"
#include "session/connections.h"
#include "session/lookups.h"

namespace korvel::auditfile {

using periods::Basis;

ExportOptions OptionsFor(Basis basis) {
  const bool accounting = basis != Basis::Billing;
  const bool billing = basis != Basis::Accounting;
  ExportOptions options;
  options.chkPOCGeneralLedger = options.chkPOCSupplier = options.chkPOCGeneralLedgerEntries = accounting;
  // An integrated file takes its customers and taxes from the billing side.
  options.chkPOCCustomer = options.chkPOCTaxTable = !billing;
  options.chkGESTCustomer = options.chkGESTProduct = options.chkGESTTaxTable =
      options.chkGESTSourceDocuments = billing;
  return options;
}

ExportChoices ChoicesFor(Basis basis, const periods::PeriodKey& period) {
  return {MonthOf(period.endDate) > MonthOf(period.startDate), basis != Basis::Accounting,
          basis != Basis::Billing};
}

std::vector<SectionCount> CountSections(data::Connection& company, const periods::PeriodKey& period) {
  std::vector<SectionCount> counts;
  counts.reserve(std::size(kSections));
  const std::string where = " Where NumRegisto>0  And " + period.Condition();
  for (const Section& section : kSections) {
    counts.push_back(
        {section.box, section.caption, session::ContaRegistos_lng(company, section.table, where)});
  }
  return counts;
}

namespace {

std::optional<Basis> BasisOf(data::Connection& company, const periods::PeriodKey& period) {
  const data::Recordset row =
      company.Query("Select StartDate,EndDate,TaxAccountingBasis from TabHeader where NumRegisto>0  And " +
                    period.Condition());
  if (row.Eof() || row.Text("TaxAccountingBasis").empty()) return std::nullopt;
  return static_cast<Basis>(row.Text("TaxAccountingBasis").front());
}

}  // namespace

std::optional<ExportOffer> OfferFor(const session::Context& context, const periods::PeriodKey& period) {
  session::ConnectionPtr company;
  if (!session::OpenSessionDatabase(context, company, context.session.gBaseDados)) return std::nullopt;
  const std::optional<Basis> basis = BasisOf(*company, period);
  if (!basis) {
    context.dialogs.Message(toolkit::Icon::Critical, kNoHeader);
    return std::nullopt;
  }
  return ExportOffer{CountSections(*company, period), OptionsFor(*basis), ChoicesFor(*basis, period)};
}

std::string TipoSistemaPeriodo(const session::Context& context, const periods::PeriodKey& period) {
  session::ConnectionPtr company;
  if (!session::OpenSessionDatabase(context, company, context.session.gBaseDados)) {
    session::ShowConnectionError(context);
    return {};
  }
  const data::Recordset row = company->Query(
      "Select TaxAccountingBasis from TabHeader Where NumRegisto>0  And " + period.Condition());
  if (row.Eof()) return {};
  const std::string basis(row.Text("TaxAccountingBasis"));
  // The callers test for "G", deliberately not for "F".
  if (basis == "F") return "G";
  return basis == "I" || basis == "C" ? basis : std::string();
}

std::string TipoSistemaPeriodo(const session::Context& context, std::string_view eselFiscalYear) {
  const auto part = [&](std::size_t from, std::size_t count) {
    return std::string(eselFiscalYear.substr(std::min(from, eselFiscalYear.size()), count));
  };
  return TipoSistemaPeriodo(context, periods::PeriodKey{part(0, 4), part(4, 10), part(14, 10)});
}

}  // namespace korvel::auditfile
