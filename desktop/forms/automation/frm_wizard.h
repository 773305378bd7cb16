#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QStackedWidget>
#include <optional>
#include <string_view>
#include <vector>

#include "automation/wizard_steps.h"
#include "forms/auditfile/export_ticks.h"
#include "forms/auditfile/folder_box.h"
#include "forms/auditfile/frm_exporta_saft_show_msg_final.h"
#include "forms/common/form.h"
#include "widgets/edatas.h"
#include "widgets/grid_panel.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {

/// Makes a period, stages every section of it and exports the file, in one press. Each step has a page on which it can
/// be looked at and repeated by hand; the row of `lvwTabelas` chooses the page.
class frmWizard : public Form {
 public:
  explicit frmWizard(Desk& desk, QWidget* parent = nullptr);

  bool Load() override;
  /// The whole run without questions and boxes, once the form is loaded; it closes at the end. Blank dates and a blank kind stay as the
  /// form has them.
  void Abrir(std::string_view Ano, std::string_view StartDate, std::string_view EndDate,
             std::string_view TaxAccountingBasis);
  FolderBox& Folder() { return *txtPastaExportacao_; }

  /// What opens the files that were made.
  PathOpener openPath = PlatformOpener();

 private:
  /// A step with its frame; `filled` once the grid holds rows that were loaded or are staged.
  struct Page {
    const automation::Step* step;
    QWidget* frame;
    GridPanel* grid;
    bool filled = false;
  };
  /// What the buttons of a page do, by the ends of their names.
  struct Verb {
    std::string_view name;
    const char* key;  // their captions leave no room for one
    void (frmWizard::*action)(Page& page);
    Writes writes;
  };
  static const Verb kVerbs[];

  void Arrange();
  QLayout* ArrangeInputs();
  void AddPages();
  void AddPage(const automation::Step& step);
  QLayout* StepButtons(std::size_t page);
  QPushButton* StepButton(std::size_t page, std::string_view name, const Verb& verb);
  QWidget* MakeExportFrame();

  void ChooseMonth();
  void CarregaTabelas();
  void ChooseRow();
  automation::WizardInput Input();
  bool Refuses(const automation::WizardInput& input);

  void Processar();
  automation::WizardObserver Observer(const session::Context& context, const periods::PeriodKey& period);
  void SetStatus(std::string_view key, automation::StepStatus status);
  automation::StepStatus StatusOf(std::string_view key) const;
  void Tell(const automation::WizardResult& result);
  void ShowPeriod();

  void Carregar(Page& page);
  void Gravar(Page& page);
  void Alterar(Page& page);
  void FillFromStaged(Page& page);
  void Exportacao_Prepara();
  void Exportar();

  QLineEdit* txtAno_;
  SelOpta* eselMes_;
  Edatas* edatStartDate_;
  Edatas* edatEndDate_;
  SelOpta* eselTaxAccountingBasis_;
  FolderBox* txtPastaExportacao_;
  QCheckBox* chkMostraMoimentosLVW_;
  GridPanel* lvwTabelas_;
  QStackedWidget* stack_;
  ExportTicks* ticks_;
  QWidget* fraExportacao_ = nullptr;
  QPushButton* cmdGravar_ = nullptr;
  std::vector<Page> pages_;
  bool Automatico_ = false;
};

}  // namespace korvel::desktop
