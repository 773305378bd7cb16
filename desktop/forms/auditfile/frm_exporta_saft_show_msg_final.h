#pragma once

#include <QListWidget>
#include <functional>
#include <string>
#include <vector>

#include "auditfile/export_run.h"
#include "forms/common/form.h"

namespace korvel::desktop {

/// Opens a file or a folder with the program that the platform has for it.
using PathOpener = std::function<void(const std::string& path)>;
PathOpener PlatformOpener();
/// The folder that a file lies in.
std::string FolderOf(const std::string& file);

/// The files of a monthly run. A double click, or a button, opens the chosen one or its folder.
class frmExportaSAFTShowMsgFinal : public Form {
 public:
  frmExportaSAFTShowMsgFinal(Desk& desk, PathOpener open, QWidget* parent = nullptr);

  void ShowForm(const std::vector<std::string>& files);

 private:
  std::string Chosen() const;

  PathOpener open_;
  QListWidget* List1_;
};

/// Shows what a run has come to: its files, or why it failed, unless the user cancelled it, which has been told.
void ShowExport(Desk& desk, const auditfile::ExportResult& result, bool monthly, const PathOpener& open,
                QWidget* parent);

}  // namespace korvel::desktop
