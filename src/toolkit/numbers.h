#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/currency.h"

/// Rounding, reading and writing of numbers. Everything is exact: a money value, a quantity or a percentage
/// is a Currency, four decimals at most. A result outside its range throws std::overflow_error.
namespace korvel::toolkit {

using data::Currency;

/// The user's number symbols; each symbol is one character, of one or more bytes of UTF-8.
struct Marks {
  std::string decimal = ",";
  std::string thousands = ".";
  /// The first character is the number of digits a group; anything but a digit above 0 means no grouping.
  std::string grouping = "3";
};

/// The rounding of the whole system. `casas` is first lowered to the decimals that `valor` has (below 0
/// counts as 0). By `tipo`:
///   0           unchanged
///   1           half up to `casas` decimals for positive values; see the asymmetry below
///   2, 3, 4     as 1, then the whole number to the nearest 10, 100, 1000 (5, 50, 500 go up)
///   5           cut to `casas` decimals
///   6, 7, 8     cut to tens, hundreds, thousands
///   9           up to `casas` decimals when more follow
///   10, 11, 12  as 9, then up to the next 10, 100, 1000
///   13          as 1, then to a whole number
///   14          cut to a whole number
///   15          up to the next whole number when there is a fraction
/// Any other `tipo` leaves the value unchanged. "Up" is away from zero except in 1.
///
/// Deliberate in 1: a last decimal of 5 adds 0.0001 before a rounding half to even (with `casas` 0, a lone
/// decimal 5 adds 0.01). The addition is positive for negative values too, which see it under other
/// conditions: 1.125 gives 1.13, -1.125 gives -1.12; 0.5 gives 1, -0.5 gives 0; 1.2345 to 4 decimals
/// gives 1.2346.
Currency ArredondaVal(Currency valor, int casas, int tipo = 1);

/// The rounding of the decimal entry field: 1 rounds as ArredondaVal does, 2 cuts, 3 rounds up, 4 and any
/// other `tipo` leave the value unchanged.
Currency ArredondaValDecimal(Currency valor, int casas, int tipo);

/// No grouping, as `sepMilhar` of FDNum.
inline constexpr std::string_view kNoGrouping = "SSM";

/// The number writer of lists and of the audit file: always exactly `casas` decimals (kept within 0 to 4),
/// rounded by ArredondaVal. An empty separator stands for the one in `marks`, and if that is empty too for
/// "." (decimal) and "," (thousands). A negative value that rounds to nothing has no sign.
std::string FDNum(Currency valor, int casas, std::string_view sepMilhar, std::string_view sepDecimal,
                  const Marks& marks);

/// The shortest decimal writing with `decimal` as its mark, no grouping ("0,125", "5").
std::string NumberText(Currency valor, std::string_view decimal);

/// What a left-to-right scan reads: leading blanks skipped, an optional sign, digits and one ".", up to the
/// first other character. 0 for any other text. More than four decimals are rounded half to even.
Currency NumericPrefix(std::string_view text);

/// Reads a typed or staged number: trimmed, the thousands symbol dropped wherever it stands, the decimal
/// symbol read as ".", then the numeric prefix. Never fails on a text that is no number: that reads 0.
Currency TextoParaValor(std::string_view texto, const Marks& marks);

/// As TextoParaValor, with separators of the caller's; an empty one stands for that of `marks`.
Currency StrToCurr(std::string_view texto, std::string_view sepMilhar, std::string_view sepDecimal,
                   const Marks& marks);

/// The strict conversion of a whole text: blanks around it, a sign, digits with the thousands symbol between
/// them and the decimal symbol. Nothing when the text is anything else, the empty text included, or out of
/// range.
std::optional<Currency> TextToCurrency(std::string_view text, const Marks& marks);

/// A number text in the neutral form: the whole part, ".", what follows the decimal symbol or `casas` zeros
/// without one. The sign of a value between -1 and 0 is lost, which is deliberate.
std::string NumToVBNum(std::string_view texto, int casas, const Marks& marks);

/// The only way in which money enters a statement's text: number text with "." ("-12.5").
std::string CurToSQL(Currency valor);

/// The trimmed value padded on the left with `caracter` (empty: "0") up to `tamanho` characters. A longer
/// value stays whole, and `tamanho` is raised to its length.
std::string Zerar(std::string_view valor, int& tamanho, std::string_view caracter = {});
inline std::string Zerar(std::string_view valor, int&& tamanho, std::string_view caracter = {}) {
  return Zerar(valor, tamanho, caracter);
}

/// Pads a number text to four decimals: one to three digits behind the last character that is no digit get
/// their zeros; a text of digits alone gets the decimal symbol and "0000". A sign counts as such a character,
/// deliberately.
void AcertaDecimais(std::string& texto, std::string_view decimal);

inline int BoolToInt(bool value) {
  return value ? 1 : 0;
}

}  // namespace korvel::toolkit
