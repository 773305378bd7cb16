#include "automation/wizard_steps.h"

#include <algorithm>
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

bool ReviewLedger(StepContext& run, const StagedRowSink& sink) {
  const auto review = accounting::VerRegistos(run.context, run.period.key, accounting::Confirmation::Skip);
  if (!review) return false;
  periods::GridRow row;
  while (review->Next(row)) sink(row);
  return true;
}

bool ReviewDocuments(StepContext& run, const StagedRowSink& sink) {
  return billing::VerDocumentos(run.context, run.period, sink, billing::Caller::Wizard);
}

template <const accounting::ThirdPartyKind& (*kind)()>
const periods::StagedTable& ThirdPartyTable() {
  return *kind().table;
}

constexpr std::array kSteps{
    Step{"C_Contas", "- Plano Oficial de Contas", "CI", accounting::ContasTable, LoadAccounts, SaveAccounts},
    Step{"C_Clientes", "- Clientes da Contabilidade", "C", ThirdPartyTable<accounting::Clientes>,
         LoadThirdParties<accounting::Clientes>, SaveThirdParties<accounting::Clientes>},
    Step{"C_Fornecedores", "- Fornecedores da Contabilidade", "CI", ThirdPartyTable<accounting::Fornecedores>,
         LoadThirdParties<accounting::Fornecedores>, SaveThirdParties<accounting::Fornecedores>},
    Step{"C_Impostos", "- Tabela de Impostos da Contabilidade", "C", accounting::ImpostosTable, LoadTaxes,
         SaveTaxes},
    Step{"C_Movimentos", "- Movimentos Contabilísticos", "CI", accounting::MovimentosTable, nullptr,
         StageLedger, ReviewLedger},
    Step{"G_Clientes", "- Clientes da Gestão", "FI", billing::ClientesTable, LoadBillingCustomers,
         SaveBillingCustomers},
    Step{"G_Produtos", "- Produtos da Gestão", "FI", billing::ProdutosTable, LoadProducts, SaveProducts},
    Step{"G_Impostos", "- Tabela de Impostos da Gestão", "FI", billing::ImpostosTable, LoadBillingTaxes,
         SaveBillingTaxes},
    Step{"G_Movimentos", "- Documentos Comerciais da Gestão", "FI", billing::DocumentosTable, nullptr,
         StageDocuments, ReviewDocuments},
};

}  // namespace

std::span<const Step> AllSteps() {
  return kSteps;
}

const Step* FindStep(std::string_view key) {
  const auto found =
      std::find_if(kSteps.begin(), kSteps.end(), [&](const Step& step) { return step.key == key; });
  return found == kSteps.end() ? nullptr : &*found;
}

}  // namespace korvel::automation
