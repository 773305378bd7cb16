#include "databases/names.h"

#include <fmt/format.h>

#include <algorithm>

#include "data/error.h"
#include "data/sql_text.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

constexpr std::size_t kLongest = 128;
constexpr std::string_view kRefused = "'\"`[];,?";

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F;
}

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Stands in a statement without brackets. Accented letters would do too, but need no exception made for them.
bool IsRegular(std::string_view name) {
  return (IsLetter(name.front()) || name.front() == '_') &&
         std::ranges::all_of(name, [](char c) { return IsLetter(c) || (c >= '0' && c <= '9') || c == '_'; });
}

}  // namespace

bool IsName(std::string_view name) {
  return !name.empty() && toolkit::Trim(name) == name && toolkit::CutTo(name, kLongest) == name &&
         std::ranges::none_of(name, IsControl) && name.find_first_of(kRefused) == std::string_view::npos;
}

void RequireName(std::string_view name) {
  if (!IsName(name)) {
    throw data::Error(data::Failure::Statement, fmt::format("O nome indicado não é válido: [{}]", name));
  }
}

std::string AsName(std::string_view name) {
  RequireName(name);
  return IsRegular(name) ? std::string(name) : fmt::format("[{}]", name);
}

std::string AsArgument(std::string_view name) {
  RequireName(name);
  return IsRegular(name) ? std::string(name) : data::Quoted(name);
}

std::string QuotedName(std::string_view name) {
  RequireName(name);
  return data::Quoted(name);
}

}  // namespace korvel::databases
