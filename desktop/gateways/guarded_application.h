#pragma once

#include <QApplication>
#include <functional>

namespace korvel::desktop {

/// A program that a fault in the handling of one event does not end.
class GuardedApplication : public QApplication {
 public:
  using QApplication::QApplication;

  /// Calls what handles an event, and catches what comes out of it; without one nothing is caught.
  std::function<void(const std::function<void()>& handling)> guard;

  bool notify(QObject* receiver, QEvent* event) override;
};

}  // namespace korvel::desktop
