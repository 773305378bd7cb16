#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/procedures/procedure.h"
#include "data/embedded/tree.h"

namespace korvel::data::embedded {

/// An argument of a call: its value as text, nothing for NULL.
struct GivenArgument {
  std::string name;  // with its "@"; empty: by position
  std::optional<std::string> value;
};

bool IsServerProcedure(std::string_view name);

/// Runs a procedure of the server. Throws 2812 for one that is not there and 201 for arguments that do not fit.
RowTables RunProcedure(const ObjectName& name, const std::vector<GivenArgument>& given, Session& session,
                       const ServerView& view);

}  // namespace korvel::data::embedded
