#include "billing/document_totals.h"

#include <fmt/format.h>

#include <numeric>

#include "session/lookups.h"
#include "toolkit/numbers.h"

namespace korvel::billing {

std::int64_t SectionTotals::NumberOfEntries() const {
  return std::accumulate(documents.begin(), documents.end(), std::int64_t{0});
}

void CountDocuments(data::Connection& brevant, const BillingPeriod& period, const ClassFilters& filters,
                    SectionTotals& totals) {
  for (std::size_t i = 0; i < filters.size(); ++i) {
    totals.documents[i] = session::ContaRegistos_lng(
        brevant, "MovCliente", " Where NumRegisto>0 " + filters[i].On() + period.Documents());
  }
}

void SumDocuments(data::Connection& brevant, const BillingPeriod& period, const ClassFilters& filters,
                  int casasDec, SectionTotals& totals) {
  for (std::size_t i = 0; i < filters.size(); ++i) {
    const data::Recordset sum = brevant.Query(
        fmt::format("select MValor=Sum(TotalDoc-IVA) from MovCliente Where MovCliente.NumRegisto>0 {}{}",
                    filters[i].On(), period.Documents()));
    const data::Currency value = sum.Eof() ? data::Currency() : sum.Money(0);
    data::Currency& side = kDocumentClasses[i].side == Side::Debit ? totals.debit : totals.credit;
    side += toolkit::ArredondaVal(value, casasDec);
  }
}

}  // namespace korvel::billing
