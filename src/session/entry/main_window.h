#pragma once

#include <string>
#include <string_view>

#include "session/context.h"
#include "session/entry/menu_tree.h"

/// What the main window `WMenu` decides. Failures are shown.
namespace korvel::session {

/// The window as it opens.
struct MainWindow {
  std::string caption;
  bool asksParameters = false;  // the company has none yet: `frmParamGeral` opens first
  bool unattended = false;      // confirmations are skipped
  bool canUpgrade = false;      // `ActualizaDBase`
  bool canUsePassword = false;  // `mnuAlterarPassword`, `mnuBloquearPrograma`
};

/// Loading the window: the company's parameters and the entity's name go to the session. The window opens all the same
/// when one of them cannot be read. Throws EndProgram.
MainWindow LoadMainWindow(const Context& context);

/// "Korvel - Exportação - Ficheiro Auditor ( Versão: <major>.<minor>.<revision> )".
std::string MainCaption();

/// The panels of `StatusBar1`; `tmrHora` writes the last two anew each second.
struct StatusPanels {
  std::string company;
  std::string login;
  std::string date;
  std::string code;  // "Cód. Emp. <code>"
};
StatusPanels StatusTexts(const Context& context);

/// Whether an entry's form may be opened; a denial is told.
bool MayOpen(const Context& context, const MenuEntry& entry);

/// What follows when the main window closes.
enum class AfterMainWindow { EndProgram, CompanySelection };
/// `LogOff` and the unloading of the window: the user is marked out of the company where it keeps such marks.
AfterMainWindow CloseMainWindow(const Context& context);

/// `tmrVersao`: whether a newer program has upgraded the company's database meanwhile. The caller then closes its forms,
/// calls WarnOfNewerDatabase and ends the program. A company that does not open gives false, and nothing is shown: the
/// next watch comes in half a minute.
bool DatabaseWentAhead(const Context& context);
void WarnOfNewerDatabase(const Context& context);

}  // namespace korvel::session
