#include "data/odbc/connection_text.h"

#include <algorithm>

#include "data/error.h"
#include "data/odbc/latin_text.h"

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

/// FreeTDS takes the port apart from the host and is told its code page; other drivers know neither keyword.
bool IsFreeTds(const std::string& driver) {
  constexpr std::string_view kMark = "tds";
  const auto same = [](char a, char b) { return (IsLetter(a) ? a | 0x20 : a) == b; };
  return std::search(driver.begin(), driver.end(), kMark.begin(), kMark.end(), same) != driver.end();
}

/// A value in braces, with "}" doubled, unless it is harmless as it is.
std::string Braced(std::string_view value) {
  if (std::all_of(value.begin(), value.end(), IsPlain)) return std::string(value);
  std::string braced = "{";
  for (const char c : value) {
    braced += c;
    if (c == '}') braced += c;
  }
  return braced += '}';
}

/// FreeTDS reads braces in its own way: they end at the first "};" and a "}" in them stands for itself. So it needs
/// them for little, and has no writing for a value that holds their end.
std::string FreeTdsValue(std::string_view value) {
  const auto latin = ToLatin1(value);
  if (!latin || latin->find("};") != std::string::npos || latin->find('\0') != std::string::npos) {
    throw Error(Failure::WrongLogin, 18456, "28000",
                "O início de sessão falhou: há um carácter que o driver FreeTDS não aceita num nome ou na "
                "palavra-passe");
  }
  const bool plain = latin->find(';') == std::string::npos && !latin->starts_with('{');
  return plain ? *latin : '{' + *latin + '}';
}

/// Pairs of a keyword and a value, none of which can pass for a keyword in the driver's eyes.
class Pairs {
 public:
  explicit Pairs(const std::string& driver) : freeTds_(IsFreeTds(driver)) {}

  Pairs& Add(std::string_view keyword, std::string_view value) {
    text_ += keyword;
    text_ += '=';
    text_ += freeTds_ ? FreeTdsValue(value) : Braced(value);
    text_ += ';';
    return *this;
  }
  bool ForFreeTds() const { return freeTds_; }
  const std::string& Text() const { return text_; }

 private:
  bool freeTds_;
  std::string text_;
};

void AddServer(Pairs& pairs, const ServerAddress& address) {
  if (!pairs.ForFreeTds()) {
    pairs.Add("Server", address.port.empty() ? address.host : address.host + ',' + address.port);
    return;
  }
  pairs.Add("Server", address.host);
  if (!address.port.empty()) pairs.Add("Port", address.port);
  pairs.Add("TDS_Version", "7.4").Add("ClientCharset", "UTF-8");
}

void AddLogin(Pairs& pairs, const ConnectionString& target, std::string_view password) {
  if (target.integratedSecurity) {
    pairs.Add("Trusted_Connection", "Yes");
  } else {
    pairs.Add("UID", target.login).Add("PWD", password);
  }
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
  Pairs pairs(driver);
  AddServer(pairs, ServerAddress::Parse(target.server));
  if (!target.database.empty()) pairs.Add("Database", target.database);
  pairs.Add("APP",
            target.application.empty() ? std::string_view("Korvel") : std::string_view(target.application));
  AddLogin(pairs, target, password);
  // The driver's name is for the driver manager alone, which reads braces as all but FreeTDS do.
  return "Driver=" + Braced(driver) + ';' + pairs.Text();
}

}  // namespace korvel::data::odbc
