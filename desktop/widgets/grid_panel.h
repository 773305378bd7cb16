#pragma once

#include <QLabel>
#include <QWidget>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/grid_model.h"
#include "widgets/grid_view.h"

namespace korvel::desktop {

/// A grid with its foot, which counts rows and ticks and sums amounts. Widths of columns are remembered per user under
/// the form's name.
class GridPanel : public QWidget {
 public:
  /// `name` is that of the grid ("lvwClientes"), which the view bears; `form` that of its form.
  GridPanel(Desk& desk, std::string_view form, std::string_view name,
            std::vector<toolkit::GridColumn> columns, bool withTicks, QWidget* parent = nullptr);

  GridModel& Model() { return model_; }
  GridView& View() { return *view_; }

  std::optional<std::size_t> CurrentRow() const { return view_->CurrentRow(); }
  std::vector<std::size_t> SelectedRows() const { return view_->SelectedRows(); }
  void SelectRow(std::size_t row) { view_->SelectRow(row); }

  /// A double click on a row, or Enter.
  std::function<void()> onActivate;

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void Listen();
  void RefreshFoot();
  std::vector<std::size_t> SummedColumns() const;
  void RestoreWidths();
  void KeepWidths();

  Desk& desk_;
  std::string form_;
  std::string name_;
  GridModel model_;
  GridView* view_;
  QLabel* lblRodape_;
  bool widthsChanged_ = false;
};

/// The columns of a staged table as its review grid shows them.
std::vector<toolkit::GridColumn> GridColumnsOf(std::span<const periods::Column> columns);

}  // namespace korvel::desktop
