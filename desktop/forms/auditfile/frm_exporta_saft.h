#pragma once

#include <QLabel>

#include "forms/auditfile/export_ticks.h"
#include "forms/auditfile/folder_box.h"
#include "forms/auditfile/frm_exporta_saft_show_msg_final.h"
#include "forms/common/form.h"
#include "forms/common/period_choice.h"

namespace korvel::desktop {

/// Exports a period that is staged: which folder, which sections, in one file or one a month.
class frmExportaSAFT : public Form {
 public:
  explicit frmExportaSAFT(Desk& desk, QWidget* parent = nullptr);

  bool Load() override;
  FolderBox& Folder() { return *txtPastaExportacao_; }

  /// What opens the files that were made.
  PathOpener openPath = PlatformOpener();

 private:
  void Arrange();
  QLabel* SeparatorsNote();
  void ChoosePeriod();
  void Process();
  void Refuse(std::string_view text, std::string_view field);

  PeriodChoice* eselFiscalYear_;
  FolderBox* txtPastaExportacao_;
  ExportTicks* ticks_;
};

}  // namespace korvel::desktop
