#include "shell/program.h"

#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <exception>
#include <iostream>

#include "forms/session/login_box.h"
#include "gateways/guarded_application.h"
#include "gateways/screen_dialogs.h"
#include "session/command_line.h"
#include "session/connections.h"
#include "shell/application.h"
#include "shell/looks.h"
#include "toolkit/machine.h"
#include "toolkit/settings_file.h"
#include "toolkit/system_clock.h"

namespace korvel::desktop {

namespace {

/// The boxes of a run without a window: what is said goes to the error stream, nothing is agreed to.
class StreamDialogs final : public toolkit::Dialogs {
 public:
  void Message(toolkit::Icon, std::string_view text, std::string_view) override { std::cerr << text << '\n'; }
  std::size_t Ask(std::string_view text, std::span<const std::string_view> buttons) override {
    std::cerr << text << '\n';
    return buttons.size() - 1;
  }
  std::size_t Alert(std::string_view caption, std::span<const std::string_view> buttons) override {
    return Ask(caption, buttons);
  }
  bool ConfirmDeletion(std::string_view, std::string_view text) override {
    std::cerr << text << '\n';
    return false;
  }
  std::optional<toolkit::Credentials> AskLogin(std::string_view, std::string_view) override {
    return std::nullopt;
  }
  void Focus(std::string_view) override {}
};

/// The arguments as the one line that they were.
std::string CommandLine(int argc, char** argv) {
  std::string line;
  for (int i = 1; i < argc; ++i) line += (i > 1 ? " " : "") + std::string(argv[i]);
  return line;
}

session::StartSetting Setting() {
  return {.programFile = toolkit::ProgramFile(),
          .instanceLock = session::DefaultInstanceLockPath(),
          .printer = {}};  // nothing is printed from here
}

data::ServerSettings Servers() {
  data::ServerSettings servers;
  servers.embeddedFolder = toolkit::ServersFolder();
  return servers;
}

/// Works where there is no screen at all.
int Administer(const std::string& line) {
  StreamDialogs dialogs;
  toolkit::SettingsFile settings(toolkit::DefaultSettingsPath());
  const toolkit::SystemClock clock;
  Desk desk(Servers(), {dialogs, settings, clock});
  session::CompanySelection selection;
  try {
    session::Start(desk.Context(), line, Setting(), selection);
  } catch (const session::EndProgram&) {
    // It ends anyhow.
  }
  return 0;
}

/// The standard windows' texts, where the system brings them: in the Portuguese of Portugal what there is of it, the
/// rest in that of Brazil.
void SpeakPortuguese(QApplication& application) {
  QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Portugal));
  for (const char* texts : {"qtbase_pt_BR", "qt_pt_PT"}) {  // the last one is asked first
    auto* translator = new QTranslator(&application);
    if (translator->load(texts, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
      QApplication::installTranslator(translator);
  }
}

/// Takes the guard away before the desk goes that it works with.
class Unguarded {
 public:
  explicit Unguarded(GuardedApplication& application) : application_(application) {}
  ~Unguarded() { application_.guard = nullptr; }
  Unguarded(const Unguarded&) = delete;
  Unguarded& operator=(const Unguarded&) = delete;

 private:
  GuardedApplication& application_;
};

int ShowWindows(GuardedApplication& application, const std::string& line, ScreenDialogs& dialogs) {
  SpeakPortuguese(application);
  ApplyLooks(application);
  dialogs.SetLoginBox([](std::string_view caption, std::string_view login) {
    return AskCredentials(caption, login, QApplication::activeWindow());
  });
  toolkit::SettingsFile settings(toolkit::DefaultSettingsPath());
  const toolkit::SystemClock clock;
  Desk desk(Servers(), {dialogs, settings, clock});
  application.guard = [&desk](const std::function<void()>& handling) { desk.Shown(handling); };
  const Unguarded atTheEnd(application);
  Application windows(desk, Setting());
  return windows.Start(line) ? QApplication::exec() : 0;
}

int RunWindows(int argc, char** argv) {
  GuardedApplication application(argc, argv);
  QApplication::setApplicationName("korvel");
  QApplication::setDesktopFileName("korvel");
  // One window closes before the next one opens.
  QApplication::setQuitOnLastWindowClosed(false);
  ScreenDialogs dialogs;
  try {
    return ShowWindows(application, CommandLine(argc, argv), dialogs);
  } catch (const std::exception& failure) {
    dialogs.Message(toolkit::Icon::Critical, failure.what());
    return 1;
  }
}

}  // namespace

int RunProgram(int argc, char** argv) {
  const std::string line = CommandLine(argc, argv);
  const bool administers = std::holds_alternative<session::AdminCommand>(session::ParseCommandLine(line));
  if (!administers) return RunWindows(argc, argv);
  try {
    return Administer(line);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}

}  // namespace korvel::desktop
