#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "data/connection_string.h"

namespace korvel::data {

/// Opens a SQL Server through the ODBC driver of that name (or path of its library). The server is "host",
/// "host,port" or "host:port"; without a port 1433 is used. "host\instance" without a port leaves it to the driver
/// to ask that machine for the port. `timeoutSeconds` bounds the connection and each statement.
/// Throws Error: Failure::WrongLogin, or Failure::NoServer for all else that keeps the connection from opening.
std::unique_ptr<Connection> OpenOdbc(const std::string& driver, const ConnectionString& target,
                                     std::string_view password, int timeoutSeconds);

}  // namespace korvel::data
