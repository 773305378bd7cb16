#pragma once

#include <QTableView>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "widgets/grid_model.h"

namespace korvel::desktop {

class WProcura;

/// Rows of a GridModel: whole rows are selected, a click on a heading sorts, the menu key inverts the ticks, the space
/// bar ticks the selected rows, Ctrl+F finds (F3 again), Ctrl+C copies the selected rows with their headings, apart by
/// tabs. Enter and a double click activate a row.
class GridView : public QTableView {
 public:
  explicit GridView(Desk& desk, GridModel& model, QWidget* parent = nullptr);
  ~GridView() override;

  GridModel& Model() { return model_; }

  /// Nothing in a grid without rows.
  std::optional<std::size_t> CurrentRow() const;
  /// All selected rows, from the top.
  std::vector<std::size_t> SelectedRows() const;
  /// Puts the cursor in a row and brings it into view.
  void SelectRow(std::size_t row);
  /// Makes a column of a short list wide enough for its texts; none gets narrower.
  void WidenToTexts(std::size_t column);

  void CopyRows();
  void ShowFind();

  /// Enter or a double click on a row; false when that means nothing here.
  std::function<bool()> onActivate;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void SetUp();
  void SetUpColumns();
  int FirstWidth(int column, int twips) const;
  void SortOn(int column);
  bool ActOn(const QKeyEvent& event);
  void Find();
  void TickSelected();
  bool Activate();

  Desk& desk_;
  GridModel& model_;
  std::unique_ptr<WProcura> find_;
};

}  // namespace korvel::desktop
