#include "cli/period_options.h"

#include "cli/failures.h"
#include "data/date_time.h"
#include "toolkit/text.h"

namespace korvel::cli {

std::string DateArgument(std::string_view text) {
  const auto date = data::DateTime::FromText(toolkit::Trim(text));
  if (!date) throw Refusal("As Datas não estão bem definidas!");
  return date->DateText();
}

void PeriodOptions::Declare(CLI::App& app) {
  app.add_option("--ano", ano, "Ano fiscal do período")->required()->type_name("ANO");
  app.add_option("--inicio", inicio, "Primeiro dia do período")->required()->type_name("AAAA-MM-DD");
  app.add_option("--fim", fim, "Último dia do período")->required()->type_name("AAAA-MM-DD");
}

periods::PeriodKey PeriodOptions::Key() const {
  if (toolkit::IsBlank(ano)) throw Refusal("Não definiu o Ano!");
  if (toolkit::IsBlank(inicio)) throw Refusal("Não definiu a Data Inicial!");
  if (toolkit::IsBlank(fim)) throw Refusal("Não definiu a Data Final!");
  return {std::string(toolkit::Trim(ano)), DateArgument(inicio), DateArgument(fim)};
}

}  // namespace korvel::cli
