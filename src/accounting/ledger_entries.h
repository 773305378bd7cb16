#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "periods/period.h"
#include "periods/staging.h"
#include "session/context.h"

/// The journal lines of Lunder, staged into `TabGeneralLedgerEntriesPOC`. Periods offered:
/// kAccountingOrIntegratedPeriods. The chart of accounts must be staged before: a line whose account is not
/// staged for the period is left out. Failures are shown through the context's dialogs.
namespace korvel::accounting {

/// Whether "Confirma ...?" is asked before the work; an unattended run asks nothing.
enum class Confirmation { Ask, Skip };

/// The grid `lvwDocumentos` and its staged table.
const periods::StagedTable& MovimentosTable();

/// Verifies the period's journal, then replaces its staged lines. False when the user declines or cancels,
/// when a journal or document number holds a character that it may not, when a line lacks a required value or
/// a database fails. The earlier lines stay in all these cases but one: after a line that lacks a value the
/// period has none.
bool CalcularMovimentos(const session::Context& context, const periods::PeriodKey& period,
                        Confirmation confirmation);

/// The period's staged lines in the order of the journal, one at a time: there may be a million of them.
class LedgerReview {
 public:
  virtual ~LedgerReview() = default;
  /// "Movimentos Contabilísticos - " and the count.
  virtual std::string Caption() const = 0;
  virtual std::int64_t Count() const = 0;
  /// Fills `row` with the next line, in the columns of MovimentosTable; false behind the last. Reuses what
  /// `row` holds. Throws data::Error, and toolkit::Cancelled when the user cancels.
  virtual bool Next(periods::GridRow& row) = 0;
};

/// Opens the review; null when there is nothing staged, the user declines or the company database fails.
/// The context must outlive it.
std::unique_ptr<LedgerReview> VerRegistos(const session::Context& context, const periods::PeriodKey& period,
                                          Confirmation confirmation);

/// Replaces the period's staged lines by these, without any test of their values. False when the company
/// database refuses; nothing has changed then.
bool GravarMovimentos(const session::Context& context, const periods::PeriodKey& period,
                      const periods::Grid& linhas);

}  // namespace korvel::accounting
