#include "automation/wizard_steps.h"

#include <array>

#include "accounting/chart_of_accounts.h"
#include "accounting/ledger_entries.h"
#include "accounting/tax_table.h"
#include "accounting/third_parties.h"

namespace korvel::automation {
namespace {

using periods::Grid;

std::optional<Grid> LoadAccounts(StepContext& run) {
  const periods::LunderFilter filter = periods::FiltrosLunder(run.context, run.input.contas);
  run.noJournalTicked = filter.noJournalTicked;
  return accounting::CalcularContas(run.context, run.period, filter);
}

bool SaveAccounts(StepContext& run, const Grid& rows) {
  return accounting::GravarContas(run.context, run.period, rows);
}

template <const accounting::ThirdPartyKind& (*kind)()>
std::optional<Grid> LoadThirdParties(StepContext& run) {
  return accounting::CalcularTerceiros(run.context, run.period, kind());
}

template <const accounting::ThirdPartyKind& (*kind)()>
bool SaveThirdParties(StepContext& run, const Grid& rows) {
  return accounting::GravarTerceiros(run.context, run.period, kind(), rows);
}

std::optional<Grid> LoadTaxes(StepContext& run) {
  return accounting::CalcularImpostos(run.context, run.period);
}

bool SaveTaxes(StepContext& run, const Grid& rows) {
  return accounting::GravarImpostos(run.context, run.period, rows);
}

bool StageLedger(StepContext& run, const Grid&) {
  return accounting::CalcularMovimentos(run.context, run.period, accounting::Confirmation::Skip);
}

constexpr std::array kSteps{
    Step{"C_Contas", "- Plano Oficial de Contas", "CI", LoadAccounts, SaveAccounts},
    Step{"C_Clientes", "- Clientes da Contabilidade", "C", LoadThirdParties<accounting::Clientes>,
         SaveThirdParties<accounting::Clientes>},
    Step{"C_Fornecedores", "- Fornecedores da Contabilidade", "CI",
         LoadThirdParties<accounting::Fornecedores>, SaveThirdParties<accounting::Fornecedores>},
    Step{"C_Impostos", "- Tabela de Impostos da Contabilidade", "C", LoadTaxes, SaveTaxes},
    Step{"C_Movimentos", "- Movimentos Contabilísticos", "CI", nullptr, StageLedger},
    Step{"G_Clientes", "- Clientes da Gestão", "FI"},
    Step{"G_Produtos", "- Produtos da Gestão", "FI"},
    Step{"G_Impostos", "- Tabela de Impostos da Gestão", "FI"},
    Step{"G_Movimentos", "- Documentos Comerciais da Gestão", "FI"},
};

}  // namespace

std::span<const Step> AllSteps() {
  return kSteps;
}

}  // namespace korvel::automation
