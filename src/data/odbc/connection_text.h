#pragma once

#include <string>
#include <string_view>

#include "data/connection_string.h"

namespace korvel::data::odbc {

/// The connection string that a driver manager reads, in the code page that the driver expects: keyword and value pairs, no value able to pass for a keyword.
/// It holds the password, so it must not reach any message. Throws Error(Failure::WrongLogin) for a value that the
/// driver could not tell from keywords.
std::string ConnectionText(const std::string& driver, const ConnectionString& target,
                           std::string_view password);

/// Where a server listens. Without a port it is a named instance whose port only its machine knows.
struct ServerAddress {
  std::string host;
  std::string port;

  /// Reads "host", "host,port", "host:port", "host\instance" and "host\instance,port", where the port decides.
  static ServerAddress Parse(std::string_view server);
};

}  // namespace korvel::data::odbc
