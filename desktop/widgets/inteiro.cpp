#include "widgets/inteiro.h"

#include <QApplication>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSpinBox>
#include <QWheelEvent>
#include <limits>

#include "gateways/text.h"
#include "widgets/locked_look.h"

namespace korvel::desktop {

/// Takes any whole number, so that one outside of the bounds can be told; only its arrows keep to them.
class Inteiro::Spin final : public QSpinBox {
 public:
  explicit Spin(Inteiro& owner) : QSpinBox(&owner), owner_(owner) {
    setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    setFocusPolicy(Qt::StrongFocus);
    connect(lineEdit(), &QLineEdit::inputRejected, this, [] { QApplication::beep(); });
  }

  void stepBy(int steps) override {
    interpretText();
    setValue(toolkit::StepInteger(value(), steps, owner_.bounds_));
    selectAll();
  }

 protected:
  StepEnabled stepEnabled() const override {
    if (isReadOnly()) return StepNone;
    return (value() < owner_.bounds_.most ? StepUpEnabled : StepNone) |
           (value() > owner_.bounds_.least ? StepDownEnabled : StepNone);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Escape) setValue(owner_.value_);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) owner_.Leave();
    QSpinBox::keyPressEvent(event);
  }
  void focusOutEvent(QFocusEvent* event) override {
    QSpinBox::focusOutEvent(event);
    // Another program in front, or the menu of the box, does not end the entry.
    const bool stays =
        event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
    if (!stays) owner_.Leave();
  }
  void wheelEvent(QWheelEvent* event) override {
    // Rolling a form does not change the numbers that pass below the mouse.
    if (hasFocus()) {
      QSpinBox::wheelEvent(event);
    } else {
      event->ignore();
    }
  }

 private:
  Inteiro& owner_;
};

Inteiro::Inteiro(Desk& desk, std::string_view name, QWidget* parent)
    : QWidget(parent), desk_(desk), spin_(new Spin(*this)) {
  setObjectName(ToQt(name));
  setFocusProxy(spin_);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(spin_);
}

/// A box with the cursor is left when it goes, too late for its owner: it goes first.
Inteiro::~Inteiro() {
  delete spin_;
}

int Inteiro::Valor() {
  Say(TakeTyped());
  TellChange();
  return value_;
}

void Inteiro::SetValor(int value) {
  value_ = told_ = value;
  spin_->setValue(value);
}

void Inteiro::SetLocked(bool locked) {
  spin_->setReadOnly(locked);
  ShowLocked(*spin_, locked);
}

std::string Inteiro::TakeTyped() {
  spin_->interpretText();
  const int typed = spin_->value();
  if (typed == value_) return {};
  std::string refusal = toolkit::IntegerRefusal(typed, bounds_);
  if (refusal.empty()) {
    value_ = typed;
  } else {
    spin_->setValue(value_);
  }
  return refusal;
}

void Inteiro::Say(const std::string& refusal) {
  if (!refusal.empty()) desk_.Dialogs().Message(toolkit::Icon::Warning, refusal);
}

void Inteiro::Leave() {
  const std::string refusal = TakeTyped();
  // A box within the change of focus would swallow the click that caused it.
  if (!refusal.empty()) {
    QMetaObject::invokeMethod(
        this, [this, refusal] { Say(refusal); }, Qt::QueuedConnection);
  }
  TellChange();
}

void Inteiro::TellChange() {
  if (value_ == told_) return;
  told_ = value_;
  if (onChange) onChange();
}

void SetMinMaxEmInteiros(const QWidget& form, const toolkit::IntegerBounds& bounds) {
  for (QWidget* child : form.findChildren<QWidget*>()) {
    auto* box = dynamic_cast<Inteiro*>(child);
    if (box == nullptr) continue;
    box->SetMinimo(bounds.least);
    box->SetMaximo(bounds.most);
  }
}

}  // namespace korvel::desktop
