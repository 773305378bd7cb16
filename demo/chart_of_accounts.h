#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "demo/taxpayers.h"

namespace korvel::demo {

/// Codes, without dots, of the movement accounts that the entries use.
namespace account {
inline constexpr std::string_view kCash = "111", kBank = "121", kSecondBank = "122",
                                  kOccasionalCustomers = "2118", kOccasionalSuppliers = "2218",
                                  kStaff = "2312", kIncomeTax = "241", kWithheldTax = "2421",
                                  kVatOnGoods = "24321", kVatOnServices = "24323", kVatOnSales = "24331",
                                  kVatPayable = "2436", kSocialSecurity = "245", kPurchases = "311",
                                  kGoods = "321", kEquipment = "433", kDepreciation = "438", kCapital = "511",
                                  kRetained = "561", kCostOfGoods = "611", kWages = "632",
                                  kWageCharges = "635", kDepreciationCost = "642", kSalesNormal = "7111",
                                  kSalesIntermediate = "7112", kSalesReduced = "7113", kSalesExempt = "7114",
                                  kSalesReturns = "717", kResultBeforeTax = "811", kTaxOfYear = "8121",
                                  kNetResult = "818", kAssetSales = "7871";
/// Services from outside, one account a kind.
inline constexpr std::string_view kServices[] = {"6221", "6224", "6241", "6261", "6262", "6266"};
}  // namespace account

/// Code, without dots, of the account of a customer or supplier, counted from 0.
std::string TaxpayerAccount(Kind kind, std::size_t index);

/// The other account that some customers have, "" for the rest.
std::string SecondAccount(std::size_t customer);

/// Writes `Contas`: classes, totals, movement accounts, and one account for every customer and supplier.
/// Every 40th customer has a second account under the same tax number. Titles keep to the 50 characters of
/// the staged chart. Returns how many were written. Throws data::Error.
std::int64_t WriteChartOfAccounts(data::Connection& lunder, const std::vector<Taxpayer>& customers,
                                  const std::vector<Taxpayer>& suppliers);

}  // namespace korvel::demo
