#pragma once

#include <QLineEdit>
#include <QRadioButton>
#include <functional>
#include <string>

#include "forms/common/form.h"
#include "session/entry/login.h"

namespace korvel::desktop {

/// `frmLogin`: the program's first window, which enters a server.
class frmLogin : public Form {
 public:
  explicit frmLogin(Desk& desk, QWidget* parent = nullptr);
  ~frmLogin() override;

  bool Load() override;

  /// Told when the server has taken the login; the form is left when this gives true.
  std::function<bool()> onLogin;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* LoginFrame();
  QWidget* ButtonFrame();
  QWidget* ConfigurationFrame();
  void BuildMenu();
  session::LoginFields Fields() const;
  void ShowConfiguration(bool shown);
  void CloseConfiguration();
  void KeepMachine();
  void Enter();

  QLineEdit* txtMachine_;
  QLineEdit* txtServer_;
  QLineEdit* txtLogin_;
  QLineEdit* txtPassword_;
  QRadioButton* optSQLAuthentication_;
  QRadioButton* optWindowsAthentication_;
  QWidget* fraLogin_;
  QWidget* fraBotoes_;
  QWidget* fraConfigura_;
  std::string machine_;  // as it is kept
};

}  // namespace korvel::desktop
