#pragma once

#include <string_view>

#include "data/embedded/convert.h"

namespace korvel::data::embedded {

class Session;

/// What functions and variables of the server tell of a session and its server, by name: "user_name", "host_name",
/// "app_name", "@@spid", "@@version", "is_srvrolemember" (role, login or blank), "is_member" (role),
/// "databasepropertyex" (database, property). NULL for what there is not.
OwnedStored ServerFact(Session& session, std::string_view fact, std::string_view first,
                       std::string_view second);

}  // namespace korvel::data::embedded
