#include "widgets/choice_box.h"

#include <QWheelEvent>

#include "gateways/text.h"
#include "widgets/locked_look.h"

namespace korvel::desktop {

ChoiceBox::ChoiceBox(std::string_view name, QWidget* parent) : QComboBox(parent) {
  setObjectName(ToQt(name));
  setFocusPolicy(Qt::StrongFocus);
}

void ChoiceBox::SetLocked(bool locked) {
  locked_ = locked;
  ShowLocked(*this, locked);
}

void ChoiceBox::showPopup() {
  if (!locked_) QComboBox::showPopup();
}

void ChoiceBox::keyPressEvent(QKeyEvent* event) {
  if (locked_) {
    event->ignore();
  } else {
    QComboBox::keyPressEvent(event);
  }
}

void ChoiceBox::wheelEvent(QWheelEvent* event) {
  if (locked_ || !hasFocus()) {
    event->ignore();
  } else {
    QComboBox::wheelEvent(event);
  }
}

}  // namespace korvel::desktop
