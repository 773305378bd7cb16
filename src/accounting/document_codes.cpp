#include "accounting/document_codes.h"

#include <algorithm>

#include "toolkit/text.h"
#include "toolkit/utf8.h"

namespace korvel::accounting {
namespace {

constexpr std::u32string_view kAccentedLetters = U"ÁÀÃÂáàãâÉÈÊéèêÍÌÎíìîÓÒÕÔóõôÚÙÛúùû";

constexpr bool IsPlain(char32_t c) {
  return (c >= U'0' && c <= U'9') || (c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z') || c == U'-' ||
         c == U'+';
}

}  // namespace

bool IsValidCode(std::string_view code) {
  bool valid = true;
  toolkit::ForEachCharacter(code, [&](char32_t c, std::string_view) {
    if (!IsPlain(c) && kAccentedLetters.find(c) == std::u32string_view::npos) valid = false;
  });
  return valid;
}

std::string CleanNumber(std::string_view numero) {
  return toolkit::Tirar_Letras_e_Substituir_str(toolkit::Tirar_Letras_e_Substituir_str(numero, "+", "Y"), "-",
                                                "K");
}

std::string SourceDocumentOf(std::string_view cleanNumber) {
  constexpr std::size_t kTypeLength = 3;
  const std::size_t length = toolkit::CharacterCount(cleanNumber);
  if (length < kTypeLength) return {};
  const std::string_view number = toolkit::CutTo(cleanNumber, length - kTypeLength);
  return std::string(cleanNumber.substr(number.size())).append(number);
}

}  // namespace korvel::accounting
