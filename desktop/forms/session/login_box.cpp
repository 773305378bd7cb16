#include "forms/session/login_box.h"

#include <QDialog>
#include <QPushButton>

#include "forms/common/field_grid.h"
#include "gateways/text.h"

namespace korvel::desktop {

namespace {

/// No Form: those do nothing while work goes on.
class LoginBox : public QDialog {
 public:
  LoginBox(std::string_view caption, std::string_view login, QWidget* parent)
      : QDialog(parent), txtLogin_(TextBox("txtLogin")), txtPassword_(TextBox("txtPassword")) {
    setObjectName("frmLogin");
    setWindowTitle(ToQt(caption));
    txtPassword_->setEchoMode(QLineEdit::Password);
    txtLogin_->setText(ToQt(login));
    FieldGrid fields;
    fields.Add("&Login :", txtLogin_);
    fields.Add("&Password :", txtPassword_);
    auto* column = FormColumn(this);
    column->addLayout(fields.Layout());
    column->addLayout(ButtonRow(
        {Button("cmdOK", "&OK", &QDialog::accept), Button("cmdCancelar", "&Fechar", &QDialog::reject)}));
    connect(txtLogin_, &QLineEdit::returnPressed, txtPassword_, [this] { txtPassword_->setFocus(); });
    connect(txtPassword_, &QLineEdit::returnPressed, this, &QDialog::accept);
    (login.empty() ? txtLogin_ : txtPassword_)->setFocus();
  }

  toolkit::Credentials Typed() const {
    return {.login = FromQt(txtLogin_->text()), .password = FromQt(txtPassword_->text())};
  }

 private:
  QPushButton* Button(const char* name, const char* caption, void (QDialog::*action)()) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, action);
    return button;
  }

  QLineEdit* txtLogin_;
  QLineEdit* txtPassword_;
};

}  // namespace

std::optional<toolkit::Credentials> AskCredentials(std::string_view caption, std::string_view login,
                                                   QWidget* parent) {
  LoginBox box(caption, login, parent);
  if (box.exec() != QDialog::Accepted) return std::nullopt;
  return box.Typed();
}

}  // namespace korvel::desktop
