#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "data/connection.h"
#include "data/embedded/session.h"

namespace korvel::data::embedded {

/// See Connection::Call. Outputs are changed only when the procedure has come to its end.
std::int64_t CallProcedure(const std::shared_ptr<Session>& session, std::string_view procedure,
                           std::span<ProcedureArgument> arguments);

}  // namespace korvel::data::embedded
