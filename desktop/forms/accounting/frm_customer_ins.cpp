#include "forms/accounting/frm_customer_ins.h"

#include <QGroupBox>
#include <algorithm>
#include <string>

#include "forms/common/field_grid.h"
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

constexpr int kCustomerCharacters = 24;  // that a box shows at least

constexpr std::string_view kSelfBilling = "1";
constexpr std::string_view kNoSelfBilling = "0";

}  // namespace

frmCustomerIns::frmCustomerIns(Desk& desk, const periods::StagedTable& table, GridModel& grid,
                               std::size_t row, QWidget* parent)
    : CorrectionForm(desk, "frmCustomerIns", table, grid, row, parent) {
  SetCaption("Manutenção de Fichas");
  auto* column = FormColumn(this);
  auto* sections = new QHBoxLayout;
  sections->setSpacing(kSpacing);
  column->addLayout(sections);
  for (const int section : {kIdentity, kAddress, kShipping}) sections->addWidget(MakeSection(section), 1);
  JoinTwins();
  column->addStretch();
  column->addLayout(MakeButtons("Gra&var", "&Fechar"));
}

QWidget* frmCustomerIns::MakeSection(int section) {
  auto* box = new QGroupBox(kTitles[section], this);
  auto* fields = new QGridLayout(box);
  fields->setSpacing(kSpacing);
  fields->setColumnStretch(1, 1);
  for (const CorrectionField& field : periods::CustomerFields()) {
    const auto column = periods::ColumnOf(Table(), field);
    if (!column || SectionOf(field) != section) continue;
    AddEntry(*fields, *column, field.label,
             MakeBox("txt" + std::string(field.column), *column, kCustomerCharacters),
             field.fills ? "chk" + std::string(field.column) : std::string());
  }
  if (section == kIdentity) AddSelfBilling(*fields);
  fields->setRowStretch(fields->rowCount(), 1);
  return box;
}

void frmCustomerIns::AddSelfBilling(QGridLayout& fields) {
  chkSelfBillingIndicator_ = new QCheckBox("&Autofacturação");
  chkSelfBillingIndicator_->setObjectName("chkSelfBillingIndicator");
  fields.addWidget(chkSelfBillingIndicator_, fields.rowCount(), 1);
  selfBilling_ = periods::ColumnOf(Table(), periods::kSelfBillingColumn).value();
  chkSelfBillingIndicator_->setChecked(Shown(selfBilling_) == kSelfBilling);
}

/// A blank shipping field takes what was typed as address.
void frmCustomerIns::JoinTwins() {
  for (const CorrectionField& field : periods::CustomerFields()) {
    QLineEdit* from = BoxOf(field.column);
    QLineEdit* to = BoxOf(field.twin);
    if (from == nullptr || to == nullptr) continue;
    connect(from, &QLineEdit::editingFinished, to, [from, to] {
      if (to->text().trimmed().isEmpty()) to->setText(from->text());
    });
  }
}

QLineEdit* frmCustomerIns::BoxOf(std::string_view column) const {
  const auto place = periods::ColumnOf(Table(), column);
  const auto entry = std::ranges::find_if(Entries(), [&](const Entry& e) { return place == e.column; });
  return entry == Entries().end() ? nullptr : entry->box;
}

std::vector<periods::Correction> frmCustomerIns::Corrections() const {
  auto corrections = CorrectionForm::Corrections();
  const bool selfBilling = chkSelfBillingIndicator_->isChecked();
  corrections.push_back({selfBilling_, std::string(selfBilling ? kSelfBilling : kNoSelfBilling)});
  return corrections;
}

}  // namespace korvel::desktop
