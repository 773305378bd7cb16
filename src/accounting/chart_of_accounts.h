#pragma once

#include <optional>

#include "periods/filters.h"
#include "periods/period.h"
#include "periods/staging.h"
#include "session/context.h"

/// The chart of accounts of Lunder with opening balances, staged into `TabGeneralLedger`.
/// Periods offered: kAccountingOrIntegratedPeriods. Failures are shown through the context's dialogs.
namespace korvel::accounting {

/// The grid `lvwContas` and its staged table.
const periods::StagedTable& ContasTable();

/// Reads the accounts that `filter` lets through, with their balances, all ticked. Nothing when Lunder cannot
/// be read, when the user cancels, and when both clauses of the filter are empty: that holds for every
/// journal chosen without an account range too, which is deliberate.
std::optional<periods::Grid> CalcularContas(const session::Context& context, const periods::PeriodKey& period,
                                            const periods::LunderFilter& filter);

/// Replaces the period's accounts by the ticked rows. False when a row lacks its code or description (the
/// earlier rows are gone then) or the company database refuses (nothing has changed then).
bool GravarContas(const session::Context& context, const periods::PeriodKey& period,
                  const periods::Grid& contas);

/// The period's accounts as they are staged.
std::optional<periods::Grid> CarregarContas(const session::Context& context,
                                            const periods::PeriodKey& period);

}  // namespace korvel::accounting
