#pragma once

#include <memory>
#include <string>

#include "data/connection.h"

namespace korvel::data::odbc {

/// Opens whatever a complete ODBC connection string names. Throws Error as OpenOdbc does.
std::unique_ptr<Connection> OpenText(const std::string& connectionText, int timeoutSeconds);

}  // namespace korvel::data::odbc
