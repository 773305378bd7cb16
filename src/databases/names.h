#pragma once

#include <array>
#include <string>
#include <string_view>

/// Names that statements concatenate: of databases, tables, logins, roles.
namespace korvel::databases {

/// The databases that a server brings along.
inline constexpr std::array<std::string_view, 4> kServerDatabases{"master", "model", "msdb", "tempdb"};

/// What every name of a server's object must be: not blank, no blanks around it, at most 128 characters, none of
/// quotes, brackets, separators, "?" (the mark of a bound value) and control characters.
bool IsName(std::string_view name);

/// Throws data::Error for a text that is no name; it quotes the text.
void RequireName(std::string_view name);

/// A checked name as it stands in a statement: between brackets unless it is a regular identifier.
std::string AsName(std::string_view name);
/// A checked name as an argument of a procedure: between quotes unless it is a regular identifier.
std::string AsArgument(std::string_view name);
/// A checked name between quotes.
std::string QuotedName(std::string_view name);

}  // namespace korvel::databases
