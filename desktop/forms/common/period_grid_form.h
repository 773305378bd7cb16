#pragma once

#include <initializer_list>
#include <string_view>

#include "forms/common/form.h"
#include "forms/common/period_choice.h"
#include "periods/staging.h"
#include "widgets/grid_panel.h"

namespace korvel::desktop {

/// A form over the rows of a period: the choice of the period, a grid, buttons at the foot. The title says which period
/// is loaded.
class PeriodGridForm : public Form {
 public:
  /// Reads the periods.
  bool Load() override;

 protected:
  struct Content {
    std::string_view form;
    std::string_view grid;
    std::string_view periods;  // condition on the periods offered
    const periods::StagedTable& table;
    bool withTicks;
  };

  PeriodGridForm(Desk& desk, const Content& content, QWidget* parent);

  void Arrange(std::initializer_list<QWidget*> buttons);
  bool HasPeriod() const { return !eselFiscalYear_->Chave().empty(); }
  /// Shows these rows as those of the period chosen.
  void ShowRows(periods::Grid rows);
  void ClearGrid();
  GridModel& Model() { return grid_->Model(); }

  PeriodChoice* eselFiscalYear_;
  GridPanel* grid_;
};

}  // namespace korvel::desktop
