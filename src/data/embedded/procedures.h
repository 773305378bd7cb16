#pragma once

#include <optional>

#include "data/embedded/rows.h"
#include "data/embedded/slots.h"
#include "data/embedded/system_tables.h"
#include "data/embedded/tree.h"

namespace korvel::data::embedded {

/// Runs a procedure of the server. Nothing for one that brings no rows. Throws 2812 for one that is not there and 201
/// or 8145 for arguments that do not fit.
std::optional<RowTable> RunProcedure(const Call& call, const ServerView& view, Parameters parameters);

}  // namespace korvel::data::embedded
