#pragma once

#include <QTimer>

#include "forms/common/form.h"
#include "widgets/grid_panel.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {

/// How often and for which period the company exports by itself, and the history of the runs.
class frmEnvioAutomatico : public Form {
 public:
  explicit frmEnvioAutomatico(Desk& desk, QWidget* parent = nullptr);

  bool Load() override;

 private:
  void Arrange();
  bool Refresh();
  void Gravar();
  void Eliminar();

  SelOpta* eselPeriodicidadeEnvio_;
  SelOpta* eselPeriodoDados_;
  GridPanel* lvwHistorico_;
  QTimer tmrHistorico_;
};

}  // namespace korvel::desktop
