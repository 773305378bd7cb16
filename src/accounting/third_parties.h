#pragma once

#include <optional>
#include <string_view>

#include "periods/period.h"
#include "periods/staging.h"
#include "session/context.h"

/// Customers and suppliers of the books, made from Lunder's accounts and completed by the taxpayers that
/// occur in the period's movements only. Failures are shown through the context's dialogs.
namespace korvel::accounting {

/// All in which customers and suppliers differ.
struct ThirdPartyKind {
  const periods::StagedTable* table;
  std::string_view periodKinds;         // condition on the periods offered
  std::string_view accountLetter;       // `Contas.CliFor`
  std::string_view recapitulative;      // `Contas.RCRF` of a recapitulative account
  std::string_view unknownHomeCountry;  // for an account with a blank country
};

/// `TabCustomerPOC` with the grid `lvwClientes`, and `TabSupplierPOC`.
const ThirdPartyKind& Clientes();
const ThirdPartyKind& Fornecedores();

/// Columns of both grids that others correct or look at.
namespace third_party {
inline constexpr std::size_t kNumRegisto = 0, kAccountId = 1, kTaxId = 2, kCompanyName = 3, kContact = 4,
                             kBilingAddress = 5, kBuildingNumber = 6, kStreetName = 7, kAddressDetail = 8,
                             kCity = 9, kPostalCode = 10, kRegion = 11, kCountry = 12, kShipToAddress = 13,
                             kShipBuildingNumber = 14, kShipStreetName = 15, kShipAddressDetail = 16,
                             kShipCity = 17, kShipPostalCode = 18, kShipRegion = 19, kShipCountry = 20,
                             kTelephone = 21, kFax = 22, kEmail = 23, kWebsite = 24, kSelfBilling = 25,
                             kCode = 26, kItemKey = 27;
}  // namespace third_party

/// One row a taxpayer, the last account read winning, all ticked. Nothing when a database cannot be read, the
/// user cancels or an account has no tax number: that stops the load, and is meant to.
std::optional<periods::Grid> CalcularTerceiros(const session::Context& context,
                                               const periods::PeriodKey& period, const ThirdPartyKind& kind);

/// Replaces the period's rows by the ticked ones. False when a row lacks a required value (the earlier rows
/// are gone then) or the company database refuses (nothing has changed then). A blank `kCode` takes the row's
/// `kItemKey`, the tax number under which the row was made.
bool GravarTerceiros(const session::Context& context, const periods::PeriodKey& period,
                     const ThirdPartyKind& kind, periods::Grid rows);

/// The period's rows as they are staged.
std::optional<periods::Grid> CarregarTerceiros(const session::Context& context,
                                               const periods::PeriodKey& period, const ThirdPartyKind& kind);

}  // namespace korvel::accounting
