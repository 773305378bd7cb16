#pragma once

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <vector>

#include "forms/common/form.h"
#include "periods/row_correction.h"
#include "widgets/edatas.h"
#include "widgets/grid_model.h"

namespace korvel::desktop {

/// Corrects a row of a grid of taxes by hand, on the grid alone.
class frmTaxTableIns : public Form {
 public:
  /// `table` is what the grid shows, of the books or of billing: both outlive the form.
  frmTaxTableIns(Desk& desk, const periods::StagedTable& table, GridModel& grid, std::size_t row,
                 QWidget* parent = nullptr);

  /// Shows the form until it is left; true when the grid was corrected.
  bool Abrir();

 private:
  struct Entry {
    std::size_t column;
    QLineEdit* box;
    QCheckBox* fill;  // null where a column cannot be filled
  };

  void AddEntry(QGridLayout& fields, const periods::TaxField& field);
  QLineEdit* MakeBox(const periods::TaxField& field, std::size_t column);
  void JoinCodeAndDescription();
  bool HasGoodDate();
  std::vector<periods::Correction> Corrections() const;
  void Gravar();

  const periods::StagedTable& table_;
  GridModel& grid_;
  std::size_t row_;
  std::vector<Entry> entries_;
  QLineEdit* txtSaft_TaxCode_ = nullptr;
  QLineEdit* txtSaft_Description_ = nullptr;
  Edatas* edatSaft_TaxExpirationDate_ = nullptr;
  QPushButton* cmdGravar_;
};

}  // namespace korvel::desktop
