#pragma once

#include <cstddef>
#include <optional>

#include "periods/staging.h"

namespace korvel::periods {

/// The first ticked row in which a required column is blank: the one at which SaveStaged stops.
std::optional<std::size_t> FirstIncomplete(const StagedTable& table, const Grid& rows);

}  // namespace korvel::periods
