#include "forms/auditfile/export_ticks.h"

#include <QMetaObject>
#include <QStyle>
#include <string>

#include "auditfile/sections.h"
#include "forms/common/field_grid.h"
#include "gateways/text.h"

namespace korvel::desktop {

using auditfile::ExportChoices;
using auditfile::ExportOptions;
namespace sections = auditfile::sections;

namespace {

constexpr int kTickColumn = 0, kCountColumn = 1, kPictureColumn = 2;

}  // namespace

/// A tick box with its count and mark, and the member of the options that it stands for.
struct ExportTicks::Row {
  std::string_view tick;
  std::string_view caption;
  bool ExportOptions::*option;
  std::string_view count = {};
  std::string_view picture = {};
  bool begins = false;                    // a group of its own
  bool ExportChoices::*choice = nullptr;  // what enables it; the sections are always enabled
};

/// "lbPOCCustomer" is the name of that label.
const ExportTicks::Row ExportTicks::kRows[] = {
    {"chkHeader", "Header - Identificação da Empresa", &ExportOptions::chkHeader},
    {"chkPOCGeneralLedger", sections::kPOCGeneralLedger.caption, &ExportOptions::chkPOCGeneralLedger,
     "lblPOCGeneralLedger", "picPOCGeneralLedger", true},
    {"chkPOCCustomer", sections::kPOCCustomer.caption, &ExportOptions::chkPOCCustomer, "lbPOCCustomer",
     "picPOCCustomer"},
    {"chkPOCSupplier", sections::kPOCSupplier.caption, &ExportOptions::chkPOCSupplier, "lblPOCSupplier",
     "picPOCSupplier"},
    {"chkPOCTaxTable", sections::kPOCTaxTable.caption, &ExportOptions::chkPOCTaxTable, "lblPOCTaxTable",
     "picPOCTaxTable"},
    {"chkPOCGeneralLedgerEntries", sections::kPOCGeneralLedgerEntries.caption,
     &ExportOptions::chkPOCGeneralLedgerEntries, "lblPOCGeneralLedgerEntries", "picPOCGeneralLedgerEntries"},
    {"chkGESTCustomer", sections::kGESTCustomer.caption, &ExportOptions::chkGESTCustomer, "lblGESTCustomer",
     "picGESTCustomer", true},
    {"chkGESTProduct", sections::kGESTProduct.caption, &ExportOptions::chkGESTProduct, "lblGESTProduct",
     "picGESTProduct"},
    {"chkGESTTaxTable", sections::kGESTTaxTable.caption, &ExportOptions::chkGESTTaxTable, "lblGESTTaxTable",
     "picGESTTaxTable"},
    {"chkGESTSourceDocuments", sections::kGESTSourceDocuments.caption, &ExportOptions::chkGESTSourceDocuments,
     "lblGESTSourceDocuments", "picGESTSourceDocuments"},
    {.tick = "chkPorMeses",
     .caption = "Dividir Ficheiro por Meses",
     .option = &ExportOptions::chkPorMeses,
     .begins = true,
     .choice = &ExportChoices::chkPorMeses},
    {.tick = "chkFacturacaoAcum",
     .caption = "Acumulativo Facturação",
     .option = &ExportOptions::chkFacturacaoAcum,
     .choice = &ExportChoices::chkFacturacaoAcum},
    {.tick = "chkContabilAcum",
     .caption = "Acumulativo Contabilidade",
     .option = &ExportOptions::chkContabilAcum,
     .choice = &ExportChoices::chkContabilAcum},
};

ExportTicks::ExportTicks(QWidget* parent) : QFrame(parent) {
  auto* grid = new QGridLayout(this);
  grid->setHorizontalSpacing(2 * kSpacing);
  grid->setVerticalSpacing(kSpacing / 2);
  for (const Row& row : kRows) AddRow(row, grid);
  grid->setColumnStretch(kPictureColumn, 1);
  Clear();
}

void ExportTicks::AddRow(const Row& row, QGridLayout* grid) {
  if (row.begins) grid->setRowMinimumHeight(grid->rowCount(), kSpacing);
  const int place = grid->rowCount() + (row.begins ? 1 : 0);
  Controls controls{&row, new QCheckBox(ToQt(row.caption), this), nullptr, nullptr};
  controls.tick->setObjectName(ToQt(row.tick));
  grid->addWidget(controls.tick, place, kTickColumn);
  if (!row.count.empty()) {
    controls.count = new QLabel(this);
    controls.count->setObjectName(ToQt(row.count));
    grid->addWidget(controls.count, place, kCountColumn, Qt::AlignRight | Qt::AlignVCenter);
    controls.picture = new QLabel(this);
    controls.picture->setObjectName(ToQt(row.picture));
    controls.picture->setAccessibleName("Secção processada");
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    controls.picture->setPixmap(style()->standardIcon(QStyle::SP_DialogApplyButton).pixmap(side, side));
    QSizePolicy keepsPlace = controls.picture->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    controls.picture->setSizePolicy(keepsPlace);
    grid->addWidget(controls.picture, place, kPictureColumn, Qt::AlignLeft | Qt::AlignVCenter);
  }
  controls_.push_back(controls);
}

void ExportTicks::Show(const auditfile::ExportOffer& offer) {
  HideMarks();
  for (const Controls& controls : controls_) {
    const Row& row = *controls.row;
    if (row.choice == nullptr) {
      controls.tick->setChecked(offer.options.*row.option);
    } else {
      controls.tick->setEnabled(offer.choices.*row.choice);
      // What cannot be chosen is not asked for either.
      if (!controls.tick->isEnabled()) controls.tick->setChecked(false);
    }
  }
  for (const auditfile::SectionCount& section : offer.counts) {
    if (Controls* controls = Find(section.section)) controls->count->setText(QString::number(section.rows));
  }
}

void ExportTicks::Clear() {
  HideMarks();
  for (const Controls& controls : controls_) {
    controls.tick->setChecked(controls.row->option == &ExportOptions::chkHeader);
    if (controls.row->choice != nullptr) controls.tick->setEnabled(false);
    if (controls.count != nullptr) controls.count->clear();
  }
}

ExportOptions ExportTicks::Options() const {
  ExportOptions options;
  for (const Controls& controls : controls_) options.*controls.row->option = controls.tick->isChecked();
  return options;
}

void ExportTicks::HideMarks() {
  for (const Controls& controls : controls_) {
    if (controls.picture != nullptr) controls.picture->hide();
  }
}

void ExportTicks::Mark(std::string_view box) {
  if (Controls* controls = Find(box)) controls->picture->show();
}

std::function<void(std::string_view)> ExportTicks::Marker() {
  return [this](std::string_view box) {
    QMetaObject::invokeMethod(
        this, [this, name = std::string(box)] { Mark(name); }, Qt::QueuedConnection);
  };
}

ExportTicks::Controls* ExportTicks::Find(std::string_view box) {
  for (Controls& controls : controls_) {
    if (controls.row->tick == box) return &controls;
  }
  return nullptr;
}

}  // namespace korvel::desktop
