#include "support/tds/markers.h"

#include <algorithm>
#include <cctype>

namespace korvel::tds {
namespace {

bool IsNamePart(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return std::isalnum(byte) != 0 || c == '_' || c == '@' || c == '$' || c == '#' || byte >= 0x80;
}

bool SameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
  });
}

/// Where what starts at `at` ends, its closing mark included: the whole rest when it does not end.
std::size_t Behind(std::string_view sql, std::size_t at, std::string_view closing) {
  const std::size_t end = sql.find(closing, at);
  return end == std::string_view::npos ? sql.size() : end + closing.size();
}

/// The end of a quoted name or text, or of a comment, that starts here; `at` itself when none does.
std::size_t EndOfQuoted(std::string_view sql, std::size_t at) {
  const std::string_view rest = sql.substr(at);
  if (rest.starts_with("--")) return Behind(sql, at, "\n");
  if (rest.starts_with("/*")) return Behind(sql, at + 2, "*/");
  if (rest.starts_with('\'')) return Behind(sql, at + 1, "'");
  if (rest.starts_with('"')) return Behind(sql, at + 1, "\"");
  if (rest.starts_with('[')) return Behind(sql, at + 1, "]");
  return at;
}

std::size_t EndOfName(std::string_view sql, std::size_t at) {
  while (at < sql.size() && IsNamePart(sql[at])) ++at;
  return at;
}

}  // namespace

Marked MarkParameters(std::string_view sql, const std::vector<std::string>& names) {
  Marked marked;
  for (std::size_t at = 0; at < sql.size();) {
    std::size_t end = EndOfQuoted(sql, at);
    if (end == at) end = EndOfName(sql, at);
    if (end == at) end = at + 1;
    const std::string_view piece = sql.substr(at, end - at);
    const auto name = std::find_if(names.begin(), names.end(),
                                   [&](const std::string& known) { return SameName(known, piece); });
    if (name != names.end()) marked.order.push_back(static_cast<std::size_t>(name - names.begin()));
    marked.sql += name != names.end() ? std::string_view("?") : piece;
    at = end;
  }
  return marked;
}

std::vector<std::string> DeclaredNames(std::string_view declaration) {
  std::vector<std::string> names;
  int depth = 0;
  bool expected = true;
  for (std::size_t at = 0; at < declaration.size(); ++at) {
    const char c = declaration[at];
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (c == ',' && depth == 0) expected = true;
    if (c != '@' || !expected) continue;
    names.emplace_back(declaration.substr(at, EndOfName(declaration, at) - at));
    expected = false;
  }
  return names;
}

}  // namespace korvel::tds
