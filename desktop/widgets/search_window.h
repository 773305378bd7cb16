#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <optional>
#include <string>
#include <string_view>

#include "gateways/desk.h"
#include "periods/table_search.h"
#include "widgets/grid_panel.h"

namespace korvel::desktop {

/// `frmWPesq`: the rows of a table, filtered by what is typed in `txtKey`, of which one is chosen.
class SearchWindow : public QDialog {
 public:
  SearchWindow(Desk& desk, const periods::TableSearch& search, std::string_view typed, QWidget* parent);

  /// The row chosen, nothing when the window was left.
  std::optional<periods::FoundRow> Choose();

 private:
  void Load();

  Desk& desk_;
  const periods::TableSearch& search_;
  QLineEdit* txtKey_;
  QCheckBox* chkSearchChange_;
  QCheckBox* chkSearchPrincipio_;
  QLabel* lblContagem_;
  GridPanel* lvwPesquisa_;
};

}  // namespace korvel::desktop
