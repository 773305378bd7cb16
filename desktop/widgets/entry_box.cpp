#include "widgets/entry_box.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>

#include "gateways/text.h"
#include "widgets/locked_look.h"

namespace korvel::desktop {

EntryBox::EntryBox(Desk& desk, std::string_view name, QWidget* parent) : QLineEdit(parent), desk_(desk) {
  setObjectName(ToQt(name));
  connect(this, &QLineEdit::inputRejected, this, [] { QApplication::beep(); });
}

void EntryBox::SetLocked(bool locked) {
  setReadOnly(locked);
  ShowLocked(*this, locked);
}

void EntryBox::Accept() {
  Say(TakeTyped());
  TellChange();
}

void EntryBox::Write(std::string_view text) {
  const std::string refusal = Take(std::string(text));
  ShowWritten();
  Say(refusal);
}

void EntryBox::ShowWritten() {
  ShowChanged();
  told_ = shown_;
}

void EntryBox::ShowChanged() {
  shown_ = ToQt(Shown());
  setText(shown_);
}

std::string EntryBox::TakeTyped() {
  if (text() == shown_) return {};
  std::string refusal = Take(FromQt(text()));
  ShowChanged();
  return refusal;
}

void EntryBox::Say(const std::string& refusal) {
  if (!refusal.empty()) desk_.Dialogs().Message(RefusalIcon(), refusal);
}

void EntryBox::SayLater(const std::string& refusal) {
  if (refusal.empty()) return;
  QMetaObject::invokeMethod(
      this, [this, refusal] { Say(refusal); }, Qt::QueuedConnection);
}

void EntryBox::TellChange() {
  if (shown_ == told_) return;
  told_ = shown_;
  if (onChange) onChange();
}

void EntryBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) setText(shown_);
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    SayLater(TakeTyped());
    TellChange();
  }
  QLineEdit::keyPressEvent(event);
}

void EntryBox::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  // Another program in front, or the menu of the box, does not end the entry.
  if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason) return;
  // A box within the change of focus would swallow the click that caused it.
  SayLater(TakeTyped());
  TellChange();
}

}  // namespace korvel::desktop
