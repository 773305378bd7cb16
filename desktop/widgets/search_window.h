#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gateways/desk.h"
#include "periods/table_search.h"
#include "widgets/grid_panel.h"

namespace korvel::desktop {

/// `frmWPesq`: the rows of a table, filtered by what is typed in `txtKey`, of which one is chosen. A click on a heading
/// searches in that column. Reads no more rows than one looks through, and counts all.
class SearchWindow : public QDialog {
 public:
  /// `typed` is what is searched at first. `search` outlives the window.
  SearchWindow(Desk& desk, const periods::TableSearch& search, std::string_view typed, QWidget* parent);

  /// The row chosen; nothing when the window was left, or did not open because the table cannot be read, which is shown.
  std::optional<periods::FoundRow> Choose();

  void done(int result) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Arrange();
  void Listen();
  bool Load();
  void ShowRows();
  void ShowCount(std::int64_t count);
  void SearchColumn(int column);
  void RestoreOrder();
  void KeepHabits();
  void Confirm();
  void TakeCurrent();

  Desk& desk_;
  const periods::TableSearch& search_;
  periods::SearchRequest request_;  // the one that is shown
  std::vector<periods::FoundRow> found_;
  std::optional<periods::FoundRow> chosen_;
  QTimer pause_;  // between a key and its search
  QLineEdit* txtKey_;
  QCheckBox* chkSearchChange_;
  QCheckBox* chkSearchPrincipio_;
  QLabel* lblContagem_;
  QLabel* lblLimite_;
  GridPanel* lvwPesquisa_;
};

}  // namespace korvel::desktop
