#pragma once

#include <QDialog>
#include <QLineEdit>
#include <string_view>

#include "widgets/grid_view.h"

namespace korvel::desktop {

/// `WProcura`: finds a text in any cell of a grid, in any case of letters, from the row behind the current one on.
class WProcura : public QDialog {
 public:
  WProcura(Desk& desk, GridView& grid);

  /// Goes to the next row with the text; says when there is none. False then.
  bool FindNext();

 private:
  Desk& desk_;
  GridView& grid_;
  QLineEdit* txtProcura_;
  bool found_ = false;
};

}  // namespace korvel::desktop
