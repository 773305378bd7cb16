#include "billing/numbering_walk.h"

#include "data/collation.h"
#include "toolkit/numbers.h"

namespace korvel::billing {

std::optional<NumberGap> NumberingWalk::Step(std::string_view ano, std::string_view tipo,
                                             std::string_view numero) {
  const std::int64_t number = DocumentNumber(numero);
  const bool sameSeries = started_ && data::SameText(ano, ultimoAno_) && data::SameText(tipo, ultimoTipo_);
  const NumberGap gap{ultimoNumero_ + 1, number - 1};
  Follow(ano, tipo, number);
  if (!sameSeries || gap.last < gap.first) return std::nullopt;
  return gap;
}

void NumberingWalk::Follow(std::string_view ano, std::string_view tipo, std::int64_t number) {
  started_ = true;
  ultimoAno_ = ano;
  ultimoTipo_ = tipo;
  ultimoNumero_ = number;
}

std::int64_t DocumentNumber(std::string_view numero) {
  return toolkit::NumericPrefix(numero).Whole();
}

std::string DocumentNumberText(std::int64_t number) {
  return toolkit::Zerar(std::to_string(number), 8);
}

}  // namespace korvel::billing
