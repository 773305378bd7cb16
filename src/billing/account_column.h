#pragma once

#include <optional>
#include <string>

#include "billing/billing_period.h"
#include "data/connection.h"
#include "session/context.h"

namespace korvel::billing {

/// The column of `Clientes` that gives the accounting account of a customer, between brackets; "''" where the period
/// has none. Its name is the parameter `EquivCliente`, with "SNC" behind it for years under the newer chart of
/// accounts. Nothing when `Clientes` has no such column, which is said. Throws data::Error.
std::optional<std::string> AccountColumn(const session::Context& context, data::Connection& company,
                                         data::Connection& brevant, const periods::PeriodKey& period);

}  // namespace korvel::billing
