#include "billing/billing_period.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "toolkit/text.h"

namespace korvel::billing {

std::optional<BillingPeriod> BillingPeriod::FromChave(std::string_view chave) {
  if (toolkit::IsBlank(chave)) return std::nullopt;
  const auto part = [&](std::size_t from, std::size_t length) {
    return std::string(from < chave.size() ? chave.substr(from, length) : std::string_view());
  };
  return BillingPeriod{{part(0, 4), part(4, 10), part(14, 10)}, part(24, std::string_view::npos)};
}

std::string BillingPeriod::Dates() const {
  return fmt::format(" And Data>={} and Data<={}", data::Quoted(key.startDate), data::Quoted(key.endDate));
}

std::string BillingPeriod::Documents() const {
  if (toolkit::IsBlank(cliente)) return Dates();
  return Dates() + " and Codigo=" + data::Quoted(cliente);
}

std::string BillingPeriod::Staged() const {
  return key.Condition() + " and isnull(cliente,'')=" + data::Quoted(cliente);
}

std::optional<periods::Basis> ReadBasis(data::Connection& company, const periods::PeriodKey& key) {
  const data::Recordset header =
      company.Query("Select TaxAccountingBasis from TabHeader Where NumRegisto>0  And " + key.Condition() +
                    " order by NumRegisto");
  if (header.Eof()) return std::nullopt;
  const std::string_view basis = header.Text(0);
  if (basis == "C") return periods::Basis::Accounting;
  if (basis == "F") return periods::Basis::Billing;
  if (basis == "I") return periods::Basis::Integrated;
  return std::nullopt;
}

}  // namespace korvel::billing
