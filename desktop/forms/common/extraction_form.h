#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "forms/common/period_grid_form.h"

namespace korvel::desktop {

/// What an extraction form with a grid shows and calls: all in which the seven of them differ.
struct ExtractionKind {
  std::string_view form;     // "frmCustomerLunder"
  std::string_view grid;     // "lvwClientes"
  std::string_view periods;  // condition on the periods offered
  const periods::StagedTable* table;
  using Loader =
      std::function<std::optional<periods::Grid>(const session::Context&, const periods::ChosenPeriod&)>;
  Loader load;       // what is staged
  Loader calculate;  // from the source
  std::function<bool(const session::Context&, const periods::ChosenPeriod&, const periods::Grid&)> save;
  /// Asks for what `calculate` needs beyond the period, before it; false: given up. Empty: nothing.
  std::function<bool(QWidget* parent)> ask = {};
  /// `cmdAlterar`: corrects a row of the grid by hand. Empty: the form has no such button.
  std::function<void(QWidget* parent, GridModel& grid, std::size_t row)> correct = {};
};

/// An extraction form: choosing a period shows what is staged, `cmdCalcular` reads the source into the grid, `cmdGravar`
/// replaces the staged rows by the ticked ones. A row that the save refuses gets the cursor.
class ExtractionForm : public PeriodGridForm {
 public:
  ExtractionForm(Desk& desk, ExtractionKind kind, QWidget* parent = nullptr);

 private:
  void ChoosePeriod();
  void Calculate();
  void Save();
  void Correct();

  ExtractionKind kind_;
};

}  // namespace korvel::desktop
