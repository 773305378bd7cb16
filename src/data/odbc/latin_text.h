#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvel::data::odbc {

/// ISO-8859-1, which FreeTDS speaks until a connection stands, whatever code page it has been told: logins go to it so,
/// and refusals come from it so.
/// Nothing for a text with a character that the code page lacks.
std::optional<std::string> ToLatin1(std::string_view utf8);
/// The bytes themselves where they are UTF-8, else what they say in ISO-8859-1.
std::string AsUtf8(std::string bytes);

}  // namespace korvel::data::odbc
