#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

#include "periods/period.h"

namespace korvel::cli {

/// A date as typed (YYYY-MM-DD) in that form. Throws Refusal for a text that is no date.
std::string DateArgument(std::string_view text);

/// The options that name a period.
struct PeriodOptions {
  std::string ano;
  std::string inicio;
  std::string fim;

  void Declare(CLI::App& app);
  /// Throws Refusal, with the forms' words, when one of them is blank or no date.
  periods::PeriodKey Key() const;
};

}  // namespace korvel::cli
