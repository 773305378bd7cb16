#include "forms/accounting/frm_tax_table_ins.h"

#include "forms/common/field_grid.h"
#include "gateways/text.h"
#include "toolkit/text.h"

namespace korvel::desktop {

using periods::TaxField;

namespace {

constexpr int kTaxCharacters = 36;  // that a box shows at least

}  // namespace

frmTaxTableIns::frmTaxTableIns(Desk& desk, const periods::StagedTable& table, GridModel& grid,
                               std::size_t row, QWidget* parent)
    : CorrectionForm(desk, "frmTaxTableIns", table, grid, row, parent) {
  SetCaption(R"(Manutenção de "Tax Table")");
  auto* form = FormColumn(this);
  auto* fields = new QGridLayout;
  fields->setSpacing(kSpacing);
  fields->setColumnStretch(1, 1);
  form->addLayout(fields);
  for (const TaxField& field : periods::TaxFields()) {
    const std::size_t column = periods::ColumnOf(Table(), field.column).value();
    AddEntry(*fields, column, field.label, MakeField(field, column), field.fillControl);
  }
  JoinCodeAndDescription();
  form->addStretch();
  form->addLayout(MakeButtons("&Gravar", "Fec&har"));
}

QLineEdit* frmTaxTableIns::MakeField(const TaxField& field, std::size_t column) {
  if (Table().columns[column].kind == periods::CellKind::Date) {
    edatSaft_TaxExpirationDate_ = new Edatas(desk_, field.control);
    edatSaft_TaxExpirationDate_->SetConteudo(Shown(column));
    return edatSaft_TaxExpirationDate_;
  }
  QLineEdit* box = MakeBox(field.control, column, kTaxCharacters);
  box->setToolTip(ToQt(field.tip));
  if (field.column == "TaxCode") txtSaft_TaxCode_ = box;
  if (field.column == "Description") txtSaft_Description_ = box;
  return box;
}

void frmTaxTableIns::JoinCodeAndDescription() {
  connect(txtSaft_TaxCode_, &QLineEdit::editingFinished, txtSaft_Description_,
          [code = txtSaft_TaxCode_, description = txtSaft_Description_] {
            if (toolkit::IsBlank(FromQt(code->text()))) return;
            const periods::TaxCodeLeft left = periods::LeaveTaxCode(FromQt(code->text()));
            code->setText(ToQt(left.code));
            if (left.description) description->setText(ToQt(*left.description));
          });
}

/// False when a bad date stood there, which is said and empties the box: the user has to see that.
bool frmTaxTableIns::Check() {
  const bool typed = !edatSaft_TaxExpirationDate_->text().trimmed().isEmpty();
  if (!typed || !edatSaft_TaxExpirationDate_->Conteudo().empty()) return true;
  edatSaft_TaxExpirationDate_->setFocus();
  return false;
}

}  // namespace korvel::desktop
