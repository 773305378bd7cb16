#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <algorithm>
#include <filesystem>
#include <set>
#include <thread>

#include "databases/admin_command.h"
#include "databases/logins.h"
#include "desktop/desktop_world.h"
#include "gateways/text.h"
#include "security/base_rights.h"
#include "security/rights_catalogue.h"
#include "session/entry/login.h"
#include "shell/application.h"
#include "shell/form_table.h"
#include "shell/wmenu.h"

namespace korvel::desktop {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kNotYet = "Esta janela ainda não existe nesta versão.";

/// The demonstration company, made once, each test on its own copy.
class Shell : public testing::Test {
 protected:
  Shell() {
    auto& made = DemoCompany();
    std::filesystem::copy(
        made.server.folder.Path(), server.folder.Path(),
        std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
    desk.Session() = made.desk.Session();
    desk.onEndProgram = [this] { ++ended; };
  }

  struct Demo : DesktopWorld {
    Demo() {
      MakeCompany();
      server.dialogs.answers = {0};
      security::CriaAcessosBase(desk.Context());
      session::Login(desk.Context(), {.server = server.Name(), .login = "sa"});
    }
  };
  static Demo& DemoCompany() {
    static Demo made;
    return made;
  }

  /// The visible window of that form, null when there is none.
  static QWidget* Window(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == name && window->isVisible()) return window;
    }
    return nullptr;
  }
  /// Lets events through until `holds`, for some seconds at the most.
  template <typename Condition>
  static bool Soon(const Condition& holds) {
    QElapsedTimer timer;
    for (timer.start(); !holds() && timer.elapsed() < 20000;)
      QApplication::processEvents(QEventLoop::AllEvents, 20);
    return holds();
  }
  static void Trigger(QWidget& window, std::string_view entry) {
    auto* action = window.findChild<QAction*>(ToQt(entry));
    ASSERT_NE(action, nullptr) << entry;
    action->trigger();
    QApplication::processEvents();
  }
  static std::vector<std::string> OpenForms(QWidget& menu) {
    std::vector<std::string> names;
    for (const auto* window : Find<QMdiArea>(menu, "area").subWindowList()) {
      if (!window->isHidden()) names.push_back(FromQt(window->widget()->objectName()));
    }
    return names;
  }

  DesktopWorld world;
  test::TestServer& server = world.server;
  Desk& desk = world.desk;
  test::ScriptedDialogs& dialogs = server.dialogs;
  int ended = 0;
};

class Program : public Shell {
 protected:
  Program() { desk.Session() = {}; }

  bool Start(const std::string& line) { return application.Start(line); }

  const std::filesystem::path programFile = server.folder.Path() / "korvel";
  const std::filesystem::path lock = server.folder.Path() / "korvel.lock";
  Application application{desk, {.programFile = programFile, .instanceLock = lock, .printer = {}}};
};

TEST_F(Program, GoesFromLoginToTheMainWindowAndBack) {
  ASSERT_TRUE(Start(""));
  QWidget* login = Window("frmLogin");
  ASSERT_NE(login, nullptr);
  Type(*login, "txtServer", server.Name());
  Type(*login, "txtLogin", "sa");
  Press(*login, "cmdOK");
  EXPECT_EQ(Window("frmLogin"), nullptr);
  QWidget* companies = Window("frmSelEmpresas");
  ASSERT_NE(companies, nullptr) << dialogs.LastText();
  Press(*companies, "cmdSelecionar");
  QWidget* menu = Window("WMenu");
  ASSERT_NE(menu, nullptr) << dialogs.LastText();
  EXPECT_FALSE(companies->isVisible());
  Trigger(*menu, "LogOff");
  EXPECT_EQ(Window("WMenu"), nullptr);
  ASSERT_EQ(Window("frmSelEmpresas"), companies) << "the same form, with the same login";
  Press(*companies, "cmdSelecionar");
  ASSERT_NE(Window("WMenu"), nullptr);
  Window("WMenu")->close();
  Press(*companies, "cmdCancelar");
  login = Window("frmLogin");
  ASSERT_NE(login, nullptr);
  EXPECT_EQ(ended, 0);
  Press(*login, "cmdCancelar");
  EXPECT_EQ(ended, 1);
  EXPECT_THAT(dialogs.Texts(), IsEmpty());
}

TEST_F(Program, EntersUnattended) {
  ASSERT_TRUE(Start(server.Name() + " sa 0001 "));
  QWidget* menu = Window("WMenu");
  ASSERT_NE(menu, nullptr) << dialogs.LastText();
  EXPECT_EQ(Window("frmSelEmpresas"), nullptr);
  std::string status;
  for (const auto* label : Find(*menu, "StatusBar1").findChildren<QLabel*>())
    status += FromQt(label->text()) + "|";
  EXPECT_THAT(status, HasSubstr("Sem confirmações"));
  EXPECT_THAT(status, HasSubstr("Cód. Emp. 0001"));
  Trigger(*menu, "LogOff");
  EXPECT_EQ(ended, 1) << "an unattended run ends with its window";
}

