#include <fmt/format.h>

#include <algorithm>
#include <ostream>
#include <string>

#include "accounting/chart_of_accounts.h"
#include "accounting/ledger_entries.h"
#include "accounting/period_kinds.h"
#include "accounting/tax_table.h"
#include "accounting/third_parties.h"
#include "billing/customers.h"
#include "billing/documents.h"
#include "billing/products.h"
#include "billing/tax_table.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/journal_option.h"
#include "cli/period_options.h"
#include "periods/filters.h"
#include "periods/period_editor.h"
#include "session/lookups.h"

namespace korvel::cli {

namespace {

using billing::BillingPeriod;

/// One section of a period: which periods have it, where it is staged, what loads and saves it.
struct Section {
  std::string_view path;
  std::string_view form;  // whose right to save it takes
  std::string_view summary;
  std::string_view periodKinds;
  std::string_view table;
  /// Loads and saves; false when that was refused, which has been said.
  bool (*extract)(Workspace&, const BillingPeriod&, const JournalOption&);
  bool byCustomer = false;  // staged rows belong to the period's `Cliente` too
  bool takesJournals = false;
};

bool ExtractAccounts(Workspace& workspace, const BillingPeriod& period, const JournalOption& journals) {
  const auto filter = periods::FiltrosLunder(workspace.Context(), journals.Choice(workspace));
  if (filter.noJournalTicked) workspace.Dialogs().SayReason(kNoJournalWarning);
  if (!filter.cancelled && filter.contas.empty() && filter.diarios.empty()) {
    throw Refusal(
        "Com todos os Diários e sem intervalo de contas não há cálculo: retire um Diário de --diarios.");
  }
  const auto rows = accounting::CalcularContas(workspace.Context(), period.key, filter);
  return rows && accounting::GravarContas(workspace.Context(), period.key, *rows);
}

bool ExtractEntries(Workspace& workspace, const BillingPeriod& period, const JournalOption&) {
  return accounting::CalcularMovimentos(workspace.Context(), period.key, accounting::Confirmation::Skip);
}

template <const accounting::ThirdPartyKind& (*kKind)()>
bool ExtractThirdParties(Workspace& workspace, const BillingPeriod& period, const JournalOption&) {
  const auto rows = accounting::CalcularTerceiros(workspace.Context(), period.key, kKind());
  return rows && accounting::GravarTerceiros(workspace.Context(), period.key, kKind(), *rows);
}

bool ExtractTaxes(Workspace& workspace, const BillingPeriod& period, const JournalOption&) {
  const auto rows = accounting::CalcularImpostos(workspace.Context(), period.key);
  return rows && accounting::GravarImpostos(workspace.Context(), period.key, *rows);
}

bool ExtractBillingCustomers(Workspace& workspace, const BillingPeriod& period, const JournalOption&) {
  const auto rows = billing::CalcularClientes(workspace.Context(), period);
  if (rows && rows->empty()) throw Refusal("Não há Clientes para gravar.");
  return rows && billing::GravarClientes(workspace.Context(), period, *rows);
}

bool ExtractProducts(Workspace& workspace, const BillingPeriod& period, const JournalOption&) {
  const auto filter = periods::FiltrosBrevant(workspace.Context());
  if (!filter) return false;
  const auto rows = billing::CalcularProdutos(workspace.Context(), period, *filter);
  return rows && billing::GravarProdutos(workspace.Context(), period, *rows);
}

bool ExtractBillingTaxes(Workspace& workspace, const BillingPeriod& period, const JournalOption&) {
  const auto rows = billing::CalcularImpostos(workspace.Context(), period);
  return rows && billing::GravarImpostos(workspace.Context(), period, *rows);
}

bool ExtractDocuments(Workspace& workspace, const BillingPeriod& period, const JournalOption&) {
  return billing::CalcularDocumentos(workspace.Context(), period, billing::Caller::Command);
}

constexpr Section kSections[] = {
    {"extrair contas", "frmGeneralLedger", "Plano de contas com os saldos iniciais",
     accounting::kAccountingOrIntegratedPeriods, "TabGeneralLedger", ExtractAccounts, false, true},
    {"extrair movimentos", "frmGeneralLedgerEntriesLunder", "Movimentos contabilísticos das contas gravadas",
     accounting::kAccountingOrIntegratedPeriods, "TabGeneralLedgerEntriesPOC", ExtractEntries},
    {"extrair clientes", "frmCustomerLunder", "Clientes da contabilidade", accounting::kAccountingPeriods,
     "TabCustomerPOC", ExtractThirdParties<accounting::Clientes>},
    {"extrair fornecedores", "frmSupplierLunder", "Fornecedores da contabilidade",
     accounting::kAccountingOrIntegratedPeriods, "TabSupplierPOC",
     ExtractThirdParties<accounting::Fornecedores>},
    {"extrair impostos", "frmTaxTableLunder", "Tabela de impostos da contabilidade",
     accounting::kAccountingPeriods, "TabTaxTablePOC", ExtractTaxes},
    {"extrair clientes-brevant", "frmCustomerBrevant", "Clientes da gestão",
     billing::kBillingOrIntegratedPeriods, "TabCustomerGEST", ExtractBillingCustomers, true},
    {"extrair produtos", "frmProductBrevant", "Produtos da gestão", billing::kBillingOrIntegratedPeriods,
     "TabProductGEST", ExtractProducts, true},
    {"extrair impostos-brevant", "frmTaxTableBrevant", "Tabela de impostos da gestão",
     billing::kBillingOrIntegratedPeriods, "TabTaxTableGEST", ExtractBillingTaxes, true},
    {"extrair documentos", "frmSourceDocumentsBrevant", "Documentos comerciais da gestão",
     billing::kBillingOrIntegratedPeriods, "TabSourceDocumentsGEST", ExtractDocuments, true},
};

class Extrair final : public Command {
 public:
  explicit Extrair(const Section& section) : section_(section) {}

