#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "data/connection_string.h"

namespace korvel::data {

enum class MissingServer { Make, Refuse };

/// Version that an embedded server tells unless it is asked to tell another.
constexpr std::string_view kEmbeddedVersion = "9.00.5000.00";

/// An embedded server, which lives in a folder of its name (upper case) below `folder`. With MissingServer::Make,
/// opening `master` as "sa" with a blank password, or by integrated security, makes a server that is not there yet.
struct EmbeddedHost {
  std::filesystem::path folder;
  std::string name;
  MissingServer missing = MissingServer::Refuse;
  std::string version{kEmbeddedVersion};
};

/// Whether a server of that name could be, and is not there.
bool IsMissing(const EmbeddedHost& host);

/// Opens a database of an embedded server. By integrated security the operating system's user who owns the server's
/// folder enters, and the accounts that the server knows.
/// Throws Error: Failure::NoServer without such a server, native 4060 without such a database or the right to it, 18456
/// for a login or password that is not right, 824 for a damaged file.
std::unique_ptr<Connection> OpenEmbedded(const EmbeddedHost& host, const ConnectionString& wanted,
                                         std::string_view password, int timeoutSeconds);

}  // namespace korvel::data