TEST_F(Program, WaitsInTheSelectionForAnUnknownCompany) {
  ASSERT_TRUE(Start(server.Name() + " sa 0077 "));
  QWidget* companies = Window("frmSelEmpresas");
  ASSERT_NE(companies, nullptr);
  EXPECT_EQ(Find<QAbstractItemView>(*companies, "lvwEmpresas").model()->rowCount(), 1);
  EXPECT_EQ(Window("WMenu"), nullptr);
}

TEST_F(Program, EndsWithoutAWindow) {
  EXPECT_FALSE(Start("  sa 0001 x")) << "two blanks leave the server empty";
  EXPECT_THAT(dialogs.Texts(), ElementsAre("Não definiu o Servidor"));
  EXPECT_FALSE(Start("<@>act_chk"));
  EXPECT_TRUE(std::filesystem::exists(databases::ActChkFile(programFile)));
  const auto first = session::InstanceLock::Take(lock);
  EXPECT_FALSE(Start(""));
  EXPECT_EQ(dialogs.LastText(), "Só pode iniciar uma instância da aplicação de cada vez!");
  for (const char* window : {"frmLogin", "frmSelEmpresas", "WMenu"})
    EXPECT_EQ(Window(window), nullptr) << window;
}

class MainMenu : public Shell {
 protected:
  void Show() {
    menu.onClosed = [this](session::AfterMainWindow next) { closed.push_back(next); };
    menu.Load();
    menu.show();
  }
  bool IsEnabled(const char* entry) { return menu.findChild<QAction*>(entry)->isEnabled(); }

  WMenu menu{desk};
  std::vector<session::AfterMainWindow> closed;
};

TEST_F(MainMenu, HoldsTheTreeAsItIsRead) {
  Show();
  EXPECT_THAT(FromQt(menu.windowTitle()), HasSubstr("Korvel - Exportação - Ficheiro Auditor ( Versão: "));
  for (const session::MenuEntry& entry : session::MenuTree()) {
    auto* action = menu.findChild<QAction*>(ToQt(entry.name));
    ASSERT_NE(action, nullptr) << entry.name;
    EXPECT_EQ(security::WithoutAccessKey(FromQt(action->text())), security::WithoutAccessKey(entry.caption));
    EXPECT_TRUE(action->text().contains('&')) << entry.name << ": every entry has its key";
    const auto* holder = menu.findChild<QMenu*>(ToQt(entry.submenu.empty() ? entry.menu : entry.submenu));
    EXPECT_TRUE(holder->actions().contains(action)) << entry.name;
  }
}

TEST_F(MainMenu, OpensEachFormOnceOrSaysThatItComesLater) {
  Show();
  const std::set<std::string_view> forms(FormNames().begin(), FormNames().end());
  for (const session::MenuEntry& entry : session::MenuTree()) {
    if (entry.form.empty()) continue;
    dialogs.Clear();
    Trigger(menu, entry.name);
    Trigger(menu, entry.name);
    if (forms.contains(entry.form)) {
      EXPECT_THAT(OpenForms(menu), ElementsAre(entry.form)) << dialogs.LastText();
      Find<QMdiArea>(menu, "area").closeAllSubWindows();
    } else {
      EXPECT_THAT(dialogs.Texts(), ElementsAre(kNotYet, kNotYet)) << entry.name;
    }
  }
  EXPECT_THAT(OpenForms(menu), IsEmpty());
}

TEST_F(MainMenu, BringsAnOpenFormToTheFront) {
  Show();
  Trigger(menu, "ParamGeral");
  Trigger(menu, "EntidadeResp");
  Trigger(menu, "ParamGeral");
  EXPECT_EQ(OpenForms(menu).size(), 2u);
  EXPECT_EQ(Find<QMdiArea>(menu, "area").currentSubWindow()->widget()->objectName(), "frmParamGeral");
}

TEST_F(MainMenu, DeniesAFormWithoutItsRight) {
  ASSERT_TRUE(databases::CreateLogin(desk.Context(), "ana", "x", false));
  ASSERT_TRUE(databases::AddOwnerToDB(desk.Context(), "KorvelConfig", "ana"));
  ASSERT_TRUE(databases::AddOwnerToDB(desk.Context(), "Korvel0001", "ana"));
  desk.Session().gLogin = desk.Session().gUtilizador = "ANA";
  desk.Session().gPassword = "x";
  desk.Session().gSysAdmin = false;
  Show();
  EXPECT_FALSE(IsEnabled("ActualizaDBase"));
  Trigger(menu, "ParamGeral");
  EXPECT_THAT(dialogs.Texts(), ElementsAre("Acesso Negado!"));
  EXPECT_THAT(OpenForms(menu), IsEmpty());
  Trigger(menu, "Informa");
  EXPECT_THAT(OpenForms(menu), ElementsAre("frmAbout")) << "this one needs no right";
}

TEST_F(MainMenu, AsksForParametersFirstAndHasNoPasswordsUnderWindowsAuthentication) {
  server.Run("Korvel0001", "delete from ParamGeral");
  desk.Session().gAutenticacaoWindows = true;
  Show();
  EXPECT_THAT(OpenForms(menu), ElementsAre("frmParamGeral")) << dialogs.LastText();
  EXPECT_FALSE(IsEnabled("mnuAlterarPassword") || IsEnabled("mnuBloquearPrograma"));
}

