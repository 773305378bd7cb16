#include "forms/auditfile/frm_exporta_saft_show_msg_final.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QUrl>
#include <array>
#include <utility>

#include "forms/common/field_grid.h"
#include "gateways/text.h"

namespace korvel::desktop {

namespace {

constexpr std::string_view kOpenFile = "Abrir &Ficheiro";
constexpr std::string_view kOpenFolder = "Abrir &Pasta";

/// The box of a single file closes on the first button; the others open what was made as well.
void ShowFile(Desk& desk, const std::string& file, const PathOpener& open) {
  constexpr std::array kButtons{std::string_view("&Ok"), kOpenFile, kOpenFolder};
  const std::size_t chosen = desk.Dialogs().Ask("Foram Gerados os Seguintes Ficheiros:\n\n" + file, kButtons);
  if (chosen == 1) open(file);
  if (chosen == 2) open(FolderOf(file));
}

}  // namespace

PathOpener PlatformOpener() {
  return [](const std::string& path) { QDesktopServices::openUrl(QUrl::fromLocalFile(ToQt(path))); };
}

std::string FolderOf(const std::string& file) {
  return FromQt(QFileInfo(ToQt(file)).absolutePath());
}

frmExportaSAFTShowMsgFinal::frmExportaSAFTShowMsgFinal(Desk& desk, PathOpener open, QWidget* parent)
    : Form(desk, "frmExportaSAFTShowMsgFinal", parent),
      open_(std::move(open)),
      List1_(new QListWidget(this)) {
  SetCaption(auditfile::kFilesTitle);
  List1_->setObjectName("List1");
  List1_->setMinimumSize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 14);
  connect(List1_, &QListWidget::itemActivated, this, [this] { open_(Chosen()); });
  auto* label = new QLabel("Foram gerados os seguintes ficheiros:", this);
  label->setBuddy(List1_);
  auto* file = PlainButton("cmdAbrirFicheiro", kOpenFile, [this] { open_(Chosen()); });
  auto* folder = PlainButton("cmdAbrirPasta", kOpenFolder, [this] { open_(FolderOf(Chosen())); });
  QVBoxLayout* column = FormColumn(this);
  column->addWidget(label);
  column->addWidget(List1_, 1);
  column->addLayout(ButtonRow({file, folder, PlainButton("cmdFechar", "&Ok", [this] { accept(); })}));
}

void frmExportaSAFTShowMsgFinal::ShowForm(const std::vector<std::string>& files) {
  List1_->clear();
  for (const std::string& file : files) List1_->addItem(ToQt(file));
  List1_->setCurrentRow(0);
  Ask();
}

std::string frmExportaSAFTShowMsgFinal::Chosen() const {
  return FromQt(List1_->currentItem()->text());
}

void ShowExport(Desk& desk, const auditfile::ExportResult& result, bool monthly, const PathOpener& open,
                QWidget* parent) {
  if (!result.ok) {
    if (!result.cancelled) desk.Dialogs().Message(toolkit::Icon::Critical, result.error);
  } else if (monthly) {
    frmExportaSAFTShowMsgFinal(desk, open, parent).ShowForm(result.files);
  } else if (!result.files.empty()) {
    ShowFile(desk, result.files.front(), open);
  }
}

}  // namespace korvel::desktop
