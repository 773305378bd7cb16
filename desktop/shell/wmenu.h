#pragma once

#include <QMainWindow>
#include <QMdiArea>
#include <functional>
#include <string>
#include <string_view>

#include "gateways/desk.h"
#include "session/entry/main_window.h"
#include "shell/version_watch.h"

class QLabel;
class QMenu;

namespace korvel::desktop {

/// `WMenu`: the main window of a company, with its menu, the forms opened from it, and the status bar. Closing it is the
/// log off.
class WMenu : public QMainWindow {
 public:
  explicit WMenu(Desk& desk, QWidget* parent = nullptr);

  /// What the window reads when it opens. Where the company has no parameters yet, their form is the first thing seen.
  void Load();

  /// Told when the window has closed.
  std::function<void(session::AfterMainWindow)> onClosed;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildMenus();
  void AddEntry(QMenu& menu, const session::MenuEntry& entry);
  void BuildStatusBar();
  void StartTimer(const char* name, int milliseconds, void (WMenu::*tick)());
  void Run(const session::MenuEntry& entry);
  void Open(const session::MenuEntry& entry);
  void ShowForm(std::string_view name);
  QMdiSubWindow* FindForm(std::string_view name) const;
  bool CloseForms();
  void Upgrade();
  void ShowClock();
  void WatchVersion();
  void EndAsOlder();
  void SendAutomatically() {}  // nothing is sent from here, deliberately
  void TakeSize();
  void KeepSize();

  Desk& desk_;
  QMdiArea* area_;
  QLabel* company_;
  QLabel* login_;
  QLabel* date_;
  QLabel* code_;
  VersionWatch watch_;
};

}  // namespace korvel::desktop
