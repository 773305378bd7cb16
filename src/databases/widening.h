#pragma once

#include "data/connection.h"
#include "databases/passed_over.h"

namespace korvel::databases {

/// Widens every column of the database that holds a login to 128 characters; also the columns `Login_...` of
/// the parameters, whose names match too. Indexes known to stand on such columns are dropped first.
void WidenLoginColumns(data::Connection& connection, PassedOver& passedOver);

}  // namespace korvel::databases
