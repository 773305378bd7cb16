#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <optional>
#include <string>

#include "databases/company_editor.h"
#include "forms/common/form.h"

namespace korvel::desktop {

/// `frmCriaEmpresa`: creates a company, or changes one with the list of its users. Left by accept() when it did.
class frmCriaEmpresa : public Form {
 public:
  /// A blank code: mode "N", new; else mode "A", the company to change.
  frmCriaEmpresa(Desk& desk, std::string code, QWidget* parent = nullptr);

  bool Load() override;

 private:
  QWidget* UserFrame();
  QLayout* Buttons();
  bool IsNew() const { return code_.empty(); }
  std::optional<databases::CompanyCard> ReadCard();
  void ShowCard(const databases::CompanyCard& card);
  databases::CompanyCard Typed() const;
  void TickAll(bool ticked);
  void Save();

  std::string code_;
  QLineEdit* txtCodigo_;
  QLineEdit* txtDescricao_;
  QListWidget* lvwUtilizadores_;
  QCheckBox* chkAcessoPrincipal_;
  QCheckBox* chkAcessoIndependente_;
};

}  // namespace korvel::desktop