TEST_F(MainMenu, OpensAndClosesWhereTheCompanyHasGone) {
  server.Run("master", "drop database Korvel0001");
  dialogs.answers = {0};
  Show();
  EXPECT_FALSE(dialogs.Texts().empty());
  EXPECT_TRUE(menu.isVisible());
  menu.close();
  EXPECT_THAT(closed, ElementsAre(session::AfterMainWindow::CompanySelection));
}

TEST_F(MainMenu, NeitherClosesNorMovesItsClockUnderWork) {
  Show();
  const auto shows = [&](const QString& date) {
    const auto labels = Find(menu, "StatusBar1").findChildren<QLabel*>();
    return std::ranges::any_of(labels, [&](const QLabel* label) { return label->text() == date; });
  };
  EXPECT_TRUE(shows("15-01-2026"));
  server.clock.now.day = 16;
  bool stayed = false;
  QTimer::singleShot(0, &menu, [&] { stayed = !menu.close(); });
  menu.findChild<QTimer*>("tmrHora")->start(1);
  desk.Run([](const session::Context&) { std::this_thread::sleep_for(std::chrono::milliseconds(50)); });
  EXPECT_TRUE(stayed);
  EXPECT_THAT(closed, IsEmpty());
  EXPECT_TRUE(shows("15-01-2026"));
  EXPECT_TRUE(Soon([&] { return shows("16-01-2026"); }));
}

TEST_F(MainMenu, EndsWhenANewerProgramHasUpgradedTheDatabase) {
  Show();
  Trigger(menu, "ParamGeral");
  auto* timer = menu.findChild<QTimer*>("tmrVersao");
  EXPECT_EQ(timer->interval(), 30000);
  server.Run("Korvel0001", "update Actualiza set Versao='000900000000'");
  timer->start(1);
  EXPECT_TRUE(Soon([&] { return ended > 0; }));
  EXPECT_THAT(dialogs.LastText(), HasSubstr("foi actualizada por uma versão do aplicativo superior à sua !"));
  EXPECT_THAT(OpenForms(menu), IsEmpty());
}

TEST_F(MainMenu, RemembersItsSize) {
  Show();
  menu.resize(900, 600);
  menu.close();
  EXPECT_EQ(WMenu(desk).size(), QSize(900, 600));
}

/// Guarded forms whose windows are still to come: on a command line their rights count already.
constexpr std::string_view kWithoutWindow[] = {
    "frmLogGeral",          "frmAlteraPassword",
    "frmImpTabHeader",      "frmImpCustomerBrevant",
    "frmImpCustomerLunder", "frmImpSupplierLunder",
    "frmImpGeneralLedger",  "frmImpGeneralLedgerEntriesLunder",
    "frmImpTaxTableLunder", "frmImpTaxTableBrevant",
    "frmImpProductBrevant", "frmImpSourceDocumentsBrevant",
};

struct Button {
  std::string name;
  std::string caption;
  friend bool operator==(const Button&, const Button&) = default;
};
void PrintTo(const Button& button, std::ostream* out) {
  *out << button.name << " \"" << button.caption << '"';
}

/// Those of the window that get a right.
std::vector<Button> GuardableIn(const Form& form) {
  std::vector<Button> buttons;
  for (const QPushButton* button : form.findChildren<QPushButton*>()) {
    Button found{FromQt(button->objectName()), FromQt(button->text())};
    if (security::IsGuardable(found.name, found.caption)) buttons.push_back(std::move(found));
  }
  return buttons;
}

/// A button of the window that has no right, such as the one that leaves the form.
bool Shows(const Form& form, const security::FormButton& button) {
  const auto* found = form.findChild<QPushButton*>(ToQt(button.name));
  return found != nullptr && found->text() == ToQt(button.caption);
}

void ExpectButtonsOf(const security::CatalogueForm& entry, const Form& form) {
  std::vector<Button> guarded;
  for (const security::FormButton& button : entry.buttons) {
    EXPECT_TRUE(Shows(form, button)) << button.name << " \"" << button.caption << '"';
    if (security::IsGuardable(button.name, button.caption)) {
      guarded.push_back({std::string(button.name), std::string(button.caption)});
    }
  }
  EXPECT_THAT(GuardableIn(form), testing::UnorderedElementsAreArray(guarded));
}

TEST(RightsCatalogue, EveryWindowHasItsButtonsAndNoOthers) {
  DesktopWorld world;
  for (const security::CatalogueForm& entry : security::RightsCatalogue()) {
    SCOPED_TRACE(std::string(entry.name));
    const std::unique_ptr<Form> form(MakeForm(world.desk, entry.name, nullptr));
    const bool toCome = std::ranges::find(kWithoutWindow, entry.name) != std::end(kWithoutWindow);
    EXPECT_EQ(form == nullptr, toCome) << "whether its window is there";
    if (form) ExpectButtonsOf(entry, *form);
  }
}

}  // namespace
}  // namespace korvel::desktop
