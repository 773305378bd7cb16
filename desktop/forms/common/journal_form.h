#pragma once

#include <functional>
#include <string_view>

#include "forms/common/form.h"
#include "forms/common/period_choice.h"
#include "gateways/row_feed.h"
#include "periods/staging.h"
#include "widgets/grid_panel.h"

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
/// replaces it by the ticked rows, `cmdLimpaLVW` empties the grid.
class JournalForm : public Form {
 public:
  JournalForm(Desk& desk, JournalKind kind, QWidget* parent = nullptr);

  bool Load() override;

 private:
  void Process();
  void Review();
  void Save();

  JournalKind kind_;
  PeriodChoice* eselFiscalYear_;
  GridPanel* grid_;
};

}  // namespace korvel::desktop
