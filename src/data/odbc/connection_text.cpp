#include "data/odbc/connection_text.h"

#include <algorithm>

namespace korvel::data::odbc {
namespace {

constexpr std::string_view kDefaultPort = "1433";

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool IsPlain(char c) {
  return IsDigit(c) || IsLetter(c) || c == '.' || c == '-' || c == '_' || c == '\\' || c == '/' || c == ',';
}

/// A value as the connection string carries it: in braces, with "}" doubled, unless it is harmless as it is. Nothing
/// stays nothing: FreeTDS would take empty braces for the value itself.
std::string Braced(std::string_view value) {
  if (std::all_of(value.begin(), value.end(), IsPlain)) return std::string(value);
  std::string braced = "{";
  for (const char c : value) {
    braced += c;
    if (c == '}') braced += c;
  }
  return braced += '}';
}

/// FreeTDS takes the port apart from the host and is told its code page; other drivers know neither keyword.
bool IsFreeTds(const std::string& driver) {
  constexpr std::string_view kMark = "tds";
  const auto same = [](char a, char b) { return (IsLetter(a) ? a | 0x20 : a) == b; };
  return std::search(driver.begin(), driver.end(), kMark.begin(), kMark.end(), same) != driver.end();
}

std::string ServerPart(const std::string& driver, const ServerAddress& address) {
  if (!IsFreeTds(driver)) {
    return "Server=" + Braced(address.port.empty() ? address.host : address.host + ',' + address.port);
  }
  const std::string port = address.port.empty() ? "" : ";Port=" + Braced(address.port);
  return "Server=" + Braced(address.host) + port + ";TDS_Version=7.4;ClientCharset=UTF-8";
}

std::string LoginPart(const ConnectionString& target, std::string_view password) {
  if (target.integratedSecurity) return "Trusted_Connection=Yes";
  return "UID=" + Braced(target.login) + ";PWD=" + Braced(password);
}

}  // namespace

ServerAddress ServerAddress::Parse(std::string_view server) {
  ServerAddress address;
  const std::size_t mark = server.find_last_of(",:");
  const std::string_view port = mark == std::string_view::npos ? "" : server.substr(mark + 1);
  const bool hasPort = !port.empty() && std::all_of(port.begin(), port.end(), IsDigit);
  address.host = hasPort ? server.substr(0, mark) : server;
  const std::size_t instance = address.host.find('\\');
  if (hasPort) address.host.resize(std::min(instance, address.host.size()));
  if (address.host == "." || address.host == "(local)") address.host = "localhost";
  address.port = hasPort ? port : instance == std::string::npos ? kDefaultPort : "";
  return address;
}

std::string ConnectionText(const std::string& driver, const ConnectionString& target,
                           std::string_view password) {
  const std::string database = target.database.empty() ? "" : ";Database=" + Braced(target.database);
  return "Driver=" + Braced(driver) + ';' + ServerPart(driver, ServerAddress::Parse(target.server)) +
         database + ";APP=" + Braced(target.application.empty() ? "Korvel" : target.application) + ';' +
         LoginPart(target, password);
}

}  // namespace korvel::data::odbc
