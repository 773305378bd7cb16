#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "data/connection.h"
#include "data/connection_string.h"

namespace korvel::data {

enum class MissingServer { Make, Refuse };

/// Opens a database of an embedded server, which lives in a folder of its name (upper case) below `serversFolder`.
/// With MissingServer::Make, opening `master` as "sa" with a blank password, or by integrated security, makes a server
/// that is not there yet.
/// By integrated security only the operating system's user who owns the server's folder enters.
/// Throws Error: Failure::NoServer without such a server, native 4060 without such a database, 18456 for a login or
/// password that is not right, 824 for a damaged file.
std::unique_ptr<Connection> OpenEmbedded(const std::filesystem::path& serversFolder,
                                         std::string_view serverName, const ConnectionString& wanted,
                                         std::string_view password, int timeoutSeconds,
                                         MissingServer missing);

}  // namespace korvel::data
