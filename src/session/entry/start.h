#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "session/context.h"
#include "session/entry/company_selection.h"
#include "session/entry/instance_lock.h"

/// The entry procedure: what the program does from its command line to its first form.
namespace korvel::session {

/// Paper size and orientation of the default printer, numbered as Windows does.
struct PrinterPaper {
  std::int16_t size = SessionRecord::kPaperA4;
  std::int16_t orientation = SessionRecord::kPortrait;
};

/// What the program brings to its start.
struct StartSetting {
  std::filesystem::path programFile;   // of the running program
  std::filesystem::path instanceLock;  // see DefaultInstanceLockPath
  /// Asks the default printer, nothing when it cannot be read; empty where nothing is printed.
  std::function<std::optional<PrinterPaper>()> printer;
};

/// What is to be shown now.
enum class FirstForm {
  None,              // the process ends
  Login,             // `frmLogin`
  CompanySelection,  // `frmSelEmpresas` waits: the company asked for is not to be had
  MainWindow,        // `WMenu`
};

struct Started {
  FirstForm form = FirstForm::None;
  std::optional<InstanceLock> lock;  // to be kept while the program lives
};

/// Runs an administration command, or starts the program with the session that the command line asks for. `selection`
/// is the form that an unattended start drives. Failures are shown. Throws EndProgram.
Started Start(const Context& context, std::string_view commandLine, const StartSetting& setting,
              CompanySelection& selection);

}  // namespace korvel::session
