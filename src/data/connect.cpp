#include "data/connect.h"

#include <algorithm>

#include "data/connection_string.h"
#include "data/embedded/open.h"
#include "data/odbc/open.h"

namespace korvel::data {
namespace {

constexpr std::string_view kEmbeddedHost = "(LOCALDB)\\";

char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool IsEmbedded(std::string_view server) {
  return server.size() > kEmbeddedHost.size() &&
         std::equal(kEmbeddedHost.begin(), kEmbeddedHost.end(), server.begin(),
                    [](char wanted, char given) { return wanted == Upper(given); });
}

EmbeddedHost HostOf(const ServerSettings& settings, std::string_view server) {
  return {settings.embeddedFolder, std::string(server.substr(kEmbeddedHost.size())),
          settings.makesEmbedded ? MissingServer::Make : MissingServer::Refuse, settings.embeddedVersion};
}

std::unique_ptr<Connection> Open(const ServerSettings& settings, const ConnectionString& target,
                                 std::string_view password, int timeoutSeconds) {
  if (!IsEmbedded(target.server)) return OpenOdbc(settings.odbcDriver, target, password, timeoutSeconds);
  return OpenEmbedded(HostOf(settings, target.server), target, password, timeoutSeconds);
}

}  // namespace

bool IsMissingEmbedded(const ServerSettings& settings, std::string_view server) {
  return IsEmbedded(server) && IsMissing(HostOf(settings, server));
}

std::unique_ptr<Connection> Connect(const ServerSettings& settings, std::string_view connectionString,
                                    std::string_view password, int timeoutSeconds) {
  std::unique_ptr<Connection> connection =
      Open(settings, ConnectionString::Parse(connectionString), password, timeoutSeconds);
  connection->Observe(settings.observer);
  return connection;
}

}  // namespace korvel::data
