#include "cli/wizard_report.h"

#include <fmt/format.h>

#include <ostream>

#include "cli/journal_option.h"
#include "cli/written_files.h"

namespace korvel::cli {

using automation::StepReport;
using automation::StepStatus;

automation::WizardObserver StepPrinter(Workspace& workspace) {
  return [&out = workspace.Out()](const StepReport& step) {
    if (step.status == StepStatus::Processing) return;
    out << fmt::format("{:<45}{}", step.description, automation::StatusText(step.status));
    if (step.rows) out << fmt::format("{:>12}", *step.rows);
    out << std::endl;
  };
}

void TellOutcome(Workspace& workspace, const automation::WizardResult& result) {
  if (result.noJournalTicked) workspace.Dialogs().SayReason(kNoJournalWarning);
  ListFiles(workspace.Out(), result.exported.files, workspace.Context().session.Marks());
  if (result.ok) return;
  workspace.Dialogs().SayReason(result.error.empty() ? result.exported.error : result.error);
}

}  // namespace korvel::cli
