#pragma once

#include "data/embedded/procedures/procedure.h"
#include "data/embedded/slots.h"
#include "data/embedded/tree.h"

namespace korvel::data::embedded {

/// Runs a procedure of the server. Throws 2812 for one that is not there and 201 for arguments that do not fit.
RowTables RunProcedure(const Call& call, Session& session, const ServerView& view, Parameters parameters);

}  // namespace korvel::data::embedded
