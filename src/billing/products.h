#pragma once

#include <optional>

#include "billing/billing_period.h"
#include "periods/filters.h"
#include "periods/staging.h"
#include "session/context.h"

/// Every code that a line of a sales document can bear, staged into `TabProductGEST`: articles, extra charges,
/// free-text items and the code of documents without lines. Periods offered: kBillingOrIntegratedPeriods. Failures are
/// shown through the context's dialogs.
namespace korvel::billing {

/// The grid `lvwProdutos` and its staged table.
const periods::StagedTable& ProdutosTable();

/// All rows, the articles narrowed by the filter. Nothing without a period, for a cancelled filter, when the user
/// cancels, and when a database does not open or fails.
std::optional<periods::Grid> CalcularProdutos(const session::Context& context, const BillingPeriod& period,
                                              const periods::BrevantFilter& filter);

/// Replaces the rows of the period and its customer. False without a period and when the company database does not
/// open or fails: nothing has changed then. False too at the first row that lacks a required value, which is said: the
/// rows before it stand in place of the old ones, as designed.
bool GravarProdutos(const session::Context& context, const BillingPeriod& period,
                    const periods::Grid& produtos);

/// The staged rows of the period, all customers'.
std::optional<periods::Grid> CarregarProdutos(const session::Context& context,
                                              const periods::PeriodKey& period);

}  // namespace korvel::billing
