#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "forms/common/period_grid_form.h"
#include "gateways/row_feed.h"

namespace korvel::desktop {

/// What a form shows whose rows are staged at one stroke, being too many to be read into a grid first.
struct JournalKind {
  std::string_view form;     // "frmGeneralLedgerEntriesLunder"
  std::string_view grid;     // "lvwDocumentos"
  std::string_view periods;  // condition on the periods offered
  const periods::StagedTable* table;
  std::function<bool(const session::Context&, const periods::ChosenPeriod&)> process;
  /// Hands the staged rows over, one at a time, on the thread of a feed; false when they are not to be had.
  std::function<bool(const session::Context&, const periods::ChosenPeriod&, const RowFeed::Sink&)> review;
  std::function<bool(const session::Context&, const periods::ChosenPeriod&, const periods::Grid&)> save;
};

/// `cmdCalcular` reads the source and stages it, `cmdVerRegistos` shows what is staged, a screen at a time, `cmdGravar`
/// replaces it by the rows of the grid, `cmdLimpaLVW` empties the grid.
class JournalForm : public PeriodGridForm {
 public:
  JournalForm(Desk& desk, JournalKind kind, QWidget* parent = nullptr);

 private:
  void Process();
  void Review();
  void Save();
  void ShowCount(std::int64_t count);

  JournalKind kind_;
};

}  // namespace korvel::desktop
