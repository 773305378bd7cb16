#include "cli/journal_option.h"

#include "cli/option_lists.h"
#include "periods/parameters.h"

namespace korvel::cli {

void JournalOption::Declare(CLI::App& app) {
  option_ = app.add_option("--diarios", codes_, "Diários de que vêm os saldos iniciais, como 00 ou 00,01")
                ->type_name("CÓDIGO,...");
}

std::optional<periods::LunderChoice> JournalOption::Choice(Workspace& workspace) const {
  if (option_->count() == 0) return std::nullopt;
  const auto company = workspace.OpenCompany();
  const auto parameters = periods::ReadParameters(*company).value_or(periods::Parameters{});
  periods::LunderChoice choice;
  choice.contaInicial = parameters.Header_ContaInicial;
  choice.contaFinal = parameters.Header_ContaFinal;
  choice.diarios = CodeList(codes_);
  return choice;
}

}  // namespace korvel::cli
