#pragma once

#include <QLabel>
#include <QMenuBar>
#include <functional>

#include "forms/common/form.h"
#include "forms/session/company_grid.h"
#include "session/entry/company_selection.h"

namespace korvel::desktop {

/// `frmSelEmpresas`: the companies of the user, the entry into one, and the tasks of administration. Left, it leads back
/// to the login.
class frmSelEmpresas : public Form {
 public:
  /// The selection outlives the form.
  frmSelEmpresas(Desk& desk, session::CompanySelection& selection, QWidget* parent = nullptr);

  bool Load() override;
  /// Shows what the selection holds, where it has been loaded already.
  void ShowSelection();

  /// Told when a company was entered, the form hidden.
  std::function<void()> onEnter;

 private:
  using Task = bool (session::CompanySelection::*)(const session::Context&);
  struct Entry;

  void BuildMenus();
  void AddEntry(QMenu& menu, const Entry& entry);
  QLayout* Foot();
  void ShowCompany();
  /// What the list's cursor stands on becomes the selection's; false, and nothing else, without a company.
  bool Choose();
  void RunTask(Task task);
  void Selecionar();
  void CreateCompany();
  void EditCompany();
  void CreateRights();
  void DeleteRights();
  void Reload();

  session::CompanySelection& selection_;
  CompanyGrid* lvwEmpresas_;
  QMenuBar* bar_;
  QLabel* lblCodEmpresa_;
  QLabel* lblInfo1_;
  QLabel* lblMsg_;
  QLabel* lblVersao_;
};

}  // namespace korvel::desktop
