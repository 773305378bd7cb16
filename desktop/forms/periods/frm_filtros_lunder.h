#pragma once

#include "forms/common/form.h"
#include "periods/filters.h"
#include "widgets/code_box.h"
#include "widgets/grid_panel.h"

namespace korvel::desktop {

/// Accounts and journals that the calculation of the chart of accounts goes over. What is chosen here holds for one run;
/// the parameters stay.
class frmFiltrosLunder : public Form {
 public:
  explicit frmFiltrosLunder(Desk& desk, QWidget* parent = nullptr);

  /// Shows the dialog until it is left. A cancelled filter too when a database does not open.
  periods::LunderFilter Escolher();

  bool Load() override;

 private:
  void Arrange();
  void Continuar();
  void ShowJournals();
  periods::LunderFilterForm Shown() const;

  periods::LunderFilterForm stored_;
  CodeBox* txtContaInicial_;
  CodeBox* txtContaFinal_;
  GridPanel* lvwDiarios_;
};

}  // namespace korvel::desktop
