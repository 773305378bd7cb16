#pragma once

#include <QLabel>
#include <QLayout>
#include <functional>
#include <string>
#include <vector>

#include "forms/common/field_grid.h"
#include "forms/common/form.h"
#include "periods/period_editor.h"
#include "widgets/code_box.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {

/// The entry form of a period: a new one, a change, or a view. Its fields are those of the Header.
class frmTabHeaderIns : public Form {
 public:
  /// `numRegisto` is 0 for a new period.
  frmTabHeaderIns(Desk& desk, periods::HeaderMode mode, std::int64_t numRegisto, QWidget* parent = nullptr);

  /// False when the row has gone, which is said.
  bool Load() override;
  /// The row, known once it is saved.
  std::int64_t NumRegisto() const { return header_.numRegisto; }

 private:
  /// A field and the column that it shows.
  struct Binding {
    std::string_view column;
    QWidget* widget;
    std::function<std::string()> read;
    std::function<void(const std::string&)> write;
  };
  struct Group;

  QLayout* MakeGroups(int column);
  QWidget* MakeGroup(const Group& group);
  void AddField(FieldGrid& fields, const periods::HeaderField& field, int span);
  Binding Bind(const periods::HeaderField& field);
  Binding BindText(const periods::HeaderField& field);
  Binding BindDate(const periods::HeaderField& field);
  Binding BindKind(const periods::HeaderField& field);
  Binding BindCustomer(const periods::HeaderField& field);
  Binding& Of(std::string_view column);
  void ListenToFields();

  void Show();
  void ShowCustomer();
  void Lock();
  periods::PeriodHeader Collect();
  void LeaveYear();
  void LeaveTaxNumber();
  void ChangeKind();
  void Gravar();

  periods::HeaderMode mode_;
  periods::PeriodHeader header_;
  std::vector<Binding> fields_;
  bool showing_ = false;  // the program fills the fields
  SelOpta* eselHeader_TaxAccountingBasis_ = nullptr;
  CodeBox* txtCliente_ = nullptr;
  QLabel* lblClienteCaption_ = nullptr;
  QPushButton* cmdGravar_;
  QPushButton* cmdCancelar_;
};

}  // namespace korvel::desktop