  std::string_view Path() const override { return section_.path; }
  std::string_view Summary() const override { return section_.summary; }
  NeededRight Needs() const override { return {section_.form, "cmdGravar", true}; }

  void Declare(CLI::App& app) override {
    period_.Declare(app);
    if (section_.takesJournals) journals_.Declare(app);
  }

  bool Run(Workspace& workspace) override {
    const periods::PeriodKey key = period_.Key();
    workspace.EnterCompany();
    const BillingPeriod period = OfferedPeriod(workspace, key);
    if (!section_.extract(workspace, period, journals_)) return false;
    const std::string staged = section_.byCustomer ? period.Staged() : key.Condition();
    const auto company = workspace.OpenCompany();
    const auto rows = session::ContaRegistos_lng(*company, section_.table, "Where " + staged);
    workspace.Out() << fmt::format("{}: {} registos gravados para {} ({} até {}).\n", section_.summary, rows,
                                   key.fiscalYear, key.startDate, key.endDate);
    return true;
  }

 private:
  /// The form's selector offers only periods that exist and have this section.
  BillingPeriod OfferedPeriod(Workspace& workspace, const periods::PeriodKey& key) const {
    const auto company = workspace.OpenCompany();
    if (!periods::FindPeriod(workspace.Context(), *company, key))
      throw Refusal("Não definiu a Identificação da Empresa - Header");
    const auto offered = periods::ListPeriods(workspace.Context(), *company, section_.periodKinds);
    const auto found = std::ranges::find_if(offered, [&](const auto& row) { return row.period == key; });
    if (found == offered.end())
      throw Refusal("Os períodos deste Sistema Contabilístico não têm esta secção.");
    return {key, found->cliente};
  }

  const Section& section_;
  PeriodOptions period_;
  JournalOption journals_;
};

}  // namespace

CommandList MakeExtrair() {
  CommandList made;
  for (const Section& section : kSections) made.push_back(std::make_unique<Extrair>(section));
  return made;
}

}  // namespace korvel::cli
