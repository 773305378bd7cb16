#include "forms/accounting/frm_customer_ins.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <algorithm>
#include <utility>

#include "forms/common/field_grid.h"
#include "gateways/screen_dialogs.h"
#include "gateways/text.h"

namespace korvel::desktop {

using periods::CorrectionField;

namespace {

enum Section { kIdentity, kAddress, kShipping, kSections };
constexpr const char* kTitles[kSections] = {"Ficha", "Morada de Facturação", "Morada de Expedição"};

Section SectionOf(const CorrectionField& field) {
  if (field.column.starts_with("Ship_")) return kShipping;
  return field.twin.empty() ? kIdentity : kAddress;
}

constexpr int kCharacters = 24;  // that a box shows at least

constexpr std::string_view kSelfBilling = "1";
constexpr std::string_view kNoSelfBilling = "0";

}  // namespace

frmCustomerIns::frmCustomerIns(Desk& desk, const periods::StagedTable& table, GridModel& grid,
                               std::size_t row, QWidget* parent)
    : Form(desk, "frmCustomerIns", parent), table_(table), grid_(grid), row_(row) {
  SetCaption("Manutenção de Fichas");
  auto* column = FormColumn(this);
  auto* sections = new QHBoxLayout;
  sections->setSpacing(kSpacing);
  column->addLayout(sections);
  for (const int section : {kIdentity, kAddress, kShipping}) sections->addWidget(MakeSection(section), 1);
  JoinTwins();
  column->addStretch();
  cmdGravar_ = PlainButton("cmdGravar", "Gra&var", [this] { Gravar(); });
  auto* cmdFechar = PlainButton("cmdFechar", "&Fechar", [this] { reject(); });
  column->addLayout(ButtonRow({cmdGravar_, cmdFechar}));
}

QWidget* frmCustomerIns::MakeSection(int section) {
  auto* box = new QGroupBox(kTitles[section], this);
  auto* fields = new QGridLayout(box);
  fields->setSpacing(kSpacing);
  fields->setColumnStretch(1, 1);
  for (const CorrectionField& field : periods::CustomerFields()) {
    const auto column = periods::ColumnOf(table_, field);
    if (column && SectionOf(field) == section) AddEntry(*fields, field, *column);
  }
  if (section == kIdentity) AddSelfBilling(*fields);
  fields->setRowStretch(fields->rowCount(), 1);
  return box;
}

void frmCustomerIns::AddEntry(QGridLayout& fields, const CorrectionField& field, std::size_t column) {
  const int row = fields.rowCount();
  QLineEdit* box = TextBox("txt" + std::string(field.column), table_.columns[column].cut);
  MakeRoom(box, kCharacters);
  box->setText(ToQt(grid_.Cell(row_, column)));
  box->setCursorPosition(0);
  auto* label = new QLabel(ToQt(field.label));
  label->setBuddy(box);
  fields.addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
  fields.addWidget(box, row, 1);
  entries_.push_back({&field, column, box, field.fills ? AddFill(fields, field) : nullptr});
}

QCheckBox* frmCustomerIns::AddFill(QGridLayout& fields, const CorrectionField& field) {
  auto* fill = new QCheckBox;
  fill->setObjectName("chk" + ToQt(field.column));
  fill->setToolTip(ToQt(periods::kFillTip));
  fill->setAccessibleName("Preenchimento automático: " + ToQt(field.label).remove('&'));
  fields.addWidget(fill, fields.rowCount() - 1, 2);
  return fill;
}

void frmCustomerIns::AddSelfBilling(QGridLayout& fields) {
  chkSelfBillingIndicator_ = new QCheckBox("&Autofacturação");
  chkSelfBillingIndicator_->setObjectName("chkSelfBillingIndicator");
  fields.addWidget(chkSelfBillingIndicator_, fields.rowCount(), 1);
  selfBilling_ = periods::ColumnOf(table_, periods::kSelfBillingColumn).value();
  chkSelfBillingIndicator_->setChecked(grid_.Cell(row_, selfBilling_) == kSelfBilling);
}

bool frmCustomerIns::Abrir() {
  return Ask();
}

/// A blank shipping field takes what was typed as address.
void frmCustomerIns::JoinTwins() {
  for (const Entry& entry : entries_) {
    const auto twin = std::ranges::find_if(
        entries_, [&](const Entry& other) { return other.field->column == entry.field->twin; });
    if (twin == entries_.end()) continue;
    connect(entry.box, &QLineEdit::editingFinished, twin->box, [from = entry.box, to = twin->box] {
      if (to->text().trimmed().isEmpty()) to->setText(from->text());
    });
  }
}

std::vector<periods::Correction> frmCustomerIns::Corrections() const {
  std::vector<periods::Correction> corrections;
  for (const Entry& entry : entries_) {
    corrections.push_back(
        {entry.column, FromQt(entry.box->text()), entry.fill != nullptr && entry.fill->isChecked()});
  }
  corrections.push_back(
      {selfBilling_, std::string(chkSelfBillingIndicator_->isChecked() ? kSelfBilling : kNoSelfBilling)});
  return corrections;
}

void frmCustomerIns::Gravar() {
  cmdGravar_->setFocus();  // whichever key brought us here, the field with the cursor is left
  const auto corrections = Corrections();
  if (!periods::ConfirmCorrections(desk_.Context(), corrections)) return;
  grid_.Edit([&](periods::Grid& rows) { periods::CorrectRow(rows, row_, corrections); });
  accept();
}

}  // namespace korvel::desktop
