#pragma once

#include <array>
#include <cstdint>

#include "billing/billing_period.h"
#include "billing/document_classes.h"
#include "data/connection.h"
#include "data/currency.h"

namespace korvel::billing {

/// What the section says of all its documents. Removed documents are outside all of it.
struct SectionTotals {
  std::array<std::int64_t, kDocumentClasses.size()> documents{};  // by class
  data::Currency debit;
  data::Currency credit;

  std::int64_t NumberOfEntries() const;
};

/// Documents of the period by class. Throws data::Error.
void CountDocuments(data::Connection& brevant, const BillingPeriod& period, const ClassFilters& filters,
                    SectionTotals& totals);
/// Adds the net sums of the classes, each rounded once to `casasDec`. Throws data::Error and std::overflow_error.
void SumDocuments(data::Connection& brevant, const BillingPeriod& period, const ClassFilters& filters,
                  int casasDec, SectionTotals& totals);

}  // namespace korvel::billing
