#pragma once

#include <string_view>

#include "data/connection.h"
#include "demo/branches.h"

namespace korvel::demo {

enum class Rate { Exempt, Reduced, Intermediate, Normal };

/// A VAT code as the tables of both products have it.
struct VatCode {
  std::string_view code;
  std::string_view description;
  std::string_view zone;
  Rate rate;
  int percent;
  std::string_view taxType;
  std::string_view taxRegion;
  std::string_view taxCode;
  std::string_view taxDescription;
  std::string_view exemptionReason = {};
  std::string_view expires = {};  // YYYY-MM-DD
};

/// The code of sales from a branch inside the country.
const VatCode& SaleVat(const Branch& branch, Rate rate);
/// The code of sales to other countries.
const VatCode& ForeignVat();

/// Writes `TaxasIva` of the accounting product. Throws data::Error.
void WriteAccountingVat(data::Connection& lunder);
/// Writes `TabIVA` of the billing product, codes of sales and of purchases. Throws data::Error.
void WriteBillingVat(data::Connection& brevant);

}  // namespace korvel::demo
