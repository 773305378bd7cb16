#include "forms/common/extraction_form.h"

#include <utility>

#include "periods/incomplete_rows.h"
#include "toolkit/list_rows.h"

namespace korvel::desktop {

ExtractionForm::ExtractionForm(Desk& desk, ExtractionKind kind, QWidget* parent)
    : PeriodGridForm(desk, {kind.form, kind.grid, kind.periods, *kind.table, true}, parent),
      kind_(std::move(kind)) {
  auto* cmdCalcular = CatalogueButton("cmdCalcular", [this] { Calculate(); });
  auto* cmdGravar = CatalogueButton(
      "cmdGravar", [this] { Save(); }, Writes::Yes);
  if (kind_.correct) {
    auto* cmdAlterar = CatalogueButton("cmdAlterar", [this] { Correct(); });
    auto* cmdFechar = CatalogueButton("cmdFechar", [this] { reject(); });
    Arrange({cmdCalcular, cmdGravar, cmdAlterar, cmdFechar});
    // The same right holds for both ways.
    grid_->onActivate = [cmdAlterar] { cmdAlterar->click(); };
  } else {
    Arrange({cmdCalcular, cmdGravar, CatalogueButton("cmdFechar", [this] { reject(); })});
  }
  eselFiscalYear_->onChange = [this] { ChoosePeriod(); };
}

/// Rows of another period never stay under the new one, whatever happens.
void ExtractionForm::ChoosePeriod() {
  const auto chosen = eselFiscalYear_->Chosen();
  auto rows = desk_.Try([&](const session::Context& context) { return kind_.load(context, chosen); });
  if (rows && *rows) {
    ShowRows(std::move(**rows));
  } else {
    ClearGrid();
  }
}

/// A source that gives nothing leaves the grid as it was.
void ExtractionForm::Calculate() {
  if (!HasPeriod() || (kind_.ask && !kind_.ask(this))) return;
  const auto chosen = eselFiscalYear_->Chosen();
  auto rows = desk_.Try([&](const session::Context& context) { return kind_.calculate(context, chosen); });
  if (!rows || !*rows) return;
  ShowRows(std::move(**rows));
  grid_->setFocus();
}

void ExtractionForm::Save() {
  if (!HasPeriod()) return;
  const auto chosen = eselFiscalYear_->Chosen();
  const bool saved =
      desk_.Try([&](const session::Context& context) { return kind_.save(context, chosen, Model().Rows()); })
          .value_or(false);
  if (saved) return;
  if (const auto row = periods::FirstIncomplete(*kind_.table, Model().Rows())) grid_->SelectRow(*row);
  grid_->setFocus();
}

void ExtractionForm::Correct() {
  if (const auto row = grid_->CurrentRow()) {
    kind_.correct(this, Model(), *row);
  } else {
    desk_.Dialogs().Message(toolkit::Icon::Warning, toolkit::kNoSuchItem, toolkit::kAttention);
  }
}

}  // namespace korvel::desktop
