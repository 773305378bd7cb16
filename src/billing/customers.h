#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "billing/billing_period.h"
#include "periods/staging.h"
#include "session/context.h"

/// The customers of Brevant, staged into `TabCustomerGEST`. Periods offered: kBillingOrIntegratedPeriods. Failures are
/// shown through the context's dialogs.
namespace korvel::billing {

/// The grid `lvwClientes` and its staged table.
const periods::StagedTable& ClientesTable();

/// Columns of the grid, which others correct or look at. The identity of a customer in the file is the tax number,
/// so the code and the tax number of a row are the same.
namespace customer {
inline constexpr std::size_t kNumRegisto = 0, kCustomerId = 1, kAccountId = 2, kTaxId = 3, kCompanyName = 4,
                             kContact = 5, kBilingAddress = 6, kBuildingNumber = 7, kStreetName = 8,
                             kAddressDetail = 9, kCity = 10, kPostalCode = 11, kRegion = 12, kCountry = 13,
                             kShipToAddress = 14, kShipBuildingNumber = 15, kShipStreetName = 16,
                             kShipAddressDetail = 17, kShipCity = 18, kShipPostalCode = 19, kShipRegion = 20,
                             kShipCountry = 21, kTelephone = 22, kFax = 23, kEmail = 24, kWebsite = 25,
                             kSelfBilling = 26, kColumnCount = 27;
}  // namespace customer

/// Colour of the row of a general account, whose buyers have rows of their own: blue, as BGR.
inline constexpr std::uint32_t kGeneralAccountColour = 16711680;

/// One row a tax number, in the order of the customers' codes, the first to come kept; behind each general account
/// the buyers of its documents of the period. Countries missing in the documents, of any period, are filled in at the
/// source first. Nothing without a period, when the user cancels, and when a database does not open or fails.
std::optional<periods::Grid> CalcularClientes(const session::Context& context, const BillingPeriod& period);

/// Replaces the rows of the period and its customer. False
///  - without a period or rows, for a row without a code, which is said, and when the company database does not open
///    or fails: nothing has changed;
///  - at the first row that lacks a required value, which is said: the rows before it stand in place of the old ones,
///    as designed.
bool GravarClientes(const session::Context& context, const BillingPeriod& period,
                    const periods::Grid& clientes);

/// The staged rows of the period, all customers'.
std::optional<periods::Grid> CarregarClientes(const session::Context& context,
                                              const periods::PeriodKey& period);

}  // namespace korvel::billing
