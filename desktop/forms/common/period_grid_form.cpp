#include "forms/common/period_grid_form.h"

#include <utility>

#include "forms/common/field_grid.h"
#include "security/rights_catalogue.h"

namespace korvel::desktop {

namespace {

constexpr int kWidth = 920, kHeight = 560;

}  // namespace

PeriodGridForm::PeriodGridForm(Desk& desk, const Content& content, QWidget* parent)
    : Form(desk, content.form, parent),
      eselFiscalYear_(new PeriodChoice(desk, content.periods, this)),
      grid_(new GridPanel(desk, content.form, content.grid, GridColumnsOf(content.table.columns),
                          content.withTicks, this)) {
  resize(kWidth, kHeight);
}

void PeriodGridForm::Arrange(std::initializer_list<QWidget*> buttons) {
  FieldGrid fields;
  QVBoxLayout* column = FormColumn(this);
  column->addLayout(fields.Layout());
  fields.Add("P&eríodo:", eselFiscalYear_);
  column->addWidget(grid_, 1);
  column->addLayout(ButtonRow(buttons));
}

bool PeriodGridForm::Load() {
  return eselFiscalYear_->LoadPeriods();
}

void PeriodGridForm::ShowRows(periods::Grid rows) {
  Model().SetRows(std::move(rows));
  SetCaptionDetail(eselFiscalYear_->Texto());
}

void PeriodGridForm::ClearGrid() {
  Model().SetRows({});
  SetCaption(security::FormCaption(Name()));
}

}  // namespace korvel::desktop
