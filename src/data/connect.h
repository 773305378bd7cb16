#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "data/connection.h"

namespace korvel::data {

/// Where servers are found, from the program's settings.
struct ServerSettings {
  /// Folder that holds the embedded servers, one folder each (`KORVEL_DADOS`).
  std::filesystem::path embeddedFolder;
  /// Whether opening `master` of an embedded server that is not there makes it; otherwise there is no such server.
  bool makesEmbedded = false;
  /// Version that embedded servers tell, as SQL Server writes it.
  std::string embeddedVersion = "9.00.5000.00";
  /// Name of the ODBC driver for all other servers.
  std::string odbcDriver = "FreeTDS";
  /// Told every statement that any connection sends; may be empty.
  StatementObserver observer;
};

/// Whether `server` is the Data Source of an embedded server that is not there, but could be made.
bool IsMissingEmbedded(const ServerSettings& settings, std::string_view server);

/// Opens a connection from a string of the form "Provider=SQLOLEDB.1;...;User ID=<login>;Initial Catalog=<database>;
/// Data Source=<server>", or with "Integrated Security=SSPI" in place of the login. The Data Source decides the driver:
/// `(LOCALDB)\NAME` is the embedded server NAME, anything else a SQL Server ("host", "host,port" or "host:port").
/// `timeoutSeconds` bounds the connection
/// and each statement. Throws Error: Failure::NoServer or Failure::WrongLogin, natives 18456 and 4060 as the server's.
std::unique_ptr<Connection> Connect(const ServerSettings& settings, std::string_view connectionString,
                                    std::string_view password, int timeoutSeconds);

}  // namespace korvel::data
