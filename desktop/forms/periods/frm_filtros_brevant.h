#pragma once

#include "forms/common/form.h"
#include "periods/filters.h"
#include "widgets/code_box.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {

/// Products that an extraction goes over. What is chosen here holds for one run; the parameters stay.
class frmFiltrosBrevant : public Form {
 public:
  explicit frmFiltrosBrevant(Desk& desk, QWidget* parent = nullptr);

  /// Shows the dialog until it is left. A cancelled filter too when the company does not open.
  periods::BrevantFilter Escolher();

  bool Load() override;

 private:
  void Arrange();
  periods::BrevantChoice Shown() const;

  CodeBox* txtGrupo_;
  CodeBox* txtFamilia_;
  CodeBox* txtSubFamilia_;
  CodeBox* txtSituacao_;
  SelOpta* eselPatamar_;
};

}  // namespace korvel::desktop
