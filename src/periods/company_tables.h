#pragma once

#include <optional>
#include <string_view>

#include "periods/period.h"
#include "periods/staging.h"
#include "session/context.h"

/// What every extraction with a grid does at the company database. Failures are shown through the context's dialogs.
namespace korvel::periods {

inline constexpr std::string_view kSaving = "Em Gravação. Aguarde por favor...";
inline constexpr std::string_view kProcessing = "Em processamento Aguarde por favor...";

/// False when no period was chosen: operations then do nothing.
inline bool IsChosen(const PeriodKey& period) {
  return !period.fiscalYear.empty();
}

/// The staged rows of a period; nothing without a period or when they cannot be read.
std::optional<Grid> LoadFromCompany(const session::Context& context, const StagedTable& table,
                                    const PeriodKey& period);

/// SaveStaged on a connection of its own; false too without a period or when it fails.
bool SaveToCompany(const session::Context& context, const StagedTable& table, const PeriodKey& period,
                   const Grid& rows, std::string_view caption, std::string_view cliente = {});

/// Asks with the buttons "&Sim" and "&Não".
bool Confirmed(const session::Context& context, std::string_view question);

}  // namespace korvel::periods
