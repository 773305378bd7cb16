#pragma once

#include "automation/wizard.h"
#include "cli/workspace.h"

namespace korvel::cli {

/// An observer that prints each step of a run as it ends, with its status and how many rows it staged.
automation::WizardObserver StepPrinter(Workspace& workspace);

/// Lists the files of a run, or says why there are none.
void TellOutcome(Workspace& workspace, const automation::WizardResult& result);

}  // namespace korvel::cli
