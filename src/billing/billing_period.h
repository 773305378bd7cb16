#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "periods/period.h"

namespace korvel::billing {

/// Which periods the extractions offer, as a condition to append to the choice of periods.
inline constexpr std::string_view kBillingOrIntegratedPeriods =
    " and (TaxAccountingBasis='F' or TaxAccountingBasis='I') ";

/// An audit period as the billing side sees it: it may be limited to one customer.
struct BillingPeriod {
  periods::PeriodKey key;
  std::string cliente;  // code of the only customer, empty for all

  /// From the key of the period selector: year (4 characters), start (10), end (10), customer (the rest).
  /// Nothing for a blank key.
  static std::optional<BillingPeriod> FromChave(std::string_view chave);

  /// " And Data>='..' and Data<='..'", to append to a condition on documents.
  std::string Dates() const;
  /// The same and the customer, when there is one.
  std::string Documents() const;
  /// "FiscalYear='..' and ... and isnull(cliente,'')='..'": the rows that one run stages.
  std::string Staged() const;
};

/// The kind of system of a period as `TabHeader` has it; nothing without the row and for other values.
/// Throws data::Error.
std::optional<periods::Basis> ReadBasis(data::Connection& company, const periods::PeriodKey& key);

}  // namespace korvel::billing
