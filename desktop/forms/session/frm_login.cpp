#include "forms/session/frm_login.h"

#include <QGroupBox>
#include <QKeyEvent>
#include <QMenuBar>

#include "forms/common/field_grid.h"
#include "forms/session/heading.h"
#include "forms/session/menus.h"
#include "gateways/text.h"

namespace korvel::desktop {

namespace {

constexpr int kWidth = 460;

QRadioButton* Option(std::string_view name, std::string_view caption) {
  auto* option = new QRadioButton(ToQt(caption));
  option->setObjectName(ToQt(name));
  return option;
}

/// The labels of both grids take the same room.
QGridLayout* Aligned(FieldGrid& fields) {
  fields.Layout()->setColumnMinimumWidth(0, QLabel("SQL Server :").sizeHint().width());
  return fields.Layout();
}

QWidget* Frame(std::string_view name, QLayout* content) {
  auto* frame = new QWidget;
  frame->setObjectName(ToQt(name));
  content->setContentsMargins(0, 0, 0, 0);
  frame->setLayout(content);
  return frame;
}

}  // namespace

frmLogin::frmLogin(Desk& desk, QWidget* parent)
    : Form(desk, "frmLogin", parent),
      txtMachine_(TextBox("txtMachine")),
      txtServer_(TextBox("txtServer")),
      txtLogin_(TextBox("txtLogin")),
      txtPassword_(TextBox("txtPassword")),
      optSQLAuthentication_(Option("optSQLAuthentication", "Autenticação SQL Server")),
      optWindowsAthentication_(Option("optWindowsAthentication", "Autenticação Windows")) {
  SetCaption("Korvel - Login");
  setMinimumWidth(kWidth);
  txtServer_->setPlaceholderText("(LOCALDB)\\KORVEL");
  FieldGrid server;
  server.Add("Máquina :", txtMachine_);
  server.Add("SQL Server :", txtServer_);
  auto* column = FormColumn(this);
  column->addWidget(Heading("Exportação - Ficheiro Auditor", this));
  column->addLayout(Aligned(server));
  fraLogin_ = LoginFrame();
  fraConfigura_ = ConfigurationFrame();
  fraBotoes_ = ButtonFrame();
  for (QWidget* frame : {fraLogin_, fraConfigura_}) column->addWidget(frame);
  column->addStretch();
  column->addWidget(fraBotoes_);
  ShowConfiguration(false);
  BuildMenu();
  connect(txtMachine_, &QLineEdit::editingFinished, this, [this] { KeepMachine(); });
}

/// A box with the cursor says that it is left when it goes, too late for its form.
frmLogin::~frmLogin() {
  txtMachine_->disconnect(this);
}

QWidget* frmLogin::LoginFrame() {
  txtPassword_->setEchoMode(QLineEdit::Password);
  FieldGrid login;
  login.Add("&Login :", txtLogin_);
  login.Add("&Password :", txtPassword_);
  return Frame("fraLogin", Aligned(login));
}

QWidget* frmLogin::ConfigurationFrame() {
  auto* column = new QVBoxLayout;
  column->addWidget(optSQLAuthentication_);
  column->addWidget(optWindowsAthentication_);
  column->addLayout(ButtonRow({PlainButton("cmdFecharConfig", "&Fechar", [this] { CloseConfiguration(); })}));
  return Frame("fraConfigura", column);
}

QWidget* frmLogin::ButtonFrame() {
  return Frame("fraBotoes", ButtonRow({PlainButton("cmdOK", "&OK", [this] { Enter(); }),
                                       PlainButton("cmdCancelar", "&Fechar", [this] { reject(); })}));
}

void frmLogin::BuildMenu() {
  auto* bar = new QMenuBar(this);
  QAction* configure = bar->addAction("Modo de Autenticação", this, [this] { ShowConfiguration(true); });
  configure->setObjectName("mnuConfigurar");
  configure->setShortcut(Qt::Key_F2);
  GiveAccessKeys(*bar);
  layout()->setMenuBar(bar);
}

bool frmLogin::Load() {
  const auto fields = desk_.Try([](const session::Context& context) { return session::LoadLogin(context); });
  if (!fields) return false;
  machine_ = fields->machine;
  txtMachine_->setText(ToQt(fields->machine));
  txtServer_->setText(ToQt(fields->server));
  txtLogin_->setText(ToQt(fields->login));
  (fields->windows ? optWindowsAthentication_ : optSQLAuthentication_)->setChecked(true);
  fraLogin_->setEnabled(!fields->windows);
  // The core's word for it came before there was a window.
  if (!fields->server.empty() && !fields->windows) txtLogin_->setFocus();
  return true;
}

session::LoginFields frmLogin::Fields() const {
  return {.machine = FromQt(txtMachine_->text()),
          .server = FromQt(txtServer_->text()),
          .login = FromQt(txtLogin_->text()),
          .password = FromQt(txtPassword_->text()),
          .windows = optWindowsAthentication_->isChecked()};
}

void frmLogin::ShowConfiguration(bool shown) {
  fraLogin_->setVisible(!shown);
  fraBotoes_->setVisible(!shown);
  fraConfigura_->setVisible(shown);
  if (shown)
    (optWindowsAthentication_->isChecked() ? optWindowsAthentication_ : optSQLAuthentication_)->setFocus();
}

void frmLogin::CloseConfiguration() {
  const auto fields = Fields();
  fraLogin_->setEnabled(!fields.windows);
  ShowConfiguration(false);
  desk_.Try([&](const session::Context& context) { session::KeepAuthentication(context, fields); });
}

void frmLogin::KeepMachine() {
  const std::string machine = FromQt(txtMachine_->text());
  if (machine == machine_ || desk_.IsBusy()) return;
  machine_ = machine;
  desk_.Try([&](const session::Context& context) { session::KeepMachine(context, machine); });
}

void frmLogin::Enter() {
  const auto fields = Fields();
  const auto entered = desk_.Try([&](const session::Context& context) {
    return session::OfferServer(context, fields) && session::Login(context, fields);
  });
  if (entered.value_or(false) && (!onLogin || onLogin())) accept();
}

void frmLogin::keyPressEvent(QKeyEvent* event) {
  const bool escape = event->key() == Qt::Key_Escape;
  if (escape && fraConfigura_->isVisible()) {
    CloseConfiguration();
  } else if (!escape || !txtServer_->hasFocus()) {  // Escape closes nothing in the server's box, deliberately
    Form::keyPressEvent(event);
  }
}

}  // namespace korvel::desktop
