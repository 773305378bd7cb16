#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The reversible hiding of single characters used for passwords in tables and on the command line. It keeps
/// nothing secret from anyone who knows of it.
namespace korvel::toolkit {

/// Eight binary digits of a byte, the highest first, and back; characters other than "1" count as "0".
std::string DecToBin(std::uint8_t value);
std::uint8_t BinToDec(std::string_view digits);
/// Eight binary digits, each turned into its complement, the last four going first.
std::string InverteBin(std::string_view digits);

/// Works on the code-page byte of each character and is its own inverse. The result is text in UTF-8 again:
/// each byte is held as its windows-1252 character (see code_page.h), so that any result survives a way
/// through a varchar column or a command line; it may hold control characters, U+0000 among them. Length in
/// characters is kept. Throws std::invalid_argument for text that windows-1252 cannot hold.
std::string Encrypt(std::string_view texto);
inline std::string Decrypt(std::string_view texto) {
  return Encrypt(texto);
}

}  // namespace korvel::toolkit
