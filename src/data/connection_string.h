#pragma once

#include <string>
#include <string_view>

namespace korvel::data {

/// The parts of a connection string that decide a connection.
struct ConnectionString {
  std::string server;
  std::string database;
  std::string login;
  bool integratedSecurity = false;
  std::string application = "Korvel";  // as others see it among the server's processes

  /// Reads "Name=value;..." with names in any case; unknown names are passed over. A value may stand between
  /// double quotes, a double quote in it as two.
  static ConnectionString Parse(std::string_view text);
};

}  // namespace korvel::data
