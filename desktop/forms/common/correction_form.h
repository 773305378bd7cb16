#pragma once

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <string_view>
#include <vector>

#include "forms/common/form.h"
#include "periods/row_correction.h"
#include "widgets/grid_model.h"

namespace korvel::desktop {

/// Corrects a row of a review grid by hand, on the grid alone: a box a column, some with a check box that fills the blank
/// cells of the other rows too.
class CorrectionForm : public Form {
 public:
  /// Shows the form until it is left; true when the grid was corrected.
  bool Abrir() { return Ask(); }

 protected:
  struct Entry {
    std::size_t column;
    QLineEdit* box;
    QCheckBox* fill;  // null where a column cannot be filled
  };

  /// `table` is what the grid shows, of the books or of billing: both outlive the form.
  CorrectionForm(Desk& desk, std::string_view name, const periods::StagedTable& table, GridModel& grid,
                 std::size_t row, QWidget* parent);

  const periods::StagedTable& Table() const { return table_; }
  /// What the row shows in a column.
  const std::string& Shown(std::size_t column) const { return grid_.Cell(row_, column); }
  const std::vector<Entry>& Entries() const { return entries_; }

  /// A text box with what the row shows, as long as the column; `characters` are in view at least.
  QLineEdit* MakeBox(std::string_view name, std::size_t column, int characters);
  /// Puts a box behind its label in a new row of `fields`, with the check box `fill` unless that is empty.
  void AddEntry(QGridLayout& fields, std::size_t column, std::string_view label, QLineEdit* box,
                std::string_view fill);
  /// `cmdGravar` and `cmdFechar`, each with its caption.
  QHBoxLayout* MakeButtons(std::string_view gravar, std::string_view fechar);

  /// Whether what is typed can be stored; says so and puts the cursor there if not.
  virtual bool Check() { return true; }
  virtual std::vector<periods::Correction> Corrections() const;

 private:
  QCheckBox* MakeFill(std::string_view name, QString label);
  void Gravar();

  const periods::StagedTable& table_;
  GridModel& grid_;
  std::size_t row_;
  std::vector<Entry> entries_;
  QPushButton* cmdGravar_ = nullptr;
};

}  // namespace korvel::desktop
