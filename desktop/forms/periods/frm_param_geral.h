#pragma once

#include <QBoxLayout>
#include <QTabWidget>
#include <span>
#include <string_view>
#include <vector>

#include "forms/common/form.h"
#include "forms/periods/parameter_bindings.h"
#include "forms/periods/source_box.h"
#include "periods/parameters.h"
#include "widgets/grid_panel.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {

class FieldGrid;
struct ParameterCode;

/// Where the two source databases lie, how each extraction behaves, and the region of each warehouse.
class frmParamGeral : public Form {
 public:
  explicit frmParamGeral(Desk& desk, QWidget* parent = nullptr);

  bool Load() override;

 private:
  // frm_param_geral_pages.cpp: the pages of tabPaginas.
  QWidget* LocationPage();
  QWidget* LedgerPage();
  QWidget* CustomerPage();
  QWidget* ProductPage();
  QWidget* DocumentPage();
  QWidget* WarehousePage();
  QCheckBox* AddTick(QBoxLayout* column, std::string_view name, std::string_view caption,
                     ParameterBindings::Flag member);
  QRadioButton* AddOption(QBoxLayout* column, std::string_view name, std::string_view caption,
                          ParameterBindings::Text member, std::string_view value);
  /// Boxes for codes, each at the end of `boxes` too.
  void AddCodes(FieldGrid& fields, std::span<const ParameterCode> codes, std::vector<CodeBox*>& boxes);

  void EnterPage();
  void ShowLinks(const periods::Links& links);
  void ActivarLigacoes();
  void CarregarTiposMov();
  void CarregarArmazens();
  void ShowWarehouse();
  void ActualizaArmazem();
  void Gravar();
  periods::Parameters Shown() const;
  std::vector<periods::Warehouse> Warehouses() const;

  ParameterBindings bindings_;
  std::vector<CodeBox*> brevantCodes_;
  std::vector<CodeBox*> lunderCodes_;
  QTabWidget* tabPaginas_;
  SourceBox* brevant_;
  SourceBox* lunder_;
  GridPanel* lvwTiposMov_;
  GridPanel* lvwArmazens_;
  SelOpta* eselArmazemClassifica_;
};

}  // namespace korvel::desktop
