#include "widgets/locked_look.h"

#include <QPalette>

namespace korvel::desktop {

void ShowLocked(QWidget& field, bool locked) {
  field.setPalette({});  // whatever the window has
  if (!locked) return;
  QPalette ground = field.palette();
  ground.setBrush(QPalette::Base, ground.window());
  ground.setBrush(QPalette::Button, ground.window());
  field.setPalette(ground);
}

}  // namespace korvel::desktop
