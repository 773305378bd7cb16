#pragma once

#include <QLabel>
#include <QWidget>
#include <functional>
#include <optional>
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
  ~GridPanel() override;

  GridModel& Model() { return model_; }
  GridView& View() { return *view_; }

  /// The row with the cursor.
  std::optional<std::size_t> CurrentRow() const;
  /// All selected rows, from the top.
  std::vector<std::size_t> SelectedRows() const;
  void SelectRow(std::size_t row);

  /// A double click on a row, or Enter.
  std::function<void()> onActivate;

 private:
  void RefreshFoot();

  Desk& desk_;
  std::string form_;
  GridModel model_;
  GridView* view_;
  QLabel* lblRodape_;
};

/// The columns of a staged table as its review grid shows them; a code list such as `Nº Registo` of width 0 is hidden.
std::vector<toolkit::GridColumn> GridColumnsOf(std::span<const periods::Column> columns);

}  // namespace korvel::desktop
