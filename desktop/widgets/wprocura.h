#pragma once

#include <QDialog>
#include <QLineEdit>
#include <cstddef>
#include <optional>
#include <string>

#include "widgets/grid_view.h"

namespace korvel::desktop {

/// `WProcura`: finds a text in any visible cell of a grid, in any case of letters. A new text is looked for from the
/// first row on, the same one again from behind the current row; a feed is read to its end before there is none.
class WProcura : public QDialog {
 public:
  WProcura(Desk& desk, GridView& grid);

  /// Shows the window with the cursor in its text.
  void Open();
  bool HasText() const { return !txtProcura_->text().isEmpty(); }
  /// Goes to the next row with the text; says when there is none. False then.
  bool FindNext();

 private:
  std::optional<std::size_t> RowWith(const std::string& wanted, std::size_t first);

  Desk& desk_;
  GridView& grid_;
  QLineEdit* txtProcura_;
  std::string looked_;  // the text looked for last
};

}  // namespace korvel::desktop
