#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "databases/passed_over.h"

namespace korvel::databases {

/// What the upgrades of one run share, over one database or over all of a server.
struct UpgradeRun {
  /// Called between the attempts to change a database's state.
  std::function<void()> pause = [] { std::this_thread::sleep_for(std::chrono::seconds(1)); };
  /// A newer server refuses the old compatibility level of every database alike: it is told once.
  bool levelRefusalShown = false;
};

struct UpgradeResult {
  bool ran = false;  // false: the server or the database did not open, which was shown
  std::vector<Failed>
      passedOver;  // steps that failed; on a database upgraded before, mostly what existed already
};

}  // namespace korvel::databases
