#include "billing/audit_codes.h"

#include "toolkit/text.h"

namespace korvel::billing {

std::string ChargeProduct(std::string_view codigoImposto) {
  return "PRO_" + std::string(codigoImposto);
}

std::string CustomerIdOf(std::string_view contribuinte) {
  std::string number = toolkit::LimpaContribuinte_str(contribuinte);
  return toolkit::TemDigito(number) ? number : std::string(kFinalConsumer);
}

}  // namespace korvel::billing
