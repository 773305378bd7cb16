#pragma once

#include <map>
#include <string>
#include <vector>

#include "forms/common/form.h"
#include "periods/period_editor.h"
#include "widgets/grid_panel.h"

namespace korvel::desktop {

/// The list of the periods, from which they are made, changed, seen and deleted.
class frmTabHeader : public Form {
 public:
  explicit frmTabHeader(Desk& desk, QWidget* parent = nullptr);

  bool Load() override;

 private:
  QLayout* MakeButtons();
  bool Read(const periods::PeriodSearch& search);
  void OpenEntry(periods::HeaderMode mode);
  void ShowSaved(std::int64_t numRegisto);
  void SelectPeriod(const std::string& numRegisto);
  void Eliminar();
  void Pesquisar();
  std::vector<periods::PeriodListItem> Selected() const;

  GridPanel* lvwTabela_;
  QPushButton* cmdAlterar_ = nullptr;
  std::map<std::string, periods::PeriodListItem> items_;  // by the text of their `NumRegisto`
  periods::PeriodSearch search_;
};

/// `cPesquisa`: asks what to look for in the list.
class PeriodSearchWindow : public Form {
 public:
  PeriodSearchWindow(Desk& desk, const periods::PeriodSearch& search, QWidget* parent);

  periods::PeriodSearch Search() const;

 private:
  class QLineEdit* txtFiscalYear_;
  class QLineEdit* txtCompanyName_;
};

}  // namespace korvel::desktop
