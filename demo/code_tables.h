#pragma once

#include <string_view>

#include "data/connection.h"

namespace korvel::demo {

/// Codes of the journals.
namespace journal {
inline constexpr std::string_view kOpening = "00", kSales = "01", kPurchases = "02", kCash = "03",
                                  kBank = "04", kStaff = "05", kGeneral = "06", kVat = "20",
                                  kPurchasesTransfer = "21", kGoodsTransfer = "22", kResults = "30",
                                  kProfitTax = "31", kClosing = "40";
}  // namespace journal

/// Writes `Diarios`, `Configura` with a journal for every role, and `TaxasIva`. Throws data::Error.
void WriteCodeTables(data::Connection& lunder);

}  // namespace korvel::demo
