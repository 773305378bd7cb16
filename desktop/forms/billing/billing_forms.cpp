#include "forms/billing/billing_forms.h"

#include <memory>
#include <utility>

#include "billing/customers.h"
#include "billing/documents.h"
#include "billing/products.h"
#include "billing/tax_table.h"
#include "forms/accounting/corrections.h"
#include "forms/common/extraction_form.h"
#include "forms/common/journal_form.h"
#include "forms/periods/frm_filtros_brevant.h"

namespace korvel::desktop {

namespace {

using billing::BillingPeriod;
using periods::ChosenPeriod;
using periods::Grid;
using session::Context;

BillingPeriod Of(const ChosenPeriod& chosen) {
  return {chosen.period, chosen.cliente};
}

/// Calls of the core by their period; what they give back is as it comes.
template <std::optional<Grid> (*kLoad)(const Context&, const periods::PeriodKey&)>
std::optional<Grid> Load(const Context& context, const ChosenPeriod& chosen) {
  return kLoad(context, chosen.period);
}
template <std::optional<Grid> (*kCalculate)(const Context&, const BillingPeriod&)>
std::optional<Grid> Calculate(const Context& context, const ChosenPeriod& chosen) {
  return kCalculate(context, Of(chosen));
}
template <bool (*kSave)(const Context&, const BillingPeriod&, const Grid&)>
bool Save(const Context& context, const ChosenPeriod& chosen, const Grid& rows) {
  return kSave(context, Of(chosen), rows);
}

ExtractionKind Customers(Desk& desk) {
  return {.form = "frmCustomerBrevant",
          .grid = "lvwClientes",
          .periods = billing::kBillingOrIntegratedPeriods,
          .table = &billing::ClientesTable(),
          .load = Load<billing::CarregarClientes>,
          .calculate = Calculate<billing::CalcularClientes>,
          .save = Save<billing::GravarClientes>,
          .correct = CorrectingCustomers(desk, billing::ClientesTable())};
}

ExtractionKind Products(Desk& desk) {
  const auto filter = std::make_shared<periods::BrevantFilter>();
  return {.form = "frmProductBrevant",
          .grid = "lvwProdutos",
          .periods = billing::kBillingOrIntegratedPeriods,
          .table = &billing::ProdutosTable(),
          .load = Load<billing::CarregarProdutos>,
          .calculate =
              [filter](const Context& context, const ChosenPeriod& chosen) {
                return billing::CalcularProdutos(context, Of(chosen), *filter);
              },
          .save = Save<billing::GravarProdutos>,
          .ask =
              [&desk, filter](QWidget* parent) {
                *filter = frmFiltrosBrevant(desk, parent).Escolher();
                return filter->filtro != periods::kFilterCancelled;
              }};
}

ExtractionKind Taxes(Desk& desk) {
  return {.form = "frmTaxTableBrevant",
          .grid = "lvwImpostos",
          .periods = billing::kBillingOrIntegratedPeriods,
          .table = &billing::ImpostosTable(),
          .load = Load<billing::CarregarImpostos>,
          .calculate = Calculate<billing::CalcularImpostos>,
          .save = Save<billing::GravarImpostos>,
          .correct = CorrectingTaxes(desk, billing::ImpostosTable())};
}

JournalKind Documents() {
  return {
      .form = "frmSourceDocumentsBrevant",
      .grid = "lvwDocumentos",
      .periods = billing::kBillingOrIntegratedPeriods,
      .table = &billing::DocumentosTable(),
      .process =
          [](const Context& context, const ChosenPeriod& chosen) {
            return billing::CalcularDocumentos(context, Of(chosen), billing::Caller::Form);
          },
      .review = [](const Context& context, const ChosenPeriod& chosen,
                   const RowFeed::Sink& sink) { return billing::VerDocumentos(context, Of(chosen), sink); },
      .save = Save<billing::GravarDocumentos>};
}

}  // namespace

Form* MakeBillingForm(Desk& desk, std::string_view name, QWidget* parent) {
  ExtractionKind kinds[] = {Customers(desk), Products(desk), Taxes(desk)};
  for (ExtractionKind& kind : kinds) {
    if (kind.form == name) return new ExtractionForm(desk, std::move(kind), parent);
  }
  JournalKind documents = Documents();
  return documents.form == name ? new JournalForm(desk, std::move(documents), parent) : nullptr;
}

}  // namespace korvel::desktop
