#pragma once

#include <string>
#include <string_view>

namespace korvel::data::embedded {

/// A password as a server keeps it: "<salt>:<hash>" in hexadecimal, PBKDF2 with SHA-256. Upper and lower case differ.
std::string HashPassword(std::string_view password);
bool MatchesPassword(std::string_view password, std::string_view kept);

}  // namespace korvel::data::embedded
