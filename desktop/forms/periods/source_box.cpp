#include "forms/periods/source_box.h"

#include <QVBoxLayout>

#include "forms/common/field_grid.h"
#include "gateways/screen_dialogs.h"
#include "gateways/text.h"

namespace korvel::desktop {

namespace {

constexpr int kCharacters = 50;
constexpr const char* kReached = "<font color='#00FF00'>&#9679;</font> Servidor acessível";
constexpr const char* kNotReached = "<font color='#FF0000'>&#9679;</font> Servidor não acessível";

}  // namespace

SourceBox::SourceBox(Desk& desk, const SourceSide& side, QWidget* parent)
    : QGroupBox(ToQt(side.title), parent), product_(side.product) {
  FieldGrid grid;
  server_ = AddBox(grid, "Servidor", "&Servidor:");
  login_ = AddBox(grid, "Login", "&Login:");
  password_ = AddBox(grid, "Password", "&Password:");
  password_->setEchoMode(QLineEdit::Password);
  AddDatabase(desk, grid, side.button);
  lamp_ = new QLabel(this);
  lamp_->setObjectName(ToQt(side.lamp));
  auto* column = new QVBoxLayout(this);
  column->setSpacing(kSpacing);
  column->addLayout(grid.Layout());
  column->addWidget(lamp_);
}

QLineEdit* SourceBox::AddBox(FieldGrid& grid, std::string_view column, std::string_view label) {
  const std::string name = std::string(column) + "_" + product_;
  QLineEdit* box = TextBox("txt" + name, kCharacters);
  box->setParent(this);
  box->setProperty(kColumnProperty, ToQt(name));
  grid.Add(label, box);
  connect(box, &QLineEdit::textChanged, this, [this] { SearchThere(); });
  return box;
}

void SourceBox::AddDatabase(Desk& desk, FieldGrid& grid, std::string_view button) {
  const std::string column = "DBase_" + product_;
  database_ = new CodeBox(desk, {"txt" + column, button}, periods::Empresas(product_, {}), this);
  database_->Box()->setMaxLength(kCharacters);
  database_->Box()->setProperty(kColumnProperty, ToQt(column));
  grid.Add("&Base de dados:", database_);
}

/// Databases are those of the server as it is typed, kept or not.
void SourceBox::SearchThere() {
  if (database_ != nullptr) database_->SetSearch(periods::Empresas(product_, Location()));
}

periods::SourceLocation SourceBox::Location() const {
  return {FromQt(server_->text()), FromQt(login_->text()), FromQt(password_->text()), database_->Codigo()};
}

void SourceBox::SetLocation(const periods::SourceLocation& location) {
  server_->setText(ToQt(location.server));
  login_->setText(ToQt(location.login));
  password_->setText(ToQt(location.password));
  database_->SetCodigoSemNome(location.database);
}

void SourceBox::ShowLink(bool reached) {
  lamp_->setText(reached ? kReached : kNotReached);
}

}  // namespace korvel::desktop
