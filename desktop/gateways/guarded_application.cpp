#include "gateways/guarded_application.h"

namespace korvel::desktop {

bool GuardedApplication::notify(QObject* receiver, QEvent* event) {
  if (!guard) return QApplication::notify(receiver, event);
  bool handled = true;
  guard([&] { handled = QApplication::notify(receiver, event); });
  return handled;
}

}  // namespace korvel::desktop
