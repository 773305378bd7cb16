#include "forms/accounting/accounting_forms.h"

#include <memory>
#include <utility>

#include "accounting/chart_of_accounts.h"
#include "accounting/ledger_entries.h"
#include "accounting/period_kinds.h"
#include "accounting/tax_table.h"
#include "accounting/third_parties.h"
#include "forms/accounting/corrections.h"
#include "forms/common/extraction_form.h"
#include "forms/common/journal_form.h"
#include "forms/periods/frm_filtros_lunder.h"

namespace korvel::desktop {

namespace {

using periods::ChosenPeriod;
using periods::Grid;
using session::Context;

ExtractionKind ChartOfAccounts(Desk& desk) {
  const auto filter = std::make_shared<periods::LunderFilter>();
  return {
      .form = "frmGeneralLedger",
      .grid = "lvwContas",
      .periods = accounting::kAccountingOrIntegratedPeriods,
      .table = &accounting::ContasTable(),
      .load = [](const Context& context,
                 const ChosenPeriod& chosen) { return accounting::CarregarContas(context, chosen.period); },
      .calculate =
          [filter](const Context& context, const ChosenPeriod& chosen) {
            return accounting::CalcularContas(context, chosen.period, *filter);
          },
      .save = [](const Context& context, const ChosenPeriod& chosen,
                 const Grid& rows) { return accounting::GravarContas(context, chosen.period, rows); },
      .ask =
          [&desk, filter](QWidget* parent) {
            *filter = frmFiltrosLunder(desk, parent).Escolher();
            return !filter->cancelled;
          }};
}

ExtractionKind ThirdParties(Desk& desk, std::string_view form, const accounting::ThirdPartyKind& kind) {
  return {.form = form,
          .grid = "lvwClientes",
          .periods = kind.periodKinds,
          .table = kind.table,
          .load =
              [&kind](const Context& context, const ChosenPeriod& chosen) {
                return accounting::CarregarTerceiros(context, chosen.period, kind);
              },
          .calculate =
              [&kind](const Context& context, const ChosenPeriod& chosen) {
                return accounting::CalcularTerceiros(context, chosen.period, kind);
              },
          .save =
              [&kind](const Context& context, const ChosenPeriod& chosen, const Grid& rows) {
                return accounting::GravarTerceiros(context, chosen.period, kind, rows);
              },
          .correct = CorrectingCustomers(desk, *kind.table)};
}

ExtractionKind Taxes(Desk& desk) {
  return {
      .form = "frmTaxTableLunder",
      .grid = "lvwImpostos",
      .periods = accounting::kAccountingPeriods,
      .table = &accounting::ImpostosTable(),
      .load = [](const Context& context,
                 const ChosenPeriod& chosen) { return accounting::CarregarImpostos(context, chosen.period); },
      .calculate =
          [](const Context& context, const ChosenPeriod& chosen) {
            return accounting::CalcularImpostos(context, chosen.period);
          },
      .save = [](const Context& context, const ChosenPeriod& chosen,
                 const Grid& rows) { return accounting::GravarImpostos(context, chosen.period, rows); },
      .correct = CorrectingTaxes(desk, accounting::ImpostosTable())};
}

bool ReviewEntries(const Context& context, const ChosenPeriod& chosen, const RowFeed::Sink& sink) {
  const auto review = accounting::VerRegistos(context, chosen.period, accounting::Confirmation::Ask);
  if (!review) return false;
  for (periods::GridRow row; review->Next(row);) sink(row);
  return true;
}

JournalKind Entries() {
  return {
      .form = "frmGeneralLedgerEntriesLunder",
      .grid = "lvwDocumentos",
      .periods = accounting::kAccountingOrIntegratedPeriods,
      .table = &accounting::MovimentosTable(),
      .process =
          [](const Context& context, const ChosenPeriod& chosen) {
            return accounting::CalcularMovimentos(context, chosen.period, accounting::Confirmation::Ask);
          },
      .review = ReviewEntries,
      .save = [](const Context& context, const ChosenPeriod& chosen,
                 const Grid& rows) { return accounting::GravarMovimentos(context, chosen.period, rows); }};
}

}  // namespace

Form* MakeAccountingForm(Desk& desk, std::string_view name, QWidget* parent) {
  ExtractionKind kinds[] = {ChartOfAccounts(desk),
                            ThirdParties(desk, "frmCustomerLunder", accounting::Clientes()),
                            ThirdParties(desk, "frmSupplierLunder", accounting::Fornecedores()), Taxes(desk)};
  for (ExtractionKind& kind : kinds) {
    if (kind.form == name) return new ExtractionForm(desk, std::move(kind), parent);
  }
  JournalKind entries = Entries();
  return entries.form == name ? new JournalForm(desk, std::move(entries), parent) : nullptr;
}

}  // namespace korvel::desktop
