#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <ostream>

#include "accounting/chart_of_accounts.h"
#include "accounting/ledger_entries.h"
#include "accounting/period_kinds.h"
#include "accounting/tax_table.h"
#include "accounting/third_parties.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/journal_option.h"
#include "cli/period_options.h"
#include "periods/period_editor.h"
#include "session/lookups.h"

namespace korvel::cli {

namespace {

using periods::PeriodKey;

/// One section of a period: which periods have it, where it is staged, what loads and saves it.
struct Section {
  std::string_view path;
  std::string_view summary;
  std::string_view periodKinds;
  std::string_view table;
  bool takesJournals = false;
  /// Loads and saves; false when that was refused, which has been said.
  bool (*extract)(Workspace&, const PeriodKey&, const JournalOption&);
};

bool ExtractAccounts(Workspace& workspace, const PeriodKey& period, const JournalOption& journals) {
  const auto filter = periods::FiltrosLunder(workspace.Context(), journals.Choice(workspace));
  if (filter.noJournalTicked) workspace.Dialogs().SayReason(kNoJournalWarning);
  if (!filter.cancelled && filter.contas.empty() && filter.diarios.empty()) {
    throw Refusal(
        "Com todos os Diários e sem intervalo de contas não há cálculo: retire um Diário de --diarios.");
  }
  const auto rows = accounting::CalcularContas(workspace.Context(), period, filter);
  return rows && accounting::GravarContas(workspace.Context(), period, *rows);
}

bool ExtractEntries(Workspace& workspace, const PeriodKey& period, const JournalOption&) {
  return accounting::CalcularMovimentos(workspace.Context(), period, accounting::Confirmation::Skip);
}

template <const accounting::ThirdPartyKind& (*kKind)()>
bool ExtractThirdParties(Workspace& workspace, const PeriodKey& period, const JournalOption&) {
  const auto rows = accounting::CalcularTerceiros(workspace.Context(), period, kKind());
  return rows && accounting::GravarTerceiros(workspace.Context(), period, kKind(), *rows);
}

bool ExtractTaxes(Workspace& workspace, const PeriodKey& period, const JournalOption&) {
  const auto rows = accounting::CalcularImpostos(workspace.Context(), period);
  return rows && accounting::GravarImpostos(workspace.Context(), period, *rows);
}

constexpr Section kSections[] = {
    {"extrair contas", "Plano de contas com os saldos iniciais", accounting::kAccountingOrIntegratedPeriods,
     "TabGeneralLedger", true, ExtractAccounts},
    {"extrair movimentos", "Movimentos contabilísticos das contas gravadas",
     accounting::kAccountingOrIntegratedPeriods, "TabGeneralLedgerEntriesPOC", false, ExtractEntries},
    {"extrair clientes", "Clientes da contabilidade", accounting::kAccountingPeriods, "TabCustomerPOC", false,
     ExtractThirdParties<accounting::Clientes>},
    {"extrair fornecedores", "Fornecedores da contabilidade", accounting::kAccountingOrIntegratedPeriods,
     "TabSupplierPOC", false, ExtractThirdParties<accounting::Fornecedores>},
    {"extrair impostos", "Tabela de impostos da contabilidade", accounting::kAccountingPeriods,
     "TabTaxTablePOC", false, ExtractTaxes},
};

class Extrair final : public Command {
 public:
  explicit Extrair(const Section& section) : section_(section) {}

  std::string_view Path() const override { return section_.path; }
  std::string_view Summary() const override { return section_.summary; }

  void Declare(CLI::App& app) override {
    period_.Declare(app);
    if (section_.takesJournals) journals_.Declare(app);
  }

  bool Run(Workspace& workspace) override {
    const PeriodKey period = period_.Key();
    workspace.EnterCompany();
    RequirePeriod(workspace, period);
    if (!section_.extract(workspace, period, journals_)) return false;
    const auto company = workspace.OpenCompany();
    const auto rows = session::ContaRegistos_lng(*company, section_.table, "Where " + period.Condition());
    workspace.Out() << fmt::format("{}: {} registos gravados para {} ({} até {}).\n", section_.summary, rows,
                                   period.fiscalYear, period.startDate, period.endDate);
    return true;
  }

 private:
  /// The form's selector offers only periods that exist and have this section.
  void RequirePeriod(Workspace& workspace, const PeriodKey& period) const {
    const auto company = workspace.OpenCompany();
    if (!periods::FindPeriod(workspace.Context(), *company, period))
      throw Refusal("Não definiu a Identificação da Empresa - Header");
    const auto offered = periods::ListPeriods(workspace.Context(), *company, section_.periodKinds);
    const bool has = std::ranges::any_of(offered, [&](const auto& row) { return row.period == period; });
    if (!has) throw Refusal("Os períodos deste Sistema Contabilístico não têm esta secção.");
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
