#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "session/entry/company_list.h"

namespace korvel::session {

/// `frmSelEmpresas`: the list of companies, the entry into one, and what its menus decide. One object lives as long as
/// the form. Failures are shown; members throw EndProgram alone.
class CompanySelection {
 public:
  /// Loading the form: what the user may do, and the list. False when the configuration did not open.
  bool Load(const Context& context);
  /// Fills the list anew; the line chosen before stays so while there is one at its place.
  bool LoadEmpresas(const Context& context);

  const std::string& Caption() const { return caption_; }
  const CompanyLines& Companies() const { return companies_; }
  /// Whether `mnuEmpresas` and `mnuUtilitarios` are available.
  bool HasAdminMenus() const { return adminMenus_; }

  /// Chooses the first company of that code, in any case of letters; without one nothing is chosen, and false comes
  /// back.
  bool Select(std::string_view code);
  void SelectLine(std::optional<std::size_t> line) { selected_ = line; }
  /// Null when nothing is chosen.
  const CompanyLine* Selected() const;

  /// `cmdSelecionar`: enters the chosen company; true when the main window is to be shown. Nothing happens without a
  /// chosen company, or while an entry is under way, which a second click may meet.
  bool Selecionar(const Context& context);

  /// `eli`: deletes the chosen company.
  bool EliminarEmpresa(const Context& context);
  /// `mnuacttodas`: upgrades the chosen company or all that are listed.
  bool ActualizarEmpresas(const Context& context);
  /// `mnubloq`: blocks or frees the chosen company.
  bool BloquearEmpresa(const Context& context);
  /// `veremp`: checks the chosen company and `KorvelConfig`.
  bool VerificarEmpresa(const Context& context);

 private:
  bool DecideAdminMenus(const Context& context, data::Connection& config) const;
  bool Enter(const Context& context, const CompanyLine& company);
  bool VersionAgrees(const Context& context, const CompanyLine& company);

  std::string caption_;
  CompanyLines companies_;
  std::optional<std::size_t> selected_;
  bool adminMenus_ = false;
  bool busy_ = false;
};

}  // namespace korvel::session
