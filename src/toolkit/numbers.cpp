#include "toolkit/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include "toolkit/text.h"
#include "toolkit/utf8.h"

namespace korvel::toolkit {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

[[noreturn]] void Overflow() {
  throw std::overflow_error("valor monetário fora dos limites");
}

/// Collects a numeric prefix character by character, without allocation: millions of them are read in one export.
class PrefixScan {
 public:
  /// False once the number has ended; the character is not part of it then.
  bool Take(char c) {
    if (IsDigit(c)) {
      digitSeen_ = true;
    } else if (c == '.' && !pointSeen_) {
      pointSeen_ = true;
    } else if (size_ > 0 || (c != '-' && c != '+')) {
      return c == ' ' && size_ == 0;
    }
    Keep(c);
    return true;
  }

  Currency Value() const {
    if (!digitSeen_) return {};
    if (const auto value = Currency::FromText({prefix_.data(), size_})) return *value;
    Overflow();
  }

 private:
  void Keep(char c) {
    if (size_ < prefix_.size()) {
      prefix_[size_++] = c;
    } else if (!pointSeen_) {
      Overflow();
    }  // decimals that far behind the mark change nothing
  }

  std::array<char, 64> prefix_;
  std::size_t size_ = 0;
  bool pointSeen_ = false;
  bool digitSeen_ = false;
};

/// `text` is not empty.
bool StartsWith(std::string_view text, std::string_view mark) {
  // The first characters are compared in line: this runs for each character of each number of a file.
  return !mark.empty() && text.front() == mark.front() && text.starts_with(mark);
}

Currency ReadWithMarks(std::string_view text, std::string_view thousands, std::string_view decimal) {
  PrefixScan scan;
  while (!text.empty()) {
    if (StartsWith(text, thousands)) {
      text.remove_prefix(thousands.size());
      continue;
    }
    const bool mark = StartsWith(text, decimal);
    if (!scan.Take(mark ? '.' : text.front())) break;
    text.remove_prefix(mark ? decimal.size() : 1);
  }
  return scan.Value();
}

std::string_view FirstOf(std::string_view given, std::string_view session, std::string_view otherwise) {
  if (!given.empty()) return given;
  return session.empty() ? otherwise : session;
}

/// Digits per group, 0 for no grouping.
std::size_t GroupSize(const Marks& marks) {
  if (marks.grouping.empty() || !IsDigit(marks.grouping.front())) return 0;
  return static_cast<std::size_t>(marks.grouping.front() - '0');
}

void AppendGrouped(std::string& text, std::int64_t whole, std::size_t group, std::string_view separator) {
  std::array<char, 24> buffer;
  const char* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), whole).ptr;
  const std::string_view digits(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  if (group == 0) {
    text += digits;
    return;
  }
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % group == 0) text += separator;
    text += digits[i];
  }
}

/// The first `casas` of the four decimals of a value that is not negative.
void AppendDecimals(std::string& text, Currency valor, int casas, std::string_view separator) {
  if (casas == 0) return;
  text += separator;
  std::int64_t fraction = valor.Units() % Currency::kScale;
  for (std::int64_t step = Currency::kScale / 10; casas > 0; --casas, step /= 10) {
    text += static_cast<char>('0' + fraction / step);
    fraction %= step;
  }
}

/// The symbol after `text`'s start that is dropped or kept by TextToCurrency, as one character of a neutral number:
/// nothing for a character that no number has.
struct NumberReader {
  std::string neutral;
  bool pointSeen = false;

  bool Take(std::string_view& text, const Marks& marks) {
    if (IsDigit(text.front())) return Append(text, text.front(), 1);
    if (StartsWith(text, marks.decimal) && !pointSeen) {
      pointSeen = true;
      return Append(text, '.', marks.decimal.size());
    }
    const bool between = !pointSeen && !neutral.empty() && IsDigit(neutral.back());
    if (!between || !StartsWith(text, marks.thousands)) return false;
    text.remove_prefix(marks.thousands.size());
    return true;
  }

  bool Append(std::string_view& text, char c, std::size_t read) {
    neutral += c;
    text.remove_prefix(read);
    return true;
  }
};

}  // namespace

std::string FDNum(Currency valor, int casas, std::string_view sepMilhar, std::string_view sepDecimal,
                  const Marks& marks) {
  casas = std::clamp(casas, 0, 4);
  const std::string_view decimal = FirstOf(sepDecimal, marks.decimal, ".");
  const std::string_view thousands = FirstOf(sepMilhar, marks.thousands, ",");
  const Currency rounded = ArredondaVal(valor.IsNegative() ? -valor : valor, casas);

  std::string text;
  if (valor.IsNegative() && !rounded.IsZero()) text += '-';
  AppendGrouped(text, rounded.Whole(), thousands == kNoGrouping ? 0 : GroupSize(marks), thousands);
  AppendDecimals(text, rounded, casas, decimal);
  return text;
}

std::string NumberText(Currency valor, std::string_view decimal) {
  std::string text = valor.ToText();
  const std::size_t point = text.find('.');
  if (point != std::string::npos) text.replace(point, 1, decimal);
  return text;
}

Currency NumericPrefix(std::string_view text) {
  return ReadWithMarks(text, {}, ".");
}

Currency TextoParaValor(std::string_view texto, const Marks& marks) {
  return ReadWithMarks(Trim(texto), marks.thousands, marks.decimal);
}

Currency StrToCurr(std::string_view texto, std::string_view sepMilhar, std::string_view sepDecimal,
                   const Marks& marks) {
  return ReadWithMarks(texto, sepMilhar.empty() ? marks.thousands : sepMilhar,
                       sepDecimal.empty() ? marks.decimal : sepDecimal);
}

std::optional<Currency> TextToCurrency(std::string_view text, const Marks& marks) {
  text = Trim(text);
  NumberReader reader;
  if (text.starts_with('-') || text.starts_with('+')) reader.Append(text, text.front(), 1);
  while (!text.empty()) {
    if (!reader.Take(text, marks)) return std::nullopt;
  }
  return Currency::FromText(reader.neutral);
}

std::string NumToVBNum(std::string_view texto, int casas, const Marks& marks) {
  const std::int64_t whole = NumericPrefix(ReplaceAll(texto, marks.thousands, "")).Whole();
  std::string text = std::to_string(whole) + ".";
  const std::size_t mark = marks.decimal.empty() ? std::string_view::npos : texto.find(marks.decimal);
  if (mark == std::string_view::npos) return text.append(static_cast<std::size_t>(std::max(casas, 0)), '0');
  return text += texto.substr(mark + marks.decimal.size());
}

std::string CurToSQL(Currency valor) {
  return valor.ToText();
}

std::string Zerar(std::string_view valor, int& tamanho, std::string_view caracter) {
  valor = Trim(valor);
  const int length = static_cast<int>(CharacterCount(valor));
  std::string text;
  for (int i = length; i < tamanho; ++i) text += caracter.empty() ? "0" : caracter;
  tamanho = std::max(tamanho, length);
  return text += valor;
}

void AcertaDecimais(std::string& texto, std::string_view decimal) {
  const std::size_t mark = texto.find_last_not_of("0123456789");
  if (mark == std::string::npos) {
    texto.append(decimal).append("0000");
    return;
  }
  const std::size_t decimals = texto.size() - mark - 1;
  if (decimals >= 1 && decimals <= 3) texto.append(4 - decimals, '0');
}

}  // namespace korvel::toolkit
