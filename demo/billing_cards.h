#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "data/connection.h"
#include "demo/taxpayers.h"

namespace korvel::demo {

/// Code in the billing product of a customer, counted from 0.
std::string CustomerCard(std::size_t index);
/// Code of a branch's general account, for buyers who have none of their own.
std::string GeneralCard(std::size_t branch);

/// Writes `Clientes`, customers and general accounts, and `TabPostal` with the postal codes of all buyers.
/// Throws data::Error.
void WriteCustomers(data::Connection& brevant, const std::vector<Taxpayer>& customers,
                    const std::vector<Taxpayer>& persons);

/// Writes `PagaComo`, `Armazens` and `Configura`. Throws data::Error.
void WriteBillingCodes(data::Connection& brevant);

/// Codes of `PagaComo`.
inline constexpr std::string_view kPayments[] = {"NUM", "MB", "CC", "CHQ", "TIC", "TRF"};

}  // namespace korvel::demo
