#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/connection.h"

namespace korvel::databases {

/// A step of an upgrade that failed.
struct Failed {
  std::string step;  // its statement, or what it does
  std::string text;  // the server's
};

/// Upgrades run all their statements each time and go on after each failure, by design: creating what is there
/// already fails. The failures are kept here, so that a caller can tell the expected ones from others.
class PassedOver {
 public:
  /// Runs `step()`; a data::Error is noted under `name` and passed over.
  template <typename Step>
  void Try(std::string name, Step&& step) {
    try {
      step();
    } catch (const data::Error& error) {
      failures_.push_back({std::move(name), error.what()});
    }
  }

  void Run(data::Connection& connection, std::string_view statement) {
    Try(std::string(statement), [&] { connection.Execute(statement); });
  }

  const std::vector<Failed>& Failures() const { return failures_; }

 private:
  std::vector<Failed> failures_;
};

}  // namespace korvel::databases
