#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "periods/period.h"

namespace korvel::cli {

/// `--base`: the kind of system of a run.
class BasisOption {
 public:
  void Declare(CLI::App& app);
  /// Throws Refusal when it is blank, UsageError for any other letter than C, F and I.
  periods::Basis Get() const;

 private:
  std::string text_;
};

}  // namespace korvel::cli
