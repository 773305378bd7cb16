#include "toolkit/scramble.h"

#include <bitset>
#include <stdexcept>

#include "toolkit/code_page.h"

namespace korvel::toolkit {

std::string DecToBin(std::uint8_t value) {
  return std::bitset<8>(value).to_string();
}

std::uint8_t BinToDec(std::string_view digits) {
  unsigned value = 0;
  for (const char digit : digits) value = value * 2 + (digit == '1' ? 1 : 0);
  return static_cast<std::uint8_t>(value);
}

std::string InverteBin(std::string_view digits) {
  constexpr std::size_t kHalf = 4;
  std::string inverted(digits.substr(kHalf));
  inverted += digits.substr(0, kHalf);
  for (char& digit : inverted) digit = digit == '1' ? '0' : '1';
  return inverted;
}

std::string Encrypt(std::string_view texto) {
  CodePageText text = ToCodePage(texto);
  if (text.missing > 0)
    throw std::invalid_argument("texto com caracteres fora da página de códigos windows-1252");
  for (char& c : text.bytes) {
    c = static_cast<char>(BinToDec(InverteBin(DecToBin(static_cast<std::uint8_t>(c)))));
  }
  return FromCodePage(text.bytes);
}

}  // namespace korvel::toolkit
