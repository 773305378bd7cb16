#pragma once

#include <optional>
#include <string_view>

#include "gateways/desk.h"
#include "session/entry/main_window.h"
#include "session/entry/start.h"

class QWidget;

namespace korvel::desktop {

class frmSelEmpresas;
class WMenu;

/// The way from window to window: frmLogin, frmSelEmpresas, WMenu, and back.
class Application {
 public:
  /// The desk outlives it.
  Application(Desk& desk, session::StartSetting setting);
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  ~Application();

  /// Does what the command line asks for; false when no window opens and the program is to end.
  bool Start(std::string_view commandLine);

 private:
  void ShowLogin();
  bool ShowSelection();
  void MakeSelection();
  void ShowMainWindow();
  void LeaveMainWindow(session::AfterMainWindow next);

  Desk& desk_;
  session::StartSetting setting_;
  session::CompanySelection selection_;
  std::optional<session::InstanceLock> lock_;
  frmSelEmpresas* frmSelEmpresas_ = nullptr;  // hidden while the main window is open
  QWidget* window_ = nullptr;                 // frmLogin or WMenu, when one of them is open
};

}  // namespace korvel::desktop
