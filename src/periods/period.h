#pragma once

#include <string>
#include <string_view>

namespace korvel::periods {

/// The key of an audit period: what every staged row carries.
struct PeriodKey {
  std::string fiscalYear;  // four digits
  std::string startDate;   // YYYY-MM-DD
  std::string endDate;     // YYYY-MM-DD

  friend bool operator==(const PeriodKey&, const PeriodKey&) = default;

  /// "FiscalYear='..' and StartDate='..' and EndDate='..'", values quoted by data::Quoted.
  std::string Condition() const;
};

/// The kind of system of a period, `TabHeader.TaxAccountingBasis`.
enum class Basis : char { Accounting = 'C', Billing = 'F', Integrated = 'I' };

}  // namespace korvel::periods
