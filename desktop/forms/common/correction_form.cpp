#include "forms/common/correction_form.h"

#include <QLabel>

#include "forms/common/field_grid.h"
#include "gateways/text.h"

namespace korvel::desktop {

CorrectionForm::CorrectionForm(Desk& desk, std::string_view name, const periods::StagedTable& table,
                               GridModel& grid, std::size_t row, QWidget* parent)
    : Form(desk, name, parent), table_(table), grid_(grid), row_(row) {}

QLineEdit* CorrectionForm::MakeBox(std::string_view name, std::size_t column, int characters) {
  QLineEdit* box = TextBox(name, table_.columns[column].cut);
  MakeRoom(box, characters);
  box->setText(ToQt(Shown(column)));
  box->setCursorPosition(0);
  return box;
}

void CorrectionForm::AddEntry(QGridLayout& fields, std::size_t column, std::string_view label, QLineEdit* box,
                              std::string_view fill) {
  const int row = fields.rowCount();
  auto* words = new QLabel(ToQt(label));
  words->setBuddy(box);
  fields.addWidget(words, row, 0, Qt::AlignRight | Qt::AlignVCenter);
  fields.addWidget(box, row, 1);
  QCheckBox* check = fill.empty() ? nullptr : MakeFill(fill, ToQt(label));
  if (check != nullptr) fields.addWidget(check, row, 2);
  entries_.push_back({column, box, check});
}

QCheckBox* CorrectionForm::MakeFill(std::string_view name, QString label) {
  auto* fill = new QCheckBox;
  fill->setObjectName(ToQt(name));
  fill->setToolTip(ToQt(periods::kFillTip));
  fill->setAccessibleName("Preenchimento automático: " + label.remove('&'));
  return fill;
}

QHBoxLayout* CorrectionForm::MakeButtons(std::string_view gravar, std::string_view fechar) {
  cmdGravar_ = PlainButton("cmdGravar", gravar, [this] { Gravar(); });
  return ButtonRow({cmdGravar_, PlainButton("cmdFechar", fechar, [this] { reject(); })});
}

std::vector<periods::Correction> CorrectionForm::Corrections() const {
  std::vector<periods::Correction> corrections;
  for (const Entry& entry : entries_) {
    corrections.push_back(
        {entry.column, FromQt(entry.box->text()), entry.fill != nullptr && entry.fill->isChecked()});
  }
  return corrections;
}

void CorrectionForm::Gravar() {
  if (!Check()) return;
  cmdGravar_->setFocus();  // whichever key brought us here, the field with the cursor is left
  const auto corrections = Corrections();
  if (!periods::ConfirmCorrections(desk_.Context(), corrections)) return;
  grid_.Edit([&](periods::Grid& rows) { periods::CorrectRow(rows, row_, corrections); });
  accept();
}

}  // namespace korvel::desktop
