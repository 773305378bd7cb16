#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "gateways/desk.h"
#include "periods/period_selector.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {

/// `eselFiscalYear`: the periods that a form serves.
class PeriodChoice final : public SelOpta {
 public:
  /// `filter` is one of the conditions of the core, empty for all periods.
  PeriodChoice(Desk& desk, std::string_view filter, QWidget* parent = nullptr);

  /// Reads the periods; the choice stays while it is still there. False when they cannot be read, which is shown.
  bool LoadPeriods();
  /// The period chosen; its parts are empty when there is none.
  periods::ChosenPeriod Chosen() const { return periods::ChosenBy(Chave()); }

 private:
  Desk& desk_;
  std::string filter_;
};

}  // namespace korvel::desktop
