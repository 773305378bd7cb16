#pragma once

#include <QTableView>
#include <functional>

#include "widgets/grid_model.h"

namespace korvel::desktop {

/// Rows of a GridModel: whole rows are selected, a click on a heading sorts, the menu key inverts the ticks, the space
/// bar ticks the selected rows, Ctrl+F finds (F3 again), Ctrl+C copies the selected rows with their headings, apart by
/// tabs.
class GridView : public QTableView {
 public:
  GridView(GridModel& model, QWidget* parent = nullptr);

  void CopyRows();
  void ShowFind();

  std::function<void()> onActivate;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  GridModel& model_;
};

}  // namespace korvel::desktop
