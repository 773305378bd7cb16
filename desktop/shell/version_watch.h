#pragma once

#include <QObject>
#include <functional>
#include <thread>

#include "gateways/desk.h"

namespace korvel::desktop {

/// Looks whether a newer program has upgraded the company's database. A look has a session of its own and holds nobody
/// up, even where the server has gone.
class VersionWatch {
 public:
  explicit VersionWatch(Desk& desk) : desk_(desk) {}
  /// Waits for a look under way.
  ~VersionWatch();
  VersionWatch(const VersionWatch&) = delete;
  VersionWatch& operator=(const VersionWatch&) = delete;

  /// Begins a look, unless one is under way. On the screen's thread.
  void Look();

  /// Told on the screen's thread.
  std::function<void()> onNewer;

 private:
  void End(bool newer);

  Desk& desk_;
  QObject screen_;
  std::thread thread_;
  bool looking_ = false;
};

}  // namespace korvel::desktop
