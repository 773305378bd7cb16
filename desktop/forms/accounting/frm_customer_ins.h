#pragma once

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <vector>

#include "forms/common/form.h"
#include "periods/row_correction.h"
#include "widgets/grid_model.h"

namespace korvel::desktop {

/// Corrects a row of a grid of customers or suppliers by hand, on the grid alone.
class frmCustomerIns : public Form {
 public:
  /// `table` is what the grid shows, of the books or of billing: both outlive the form.
  frmCustomerIns(Desk& desk, const periods::StagedTable& table, GridModel& grid, std::size_t row,
                 QWidget* parent = nullptr);

  /// Shows the form until it is left; true when the grid was corrected.
  bool Abrir();

 private:
  struct Entry {
    const periods::CorrectionField* field;
    std::size_t column;
    QLineEdit* box;
    QCheckBox* fill;  // null where a column cannot be filled
  };

  QWidget* MakeSection(int section);
  void AddEntry(QGridLayout& fields, const periods::CorrectionField& field, std::size_t column);
  QCheckBox* AddFill(QGridLayout& fields, const periods::CorrectionField& field);
  void AddSelfBilling(QGridLayout& fields);
  void JoinTwins();
  std::vector<periods::Correction> Corrections() const;
  void Gravar();

  const periods::StagedTable& table_;
  GridModel& grid_;
  std::size_t row_;
  std::vector<Entry> entries_;
  std::size_t selfBilling_ = 0;  // its column
  QCheckBox* chkSelfBillingIndicator_ = nullptr;
  QPushButton* cmdGravar_;
};

}  // namespace korvel::desktop
