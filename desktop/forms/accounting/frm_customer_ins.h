#pragma once

#include "forms/common/correction_form.h"

namespace korvel::desktop {

/// Corrects a row of a grid of customers or suppliers.
class frmCustomerIns : public CorrectionForm {
 public:
  frmCustomerIns(Desk& desk, const periods::StagedTable& table, GridModel& grid, std::size_t row,
                 QWidget* parent = nullptr);

 private:
  QWidget* MakeSection(int section);
  void AddSelfBilling(QGridLayout& fields);
  void JoinTwins();
  QLineEdit* BoxOf(std::string_view column) const;
  std::vector<periods::Correction> Corrections() const override;

  std::size_t selfBilling_ = 0;  // its column
  QCheckBox* chkSelfBillingIndicator_ = nullptr;
};

}  // namespace korvel::desktop
