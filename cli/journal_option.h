#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "cli/workspace.h"
#include "periods/filters.h"

namespace korvel::cli {

/// `--diarios`: the journals that opening balances are taken from.
class JournalOption {
 public:
  void Declare(CLI::App& app);
  /// The journals given with the stored account range, as if both stood in the filter dialog; nothing when the option
  /// was not given. The workspace stands in a company. Throws data::Error.
  std::optional<periods::LunderChoice> Choice(Workspace& workspace) const;

 private:
  std::string codes_;
  CLI::Option* option_ = nullptr;
};

/// What a run without journals must be told about.
inline constexpr std::string_view kNoJournalWarning =
    "Aviso: sem diários seleccionados, todos os saldos iniciais ficam a zero (veja --diarios).";

}  // namespace korvel::cli
