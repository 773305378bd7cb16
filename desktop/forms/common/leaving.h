#pragma once

#include <QEvent>
#include <QFocusEvent>
#include <QObject>
#include <QWidget>
#include <functional>
#include <utility>

namespace korvel::desktop {

/// Calls `action` once the cursor has gone from `field` to another one of its window; not when a box, a menu or another
/// program comes to the front. `action` may show boxes: it is called after the change of focus.
inline void OnLeaving(QWidget* field, std::function<void()> action) {
  class Watch final : public QObject {
   public:
    Watch(QWidget* field, std::function<void()> action) : QObject(field), action_(std::move(action)) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
      if (event->type() == QEvent::FocusOut && Leaves(static_cast<QFocusEvent*>(event)->reason())) {
        QMetaObject::invokeMethod(
            this, [this] { Act(); }, Qt::QueuedConnection);
      }
      return QObject::eventFilter(watched, event);
    }

   private:
    static bool Leaves(Qt::FocusReason reason) {
      return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
             reason != Qt::MenuBarFocusReason;
    }
    void Act() {
      if (static_cast<QWidget*>(parent())->isVisible()) action_();
    }

    std::function<void()> action_;
  };
  field->installEventFilter(new Watch(field, std::move(action)));
}

}  // namespace korvel::desktop
