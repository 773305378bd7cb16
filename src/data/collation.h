#pragma once

#include <string>
#include <string_view>

namespace korvel::data {

/// How the servers of this system compare text: without regard to case, with regard to accents, a shorter text
/// padded with blanks so that trailing blanks do not count. The order is that of SQL Server's
/// SQL_Latin1_General_CP1_CI_AS for varchar (sort order 52): symbols, then digits, then letters, each accented
/// letter behind its base letter. Characters outside windows-1252 sort behind all others, by code point.

/// Below 0, 0 or above 0 as `a` sorts before, with or behind `b`.
int Collate(std::string_view a, std::string_view b);
inline bool SameText(std::string_view a, std::string_view b) {
  return Collate(a, b) == 0;
}
/// Equal for texts that collate as equal; for hashed look-ups that must find what the server would find.
std::string CollationKey(std::string_view text);

}  // namespace korvel::data
