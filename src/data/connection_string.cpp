#include "data/connection_string.h"

#include <algorithm>

namespace korvel::data {
namespace {

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

}  // namespace

ConnectionString ConnectionString::Parse(std::string_view text) {
  ConnectionString parts;
  while (!text.empty()) {
    const std::string_view entry = text.substr(0, text.find(';'));
    text.remove_prefix(std::min(entry.size() + 1, text.size()));
    const std::size_t equals = entry.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string name = Lower(entry.substr(0, equals));
    const std::string_view value = entry.substr(equals + 1);
    if (name == "data source") parts.server = value;
    if (name == "initial catalog") parts.database = value;
    if (name == "user id") parts.login = value;
    if (name == "integrated security") parts.integratedSecurity = Lower(value) == "sspi";
  }
  return parts;
}

}  // namespace korvel::data
