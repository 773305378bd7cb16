#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include "gateways/work_progress.h"

namespace korvel::desktop {

/// What stands before the windows while long work goes on: caption, bar, count, rate, time left, and a button that
/// cancels. Looks at the work ten times a second.
class WorkBox : public QDialog {
 public:
  WorkBox(WorkProgress& progress, QWidget* parent);

  /// Escape asks for the cancellation; the box goes when the work has ended.
  void reject() override;

 private:
  void Refresh();

  WorkProgress& progress_;
  QLabel* lblTitulo_;
  QLabel* lblRegisto_;
  QLabel* lblContagem_;
  QProgressBar* pgBar_;
  QPushButton* cmdCancelar_;
  QTimer timer_;
};

}  // namespace korvel::desktop
