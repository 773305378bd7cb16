#include "toolkit/options.h"

#include <array>

#include "toolkit/text.h"

namespace korvel::toolkit {
namespace {

struct Interval {
  std::string_view code;
  std::string_view name;
};
constexpr Interval kIntervals[] = {
    {"DIA", "Dia(s)"}, {"SEM", "Semana(s)"}, {"MES", "Mes(es)"}, {"ANO", "Ano(s)"}};

constexpr std::array<std::string_view, 5> kSizeUnits = {"Bytes", "KB", "MB", "GB", "TB"};
constexpr std::uint64_t kSizeStep = 1024;

Option SplitEntry(std::string_view entry) {
  const std::size_t colon = entry.find(':');
  if (colon == std::string_view::npos) return {std::string(entry), {}};
  return {std::string(entry.substr(0, colon)), std::string(entry.substr(colon + 1))};
}

}  // namespace

std::vector<Option> eselToArray(std::string_view lista) {
  std::vector<Option> options;
  for (std::size_t end = lista.find(';'); end != std::string_view::npos; end = lista.find(';')) {
    options.push_back(SplitEntry(lista.substr(0, end)));
    lista.remove_prefix(end + 1);
  }
  return options;
}

std::optional<std::size_t> FindOption(const std::vector<Option>& options, std::string_view chave) {
  for (std::size_t i = 0; i < options.size(); ++i) {
    if (SameIgnoringCase(options[i].key, chave)) return i;
  }
  return std::nullopt;
}

std::optional<std::size_t> eselChave(std::string_view lista, std::string_view chave) {
  return FindOption(eselToArray(lista), chave);
}

std::string_view Tempos_str(std::string_view codigo) {
  if (IsBlank(codigo)) return "DIA:Dias;SEM:Semanas;MES:Meses;ANO:Anos;";
  for (const Interval& interval : kIntervals) {
    if (interval.code == codigo) return interval.name;
  }
  return {};
}

std::string Ficheiros_Tamanho_str(std::uint64_t bytes, const Marks& marks) {
  std::size_t unit = 0;
  std::uint64_t rest = 0;
  for (; bytes >= kSizeStep && unit + 1 < kSizeUnits.size(); bytes /= kSizeStep, ++unit)
    rest = bytes % kSizeStep;
  const auto fraction = static_cast<std::int64_t>(rest * Currency::kScale / kSizeStep);
  const Currency size = Currency::FromWhole(static_cast<std::int64_t>(bytes)) + Currency::FromUnits(fraction);
  return NumberText(ArredondaVal(size, 2), marks.decimal).append(" ").append(kSizeUnits[unit]);
}

}  // namespace korvel::toolkit
