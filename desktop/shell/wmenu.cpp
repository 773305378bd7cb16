#include "shell/wmenu.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QTableView>
#include <QTimer>
#include <algorithm>
#include <charconv>

#include "databases/upgrade_all.h"
#include "forms/session/menus.h"
#include "gateways/text.h"
#include "shell/form_table.h"
#include "shell/mark_area.h"

namespace korvel::desktop {

namespace {

constexpr int kHora = 1000;
constexpr int kVersao = 30000;
constexpr int kEnvio = 60000;
constexpr int kWidth = 1180;
constexpr int kHeight = 700;
constexpr int kStep = 28;  // between windows that open one after another
constexpr double kShareOfGrids = 0.8;
constexpr std::string_view kSection = "WMenu";

int ReadNumber(const toolkit::Settings& settings, std::string_view key, int otherwise) {
  const std::string text = settings.Read(kSection, key).value_or(std::string());
  int number = otherwise;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

QMenu* Named(QMenu* menu, std::string_view name) {
  menu->setObjectName(ToQt(name));
  menu->menuAction()->setObjectName(ToQt(name));
  return menu;
}

/// A form with a grid takes most of the room, others what they need; what the user has chosen goes before both.
QSize FirstSize(const QMdiSubWindow& window, QSize room) {
  const bool hasGrid = window.widget()->findChild<QTableView*>() != nullptr;
  const QSize wanted = hasGrid ? window.sizeHint().expandedTo(room * kShareOfGrids) : window.sizeHint();
  return wanted.boundedTo(room);
}

/// Each a step further than the one before, as far as there is room.
QPoint FirstPlace(const QMdiSubWindow& window, QSize room, qsizetype before) {
  const int step = static_cast<int>(before) * kStep;
  return {std::clamp(room.width() - window.width(), 0, step),
          std::clamp(room.height() - window.height(), 0, step)};
}

}  // namespace

WMenu::WMenu(Desk& desk, QWidget* parent)
    : QMainWindow(parent), desk_(desk), area_(new MarkArea(this)), watch_(desk) {
  setObjectName("WMenu");
  area_->setObjectName("area");
  setCentralWidget(area_);
  BuildMenus();
  BuildStatusBar();
  TakeSize();
  watch_.onNewer = [this] { EndAsOlder(); };
  StartTimer("tmrHora", kHora, &WMenu::ShowClock);
  StartTimer("tmrVersao", kVersao, &WMenu::WatchVersion);
  StartTimer("tmrEnvio", kEnvio, &WMenu::SendAutomatically);
}

void WMenu::BuildMenus() {
  for (const session::MenuTitle& title : session::Menus()) {
    QMenu* menu = Named(menuBar()->addMenu(ToQt(title.caption)), title.name);
    for (const session::MenuEntry& entry : session::MenuTree()) {
      if (entry.menu == title.name) AddEntry(*menu, entry);
    }
  }
  GiveAccessKeys(*menuBar());
  for (QMenu* menu : menuBar()->findChildren<QMenu*>()) GiveAccessKeys(*menu);
}

void WMenu::AddEntry(QMenu& menu, const session::MenuEntry& entry) {
  QMenu* holder = &menu;
  if (!entry.submenu.empty()) {
    holder = menu.findChild<QMenu*>(ToQt(entry.submenu));
    if (holder == nullptr) holder = Named(menu.addMenu(ToQt(session::kListings)), entry.submenu);
  }
  QAction* action = holder->addAction(ToQt(entry.caption), this, [this, &entry] { Run(entry); });
  action->setObjectName(ToQt(entry.name));
}

void WMenu::BuildStatusBar() {
  statusBar()->setObjectName("StatusBar1");
  for (QLabel** panel : {&company_, &login_, &date_, &code_}) {
    *panel = new QLabel(statusBar());
    (*panel)->setTextFormat(Qt::PlainText);
  }
  statusBar()->addWidget(company_, 1);
  for (QLabel* panel : {login_, date_, code_}) statusBar()->addPermanentWidget(panel);
}

void WMenu::StartTimer(const char* name, int milliseconds, void (WMenu::*tick)()) {
  auto* timer = new QTimer(this);
  timer->setObjectName(name);
  connect(timer, &QTimer::timeout, this, [this, tick] {
    if (!desk_.IsBusy()) (this->*tick)();
  });
  timer->start(milliseconds);
}

void WMenu::Load() {
  const auto loaded =
      desk_.Try([](const session::Context& context) { return session::LoadMainWindow(context); });
  setWindowTitle(ToQt(loaded ? loaded->caption : session::MainCaption()));
  const session::MainWindow window = loaded.value_or(session::MainWindow{});
  const auto enable = [this](const char* entry, bool enabled) {
    findChild<QAction*>(entry)->setEnabled(enabled);
  };
  enable("ActualizaDBase", window.canUpgrade);
  enable("mnuAlterarPassword", window.canUsePassword);
  enable("mnuBloquearPrograma", window.canUsePassword);
  if (window.unattended) statusBar()->addPermanentWidget(new QLabel("Sem confirmações", statusBar()));
  const auto texts = session::StatusTexts(desk_.Context());
  company_->setText(ToQt(texts.company));
  login_->setText(ToQt(texts.login));
  ShowClock();
  if (window.asksParameters) ShowForm("frmParamGeral");
}

void WMenu::Run(const session::MenuEntry& entry) {
  if (desk_.IsBusy()) return;
  if (entry.name == "LogOff") {
    close();
  } else if (entry.name == "ActualizaDBase") {
    Upgrade();
  } else {
    Open(entry);
  }
}

void WMenu::Open(const session::MenuEntry& entry) {
  if (QMdiSubWindow* open = FindForm(entry.form)) return area_->setActiveSubWindow(open);
  const auto allowed =
      desk_.Try([&](const session::Context& context) { return session::MayOpen(context, entry); });
  if (allowed.value_or(false)) ShowForm(entry.form);
}

void WMenu::ShowForm(std::string_view name) {
  Form* form = MakeForm(desk_, name, area_);
  if (form == nullptr) return SayNoWindowYet(desk_);
  if (!form->Load()) return delete form;
  QMdiSubWindow* window = area_->addSubWindow(form);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->resize(FirstSize(*window, area_->viewport()->size()));
  window->show();
  window->move(FirstPlace(*window, area_->viewport()->size(), area_->subWindowList().size() - 1));
}

QMdiSubWindow* WMenu::FindForm(std::string_view name) const {
  for (QMdiSubWindow* window : area_->subWindowList()) {
    const bool closed = window->isHidden();  // and goes with the next events
    if (!closed && window->widget() != nullptr && window->widget()->objectName() == ToQt(name)) return window;
  }
  return nullptr;
}

bool WMenu::CloseForms() {
  area_->closeAllSubWindows();
  const auto windows = area_->subWindowList();
  return std::ranges::all_of(windows, [](const QMdiSubWindow* window) { return window->isHidden(); });
}

void WMenu::Upgrade() {
  desk_.Try([](const session::Context& context) { return databases::ActualizaDBase(context); });
}

void WMenu::ShowClock() {
  const auto texts = session::StatusTexts(desk_.Context());
  date_->setText(ToQt(texts.date));
  code_->setText(ToQt(texts.code));
}

void WMenu::WatchVersion() {
  watch_.Look();
}

void WMenu::EndAsOlder() {
  CloseForms();
  desk_.Try([](const session::Context& context) { session::WarnOfNewerDatabase(context); });
  desk_.onEndProgram();
}

void WMenu::TakeSize() {
  const auto& settings = desk_.Settings();
  resize(ReadNumber(settings, "Largura", kWidth), ReadNumber(settings, "Altura", kHeight));
  if (ReadNumber(settings, "Maximizada", 0) != 0) setWindowState(Qt::WindowMaximized);
}

void WMenu::KeepSize() {
  auto& settings = desk_.Settings();
  settings.Write(kSection, "Maximizada", isMaximized() ? "1" : "0");
  if (isMaximized()) return;
  settings.Write(kSection, "Largura", std::to_string(width()));
  settings.Write(kSection, "Altura", std::to_string(height()));
}

void WMenu::closeEvent(QCloseEvent* event) {
  if (desk_.IsBusy() || !CloseForms()) {
    event->ignore();
    return;
  }
  KeepSize();
  const auto after =
      desk_.Try([](const session::Context& context) { return session::CloseMainWindow(context); });
  event->accept();
  if (onClosed) onClosed(after.value_or(session::AfterMainWindow::CompanySelection));
}

}  // namespace korvel::desktop
