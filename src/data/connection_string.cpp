#include "data/connection_string.h"

#include <algorithm>

#include "data/take_char.h"

namespace korvel::data {
namespace {

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

/// Takes what stands in front of one of `marks` off the text; the mark stays.
std::string_view TakeUpTo(std::string_view& text, std::string_view marks) {
  const std::string_view taken = text.substr(0, text.find_first_of(marks));
  text.remove_prefix(taken.size());
  return taken;
}

/// Takes a value; between double quotes it may hold any character, a double quote as two of them.
std::string TakeValue(std::string_view& text) {
  if (!TakeChar(text, '"')) return std::string(TakeUpTo(text, ";"));
  std::string value(TakeUpTo(text, "\""));
  while (TakeChar(text, '"') && TakeChar(text, '"')) value.append("\"").append(TakeUpTo(text, "\""));
  TakeUpTo(text, ";");
  return value;
}

}  // namespace

ConnectionString ConnectionString::Parse(std::string_view text) {
  ConnectionString parts;
  for (; !text.empty(); TakeChar(text, ';')) {
    const std::string name = Lower(TakeUpTo(text, "=;"));
    if (!TakeChar(text, '=')) continue;
    const std::string value = TakeValue(text);
    if (name == "data source") parts.server = value;
    if (name == "initial catalog") parts.database = value;
    if (name == "user id") parts.login = value;
    if (name == "application name") parts.application = value;
    if (name == "integrated security") parts.integratedSecurity = Lower(value) == "sspi";
  }
  return parts;
}

}  // namespace korvel::data
