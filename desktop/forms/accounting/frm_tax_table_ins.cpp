#include "forms/accounting/frm_tax_table_ins.h"

#include "forms/common/field_grid.h"
#include "gateways/text.h"
#include "toolkit/text.h"

namespace korvel::desktop {

using periods::TaxField;

namespace {

constexpr int kCharacters = 36;  // that a box shows at least

}  // namespace

frmTaxTableIns::frmTaxTableIns(Desk& desk, const periods::StagedTable& table, GridModel& grid,
                               std::size_t row, QWidget* parent)
    : Form(desk, "frmTaxTableIns", parent), table_(table), grid_(grid), row_(row) {
  SetCaption(R"(Manutenção de "Tax Table")");
  auto* column = FormColumn(this);
  auto* fields = new QGridLayout;
  fields->setSpacing(kSpacing);
  fields->setColumnStretch(1, 1);
  column->addLayout(fields);
  for (const TaxField& field : periods::TaxFields()) AddEntry(*fields, field);
  JoinCodeAndDescription();
  column->addStretch();
  cmdGravar_ = PlainButton("cmdGravar", "&Gravar", [this] { Gravar(); });
  auto* cmdFechar = PlainButton("cmdFechar", "Fec&har", [this] { reject(); });
  column->addLayout(ButtonRow({cmdGravar_, cmdFechar}));
}

void frmTaxTableIns::AddEntry(QGridLayout& fields, const TaxField& field) {
  const std::size_t column = periods::ColumnOf(table_, field.column).value();
  const int row = fields.rowCount();
  QLineEdit* box = MakeBox(field, column);
  auto* label = new QLabel(ToQt(field.label));
  label->setBuddy(box);
  fields.addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
  fields.addWidget(box, row, 1);
  Entry entry{column, box, nullptr};
  if (!field.fillControl.empty()) {
    entry.fill = new QCheckBox;
    entry.fill->setObjectName(ToQt(field.fillControl));
    entry.fill->setToolTip(ToQt(periods::kFillTip));
    entry.fill->setAccessibleName("Preenchimento automático: " + label->text().remove('&'));
    fields.addWidget(entry.fill, row, 2);
  }
  entries_.push_back(entry);
}

QLineEdit* frmTaxTableIns::MakeBox(const TaxField& field, std::size_t column) {
  if (table_.columns[column].kind == periods::CellKind::Date) {
    edatSaft_TaxExpirationDate_ = new Edatas(desk_, field.control);
    edatSaft_TaxExpirationDate_->SetConteudo(grid_.Cell(row_, column));
    return edatSaft_TaxExpirationDate_;
  }
  QLineEdit* box = TextBox(field.control, table_.columns[column].cut);
  MakeRoom(box, kCharacters);
  box->setText(ToQt(grid_.Cell(row_, column)));
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

bool frmTaxTableIns::Abrir() {
  return Ask();
}

/// False when a bad date stood there, which is said and empties the box: the user has to see that.
bool frmTaxTableIns::HasGoodDate() {
  const bool typed = !edatSaft_TaxExpirationDate_->text().trimmed().isEmpty();
  if (!typed || !edatSaft_TaxExpirationDate_->Conteudo().empty()) return true;
  edatSaft_TaxExpirationDate_->setFocus();
  return false;
}

std::vector<periods::Correction> frmTaxTableIns::Corrections() const {
  std::vector<periods::Correction> corrections;
  for (const Entry& entry : entries_) {
    corrections.push_back(
        {entry.column, FromQt(entry.box->text()), entry.fill != nullptr && entry.fill->isChecked()});
  }
  return corrections;
}

void frmTaxTableIns::Gravar() {
  if (!HasGoodDate()) return;
  cmdGravar_->setFocus();  // whichever key brought us here, the field with the cursor is left
  const auto corrections = Corrections();
  if (!periods::ConfirmCorrections(desk_.Context(), corrections)) return;
  grid_.Edit([&](periods::Grid& rows) { periods::CorrectRow(rows, row_, corrections); });
  accept();
}

}  // namespace korvel::desktop
