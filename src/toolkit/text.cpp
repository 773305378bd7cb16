#include "toolkit/text.h"

#include <algorithm>

#include "toolkit/utf8.h"

namespace korvel::toolkit {
namespace {

constexpr std::string_view kBlank = " ";

bool IsDigit(char32_t c) {
  return c >= U'0' && c <= U'9';
}
bool IsAsciiLetter(char32_t c) {
  return (c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z');
}

/// Pairs of letters of windows-1252 whose numbers do not lie 32 apart.
struct LetterPair {
  char32_t lower;
  char32_t upper;
};
constexpr LetterPair kOddPairs[] = {{0xFF, 0x178}, {0x153, 0x152}, {0x161, 0x160}, {0x17E, 0x17D}};

bool IsUpperInRow(char32_t c) {
  return (c >= U'A' && c <= U'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7);
}

char32_t ToUpper(char32_t c) {
  if (c >= 0x20 && IsUpperInRow(c - 0x20)) return c - 0x20;
  for (const LetterPair& pair : kOddPairs) {
    if (pair.lower == c) return pair.upper;
  }
  return c;
}

char32_t ToLower(char32_t c) {
  if (IsUpperInRow(c)) return c + 0x20;
  for (const LetterPair& pair : kOddPairs) {
    if (pair.upper == c) return pair.lower;
  }
  return c;
}

/// The text with each character put through `change`; ill-formed bytes stay as they are.
template <typename Change>
std::string Changed(std::string_view text, Change&& change) {
  std::string result;
  result.reserve(text.size());
  ForEachCharacter(text, [&](char32_t character, std::string_view piece) {
    const char32_t changed = change(character);
    if (changed == character) {
      result += piece;
    } else {
      AppendUtf8(result, changed);
    }
  });
  return result;
}

/// Two rows of characters, the second what the first turns into.
struct Transliteration {
  std::u32string_view from;
  std::u32string_view to;

  char32_t operator()(char32_t character) const {
    const std::size_t place = character < 0x80 ? std::u32string_view::npos : from.find(character);
    return place == std::u32string_view::npos ? character : to[place];
  }
};

constexpr Transliteration kPlain = {U"ÁÀÃÂÄáàãâäÉÈÊËéèêëÍÌÎÏíìîïÓÒÕÔÖóòõôöÚÙÛÜúùûüÇç€ºª",
                                    U"AAAAAaaaaaEEEEeeeeIIIIiiiiOOOOOoooooUUUUuuuuCcEoa"};
static_assert(kPlain.from.size() == kPlain.to.size());
constexpr Transliteration kVowels = {U"ÁÀÃÂÉÈÊÍÌÎÓÒÕÔÚÙÛáàãâéèêíìîóòõôúùû",
                                     U"AAAAEEEIIIOOOOUUUaaaaeeeiiioooouuu"};
static_assert(kVowels.from.size() == kVowels.to.size());

/// Cuts the next piece off the front of `rest`, the separator behind it too; false when it was the last.
bool NextPiece(std::string_view& rest, std::string_view separator, std::string_view& piece) {
  const std::size_t end = rest.find(separator);
  piece = rest.substr(0, end);
  if (end == std::string_view::npos) return false;
  rest.remove_prefix(end + separator.size());
  return true;
}

}  // namespace

std::string_view TrimLeft(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view TrimRight(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view Trim(std::string_view text) {
  return TrimRight(TrimLeft(text));
}

std::string_view CutTo(std::string_view text, std::size_t characters) {
  if (text.size() <= characters) return text;
  std::size_t at = 0;
  for (; at < text.size() && characters > 0; --characters) at += DecodeUtf8(text, at).bytes;
  return text.substr(0, at);
}

std::string Upper(std::string_view text) {
  return Changed(text, ToUpper);
}
std::string Lower(std::string_view text) {
  return Changed(text, ToLower);
}

bool SameIgnoringCase(std::string_view a, std::string_view b) {
  return Upper(a) == Upper(b);
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with) {
  if (what.empty()) return std::string(text);
  std::string result;
  result.reserve(text.size());
  std::string_view piece;
  while (NextPiece(text, what, piece)) result.append(piece).append(with);
  return result.append(piece);
}

std::vector<std::string> StripString(std::string_view texto, std::string_view separador) {
  if (texto.empty() || separador.empty()) return {std::string(Trim(texto))};
  std::vector<std::string> pieces;
  std::string_view piece;
  while (NextPiece(texto, separador, piece)) pieces.emplace_back(Trim(piece));
  pieces.emplace_back(Trim(piece));
  return pieces;
}

std::vector<std::string> FastStripString(std::string_view texto, std::string_view separador) {
  std::vector<std::string> pieces(1);
  if (IsBlank(texto)) return pieces;
  if (separador.empty()) return {std::string(texto)};
  for (bool more = true; more;) {
    std::string_view piece;
    more = NextPiece(texto, separador, piece);
    if (!pieces.back().empty()) pieces.emplace_back();
    pieces.back() = piece;
  }
  return pieces;
}

std::string StripVBCRLFString(std::string_view texto, std::string_view substituto) {
  if (substituto.empty()) return std::string(Trim(texto));
  const std::string_view character = CutTo(substituto, 1);
  return std::string(Trim(ReplaceAll(ReplaceAll(texto, "\r", character), "\n", character)));
}

std::string ReplacePortChar(std::string_view texto) {
  return Changed(texto, kPlain);
}

std::string LimpaContribuinte_str(std::string& texto) {
  texto = std::string(Trim(texto));
  return ReplaceAll(texto, kBlank, "");
}

std::string LimpaContribuinte_str(std::string_view texto) {
  return ReplaceAll(texto, kBlank, "");
}

std::string Tirar_Espacos_str(std::string_view texto, std::string_view letra) {
  return IsBlank(texto) ? "" : ReplaceAll(texto, letra, "");
}

std::string Tirar_Letras_e_Substituir_str(std::string_view texto, std::string_view letra,
                                          std::string_view substituto) {
  return ReplaceAll(texto, letra, substituto);
}

std::string TiraPontos(std::string_view texto) {
  return ReplaceAll(Trim(texto), ".", "");
}

bool SoDigitos(std::string_view texto) {
  return std::all_of(texto.begin(), texto.end(), IsDigit);
}

bool SoAlfanumerico(std::string_view texto) {
  const std::string plain = TiraAcentos(texto);
  return std::all_of(plain.begin(), plain.end(),
                     [](unsigned char c) { return IsDigit(c) || c == '-' || c == '+' || IsAsciiLetter(c); });
}

bool TemDigito(std::string_view texto) {
  return std::any_of(texto.begin(), texto.end(), IsDigit);
}

std::string TiraAcentos(std::string_view texto) {
  return Changed(texto, kVowels);
}

void ChaveMaiuscula(std::string& texto) {
  texto = std::string(Trim(Upper(texto)));
}

std::string GetArg(std::string_view texto, std::size_t n) {
  for (std::string_view rest = TrimLeft(texto); !rest.empty(); rest = TrimLeft(rest)) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    if (n-- == 1) return std::string(word);
    rest.remove_prefix(word.size());
  }
  return {};
}

std::size_t ContaCHR(std::string_view texto, std::string_view caracter) {
  const std::string wanted = Upper(CutTo(caracter, 1));
  std::size_t count = 0;
  ForEachCharacter(Upper(texto), [&](char32_t, std::string_view piece) { count += piece == wanted ? 1 : 0; });
  return count;
}

}  // namespace korvel::toolkit
