#pragma once

#include <optional>

#include "billing/billing_period.h"
#include "periods/staging.h"
#include "session/context.h"

/// The sale tax codes of Brevant, staged into `TabTaxTableGEST`, by which the lines of documents are translated.
/// Periods offered: kBillingOrIntegratedPeriods. Failures are shown through the context's dialogs.
namespace korvel::billing {

/// The grid `lvwImpostos` and its staged table.
const periods::StagedTable& ImpostosTable();

/// All sale codes; what one lacks for the file is left blank, and the save refuses it. Nothing without a period, when
/// the user cancels, and when a database does not open or fails.
std::optional<periods::Grid> CalcularImpostos(const session::Context& context, const BillingPeriod& period);

/// Replaces the rows of the period and its customer. False without a period and when the company database does not
/// open or fails: nothing has changed then. False too at the first row that lacks a required value, which is said: the
/// rows before it stand in place of the old ones, as designed.
bool GravarImpostos(const session::Context& context, const BillingPeriod& period,
                    const periods::Grid& impostos);

/// The staged rows of the period, all customers'.
std::optional<periods::Grid> CarregarImpostos(const session::Context& context,
                                              const periods::PeriodKey& period);

}  // namespace korvel::billing
