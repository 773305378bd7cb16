#include "shell/application.h"

#include "forms/session/frm_login.h"
#include "forms/session/frm_sel_empresas.h"
#include "shell/wmenu.h"

namespace korvel::desktop {

namespace {

/// A window that may be the one whose event is handled now.
template <typename Window>
void Drop(Window*& window) {
  if (window != nullptr) window->deleteLater();
  window = nullptr;
}

/// Calls `next` with how the form was left, once it has nothing more to do itself.
template <typename Next>
void WhenLeft(QDialog* form, const Next& next) {
  QObject::connect(form, &QDialog::finished, form, next, Qt::QueuedConnection);
}

}  // namespace

Application::Application(Desk& desk, session::StartSetting setting)
    : desk_(desk), setting_(std::move(setting)) {}

Application::~Application() {
  delete window_;
  delete frmSelEmpresas_;
}

bool Application::Start(std::string_view commandLine) {
  auto started = desk_.Try([&](const session::Context& context) {
    return session::Start(context, commandLine, setting_, selection_);
  });
  if (!started) return false;
  lock_ = std::move(started->lock);
  switch (started->form) {
    case session::FirstForm::None:
      return false;
    case session::FirstForm::Login:
      ShowLogin();
      break;
    case session::FirstForm::CompanySelection:
      MakeSelection();
      frmSelEmpresas_->ShowSelection();
      frmSelEmpresas_->show();
      break;
    case session::FirstForm::MainWindow:
      ShowMainWindow();
      break;
  }
  return true;
}

void Application::ShowLogin() {
  auto* form = new frmLogin(desk_);
  window_ = form;
  form->onLogin = [this] { return ShowSelection(); };
  WhenLeft(form, [this](int result) {
    Drop(window_);
    if (result == QDialog::Rejected) desk_.onEndProgram();
  });
  form->Load();
  form->show();
}

bool Application::ShowSelection() {
  MakeSelection();
  if (!frmSelEmpresas_->Load()) {
    Drop(frmSelEmpresas_);
    return false;
  }
  frmSelEmpresas_->show();
  return true;
}

void Application::MakeSelection() {
  frmSelEmpresas_ = new frmSelEmpresas(desk_, selection_);
  frmSelEmpresas_->onEnter = [this] { ShowMainWindow(); };
  WhenLeft(frmSelEmpresas_, [this](int) {
    Drop(frmSelEmpresas_);
    ShowLogin();
  });
}

void Application::ShowMainWindow() {
  auto* menu = new WMenu(desk_);
  window_ = menu;
  menu->onClosed = [this](session::AfterMainWindow next) { LeaveMainWindow(next); };
  menu->Load();
  menu->show();
}

void Application::LeaveMainWindow(session::AfterMainWindow next) {
  Drop(window_);
  if (next == session::AfterMainWindow::EndProgram || frmSelEmpresas_ == nullptr) return desk_.onEndProgram();
  frmSelEmpresas_->show();
}

}  // namespace korvel::desktop
