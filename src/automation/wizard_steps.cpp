#include "automation/wizard_steps.h"

#include <array>

#include "accounting/chart_of_accounts.h"
#include "accounting/ledger_entries.h"
#include "accounting/tax_table.h"
#include "accounting/third_parties.h"
#include "billing/customers.h"
#include "billing/documents.h"
#include "billing/products.h"
#include "billing/tax_table.h"
#include "periods/filters.h"

namespace korvel::automation {
namespace {

using periods::Grid;

std::optional<Grid> LoadAccounts(StepContext& run) {
  const periods::LunderFilter filter = periods::FiltrosLunder(run.context, run.input.contas);
  run.noJournalTicked = filter.noJournalTicked;
  return accounting::CalcularContas(run.context, run.period.key, filter);
}

bool SaveAccounts(StepContext& run, const Grid& rows) {
  return accounting::GravarContas(run.context, run.period.key, rows);
}

template <const accounting::ThirdPartyKind& (*kind)()>
std::optional<Grid> LoadThirdParties(StepContext& run) {
  return accounting::CalcularTerceiros(run.context, run.period.key, kind());
}

template <const accounting::ThirdPartyKind& (*kind)()>
bool SaveThirdParties(StepContext& run, const Grid& rows) {
  return accounting::GravarTerceiros(run.context, run.period.key, kind(), rows);
}

std::optional<Grid> LoadTaxes(StepContext& run) {
  return accounting::CalcularImpostos(run.context, run.period.key);
}

bool SaveTaxes(StepContext& run, const Grid& rows) {
  return accounting::GravarImpostos(run.context, run.period.key, rows);
}

bool StageLedger(StepContext& run, const Grid&) {
  return accounting::CalcularMovimentos(run.context, run.period.key, accounting::Confirmation::Skip);
}

std::optional<Grid> LoadBillingCustomers(StepContext& run) {
  return billing::CalcularClientes(run.context, run.period);
}

bool SaveBillingCustomers(StepContext& run, const Grid& rows) {
  return billing::GravarClientes(run.context, run.period, rows);
}

std::optional<Grid> LoadProducts(StepContext& run) {
  const auto filter = periods::FiltrosBrevant(run.context);
  if (!filter) return std::nullopt;
  return billing::CalcularProdutos(run.context, run.period, *filter);
}

bool SaveProducts(StepContext& run, const Grid& rows) {
  return billing::GravarProdutos(run.context, run.period, rows);
}

std::optional<Grid> LoadBillingTaxes(StepContext& run) {
  return billing::CalcularImpostos(run.context, run.period);
}

bool SaveBillingTaxes(StepContext& run, const Grid& rows) {
  return billing::GravarImpostos(run.context, run.period, rows);
}

bool StageDocuments(StepContext& run, const Grid&) {
  return billing::CalcularDocumentos(run.context, run.period, billing::Caller::Wizard);
}

constexpr std::array kSteps{
    Step{"C_Contas", "- Plano Oficial de Contas", "CI", "TabGeneralLedger", LoadAccounts, SaveAccounts},
    Step{"C_Clientes", "- Clientes da Contabilidade", "C", "TabCustomerPOC",
         LoadThirdParties<accounting::Clientes>, SaveThirdParties<accounting::Clientes>},
    Step{"C_Fornecedores", "- Fornecedores da Contabilidade", "CI", "TabSupplierPOC",
         LoadThirdParties<accounting::Fornecedores>, SaveThirdParties<accounting::Fornecedores>},
    Step{"C_Impostos", "- Tabela de Impostos da Contabilidade", "C", "TabTaxTablePOC", LoadTaxes, SaveTaxes},
    Step{"C_Movimentos", "- Movimentos Contabilísticos", "CI", "TabGeneralLedgerEntriesPOC", nullptr,
         StageLedger},
    Step{"G_Clientes", "- Clientes da Gestão", "FI", "TabCustomerGEST", LoadBillingCustomers,
         SaveBillingCustomers},
    Step{"G_Produtos", "- Produtos da Gestão", "FI", "TabProductGEST", LoadProducts, SaveProducts},
    Step{"G_Impostos", "- Tabela de Impostos da Gestão", "FI", "TabTaxTableGEST", LoadBillingTaxes,
         SaveBillingTaxes},
    Step{"G_Movimentos", "- Documentos Comerciais da Gestão", "FI", "TabSourceDocumentsGEST", nullptr,
         StageDocuments},
};

}  // namespace

std::span<const Step> AllSteps() {
  return kSteps;
}

}  // namespace korvel::automation
