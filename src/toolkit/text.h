#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Text in UTF-8, counted in characters (code points). A "blank" is the character U+0020 and nothing else.
namespace korvel::toolkit {

/// Views into `text`.
std::string_view TrimLeft(std::string_view text);
std::string_view TrimRight(std::string_view text);
std::string_view Trim(std::string_view text);
inline bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

/// The first `characters` characters, as a view into `text`.
std::string_view CutTo(std::string_view text, std::size_t characters);
/// Letters of windows-1252, accented ones included; others stay.
std::string Upper(std::string_view text);
std::string Lower(std::string_view text);
/// Equal without regard to case, accents and blanks counting.
bool SameIgnoringCase(std::string_view a, std::string_view b);
/// Every `what` replaced by `with`, from left to right; an empty `what` replaces nothing.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with);

/// Pieces between separators of any length, each trimmed. An empty text or separator gives the trimmed text
/// alone.
std::vector<std::string> StripString(std::string_view texto, std::string_view separador);
/// Pieces between separators, untrimmed, where a run of separators counts as one and those in front are
/// dropped; one at the end leaves an empty last element. A blank text gives one empty element.
std::vector<std::string> FastStripString(std::string_view texto, std::string_view separador);
/// Each CR and each LF replaced by the first character of `substituto`, then trimmed. An empty one replaces
/// nothing.
std::string StripVBCRLFString(std::string_view texto, std::string_view substituto);
/// Portuguese letters and "€ºª" without their marks; exact in case, other characters pass.
std::string ReplacePortChar(std::string_view texto);

/// The tax-number cleaner: the text without any blank. The first form also trims its argument in place.
std::string LimpaContribuinte_str(std::string& texto);
std::string LimpaContribuinte_str(std::string_view texto);
inline std::string LimpaContribuinte_str(const char* texto) {
  return LimpaContribuinte_str(std::string_view(texto));
}
/// The text without the characters equal to `letra`; "" for a blank text.
std::string Tirar_Espacos_str(std::string_view texto, std::string_view letra);
/// Each character equal to `letra` replaced by `substituto`.
std::string Tirar_Letras_e_Substituir_str(std::string_view texto, std::string_view letra,
                                          std::string_view substituto);
/// Trimmed, without any ".".
std::string TiraPontos(std::string_view texto);

/// Every character a digit "0" to "9"; true for the empty text.
bool SoDigitos(std::string_view texto);
/// Every character a digit, "-", "+" or, without its accent, an ASCII letter; true for the empty text.
bool SoAlfanumerico(std::string_view texto);
bool TemDigito(std::string_view texto);
/// Acute, grave, tilde and circumflex vowels (no diaeresis, no tilde but on A and O) to their plain letters.
std::string TiraAcentos(std::string_view texto);
/// Upper-cases and trims a key value in place.
void ChaveMaiuscula(std::string& texto);

/// The `n`-th word of a text, from 1; "" when there are fewer. Words stand apart by blanks.
std::string GetArg(std::string_view texto, std::size_t n);
/// How often a character stands in a text, ignoring case.
std::size_t ContaCHR(std::string_view texto, std::string_view caracter);

}  // namespace korvel::toolkit
