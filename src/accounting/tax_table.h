#pragma once

#include <optional>

#include "periods/period.h"
#include "periods/staging.h"
#include "session/context.h"

/// Lunder's VAT table, staged into `TabTaxTablePOC`. Periods offered: kAccountingPeriods. Failures are shown
/// through the context's dialogs.
namespace korvel::accounting {

/// The grid `lvwImpostos` and its staged table.
const periods::StagedTable& ImpostosTable();

/// All rows of `TaxasIva`; those without audit file data come unticked. Nothing when it cannot be read.
std::optional<periods::Grid> CalcularImpostos(const session::Context& context,
                                              const periods::PeriodKey& period);

/// Replaces the period's rows by the ticked ones. False when a row lacks a required value (the earlier rows
/// are gone then) or the company database refuses (nothing has changed then).
bool GravarImpostos(const session::Context& context, const periods::PeriodKey& period,
                    const periods::Grid& impostos);

/// The period's rows as they are staged.
std::optional<periods::Grid> CarregarImpostos(const session::Context& context,
                                              const periods::PeriodKey& period);

}  // namespace korvel::accounting
