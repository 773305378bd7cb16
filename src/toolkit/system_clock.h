#pragma once

#include <optional>

#include "toolkit/ports.h"

namespace korvel::toolkit {

/// Local time of this machine, or the moment that the variable KORVEL_HOJE fixes for repeatable files:
/// "YYYY-MM-DD" (at 00:00:00) or "YYYY-MM-DDTHH:MM:SS".
class SystemClock : public Clock {
 public:
  /// Throws std::invalid_argument when KORVEL_HOJE is set to anything else; empty counts as not set.
  SystemClock();
  data::DateTime Now() const override;

 private:
  std::optional<data::DateTime> fixed_;
};

}  // namespace korvel::toolkit
