#include "forms/auditfile/folder_box.h"

#include <QDir>
#include <QFileDialog>
#include <QHideEvent>
#include <QShortcut>
#include <QTimer>

#include "gateways/text.h"
#include "toolkit/text.h"

namespace korvel::desktop {

namespace {

constexpr std::string_view kFolderKey = "LocalizaExporta";

QString AskPlatform(QWidget* parent, const QString& start) {
  return QFileDialog::getExistingDirectory(parent, "Pasta para Exportação", start);
}

}  // namespace

FolderBox::FolderBox(Desk& desk, std::string_view form, QWidget* parent)
    : QLineEdit(parent), choose(AskPlatform), desk_(desk), form_(form) {
  setObjectName("txtPastaExportacao");
  auto* key = new QShortcut(QKeySequence(Qt::Key_F4), this);
  key->setContext(Qt::WidgetShortcut);
  connect(key, &QShortcut::activated, this, [this] { Browse(); });
  setMinimumWidth(fontMetrics().averageCharWidth() * 40);
}

void FolderBox::LoadFolder() {
  const auto kept = desk_.Settings().Read(form_, kFolderKey);
  setText(kept ? ToQt(*kept) : QDir::toNativeSeparators(QDir::homePath()));
  CloseWithSeparator();
}

std::string FolderBox::Folder() const {
  return FromQt(text());
}

void FolderBox::Browse() {
  const QString folder = choose(window(), text());
  if (folder.isEmpty()) return;
  setText(QDir::toNativeSeparators(folder));
  CloseWithSeparator();
  setFocus();
}

void FolderBox::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  // A click would place the cursor, and so end the selection, right after this event.
  QTimer::singleShot(0, this, &QLineEdit::selectAll);
}

void FolderBox::focusOutEvent(QFocusEvent* event) {
  CloseWithSeparator();
  QLineEdit::focusOutEvent(event);
}

void FolderBox::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) KeepFolder();
  QLineEdit::hideEvent(event);
}

void FolderBox::CloseWithSeparator() {
  const bool closed = text().endsWith('/') || text().endsWith(QDir::separator());
  if (!closed && !toolkit::IsBlank(Folder())) setText(text() + QDir::separator());
}

void FolderBox::KeepFolder() {
  CloseWithSeparator();
  desk_.Remember(form_, kFolderKey, Folder());
}

}  // namespace korvel::desktop
