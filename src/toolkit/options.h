#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "toolkit/numbers.h"

/// Fixed choices: option list texts ("0:Não;1:Sim;") and the codes that stand for them.
namespace korvel::toolkit {

struct Option {
  std::string key;
  std::string caption;
  friend bool operator==(const Option&, const Option&) = default;
};

/// The entries of an option list text, each closed by ";" and split at its first ":". An empty key is a
/// choice too; text behind the last ";" is no entry.
std::vector<Option> eselToArray(std::string_view lista);
/// The place of the first option whose key equals `chave` upper-cased; nothing without one.
std::optional<std::size_t> FindOption(const std::vector<Option>& options, std::string_view chave);
std::optional<std::size_t> eselChave(std::string_view lista, std::string_view chave);

inline constexpr std::string_view kListaSimNao = "0:Não;1:Sim;";
inline std::string_view esel_Lista_SimNao_str() {
  return kListaSimNao;
}

/// A check box and the letter kept for it: 0 and "N", 1 and "S". Any other value or letter counts as not
/// checked.
inline std::string_view chk_GetValue_str(int value) {
  return value == 1 ? "S" : "N";
}
inline int chk_PutValue_int(std::string_view letter) {
  return letter == "S" ? 1 : 0;
}

/// "DIA", "SEM", "MES", "ANO" to "Dia(s)" and so on; the option list of all of them for a blank code; "" for
/// others.
std::string_view Tempos_str(std::string_view codigo);
/// A count of bytes in "Bytes", "KB", "MB", "GB" or "TB", at most two decimals ("1,5 KB"); "0 Bytes" for
/// none.
std::string Ficheiros_Tamanho_str(std::uint64_t bytes, const Marks& marks);

}  // namespace korvel::toolkit
