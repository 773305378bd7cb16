#pragma once

#include "forms/common/correction_form.h"
#include "widgets/edatas.h"

namespace korvel::desktop {

/// Corrects a row of a grid of taxes.
class frmTaxTableIns : public CorrectionForm {
 public:
  frmTaxTableIns(Desk& desk, const periods::StagedTable& table, GridModel& grid, std::size_t row,
                 QWidget* parent = nullptr);

 private:
  QLineEdit* MakeField(const periods::TaxField& field, std::size_t column);
  void JoinCodeAndDescription();
  bool Check() override;

  QLineEdit* txtSaft_TaxCode_ = nullptr;
  QLineEdit* txtSaft_Description_ = nullptr;
  Edatas* edatSaft_TaxExpirationDate_ = nullptr;
};

}  // namespace korvel::desktop
