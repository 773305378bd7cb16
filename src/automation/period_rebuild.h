#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "periods/period.h"
#include "session/context.h"

namespace korvel::automation {

/// Clears all that is staged for a period and makes its row of `TabHeader` anew from the last one of its kind, in one
/// transaction. `cliente` is the customer of the period's earlier row. Returns the customer of the new one, "" for a period
/// of all customers; nothing when there is no row of the kind or its copy fails, and nothing has changed then. Throws
/// data::Error likewise.
std::optional<std::string> RebuildPeriod(data::Connection& company, const periods::PeriodKey& period,
                                         periods::Basis basis, std::string_view cliente);

}  // namespace korvel::automation
