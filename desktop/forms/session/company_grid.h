#pragma once

#include <string>

#include "session/entry/company_list.h"
#include "widgets/grid_panel.h"

namespace korvel::desktop {

/// `lvwEmpresas`: the companies, each with the picture of its state.
class CompanyGrid : public GridPanel {
 public:
  CompanyGrid(Desk& desk, std::string_view form, QWidget* parent = nullptr);

  /// The cursor goes to the company of that code, if it is there.
  void ShowCompanies(const session::CompanyLines& companies, std::string_view code);
  /// Of the row with the cursor; "" without one.
  std::string CurrentCode();
};

}  // namespace korvel::desktop
