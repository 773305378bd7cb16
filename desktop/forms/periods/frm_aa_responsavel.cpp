#include "forms/periods/frm_aa_responsavel.h"

#include <QSize>
#include <QVBoxLayout>
#include <string_view>

#include "forms/common/field_grid.h"
#include "gateways/text.h"

namespace korvel::desktop {

using periods::Entity;

struct EntityField {
  std::string_view name;
  std::string_view label;
  std::string Entity::*member;
  int characters = 50;
  QLineEdit::EchoMode echo = QLineEdit::Normal;
};

namespace {

constexpr EntityField kIdentity[]{
    {"txtEntidade", "&Entidade:", &Entity::NomeEntidade},
    {"txtMorada", "&Morada:", &Entity::Morada},
    {"txtLocal", "&Local:", &Entity::Local},
    {"txtCodigoPostal", "Código &Postal:", &Entity::CodigoPostal},
    {"txtTelefones", "&Telefones:", &Entity::Telefones},
    {"txtContribuinte", "Co&ntribuinte:", &Entity::Contribuinte},
};
constexpr EntityField kMail[]{
    {"txtSMTPServer", "&Servidor:", &Entity::SMTPServer},
    {"txtSMTPLogin", "L&ogin:", &Entity::SMTPLogin},
    {"txtSMTPPassword", "Pass&word:", &Entity::SMTPPassword, 50, QLineEdit::Password},
    {"txtEmailOrigem", "Ema&il de origem:", &Entity::EmailOrigem},
};
constexpr EntityField kTransfers[]{
    {"txtFTPServer", "Se&rvidor:", &Entity::FtpServer, 30},
    {"txtFTPUser", "&Utilizador:", &Entity::FtpUser, 20},
    {"txtFTPPwd", "P&assword:", &Entity::FtpPWD, 20, QLineEdit::Password},
    {"txtFTPPath", "&Directoria:", &Entity::FTPPath, 20},
};

constexpr QSize kResponsavelSize(760, 380);

}  // namespace

frmAAResponsavel::frmAAResponsavel(Desk& desk, QWidget* parent) : Form(desk, "frmAAResponsavel", parent) {
  SetCaption("Configurações da entidade responsável pelo processamento");
  auto* accounts = new QHBoxLayout;
  accounts->setSpacing(kSpacing);
  auto* column = FormColumn(this);
  column->addWidget(Group("Identificação", kIdentity, 2));
  accounts->addWidget(Group("Dados para Transferência via email", kMail, 1));
  accounts->addWidget(Group("Dados para Transferências via FTP", kTransfers, 1));
  column->addLayout(accounts);
  column->addStretch();
  column->addLayout(ButtonRow({CatalogueButton("cmdGravar", [this] { Gravar(); }),
                               CatalogueButton("cmdFechar", [this] { reject(); })}));
  resize(kResponsavelSize);
}

QGroupBox* frmAAResponsavel::Group(const QString& title, std::span<const EntityField> fields, int pairs) {
  auto* group = new QGroupBox(title, this);
  FieldGrid grid(pairs);
  for (const EntityField& field : fields) {
    QLineEdit* box = TextBox(field.name, field.characters);
    box->setEchoMode(field.echo);
    grid.Add(field.label, box);
    boxes_.push_back({box, field.member});
  }
  group->setLayout(grid.Layout());
  return group;
}

bool frmAAResponsavel::Load() {
  const auto entity =
      desk_.Try([](const session::Context& context) { return periods::CarregarEntidade(context); });
  if (!entity || !*entity) return false;
  for (const Bound& bound : boxes_) bound.box->setText(ToQt((**entity).*bound.member));
  return true;
}

void frmAAResponsavel::Gravar() {
  Entity entity;
  for (const Bound& bound : boxes_) entity.*bound.member = FromQt(bound.box->text());
  const bool saved =
      desk_.Try([&](const session::Context& context) { return periods::GravarEntidade(context, entity); })
          .value_or(false);
  if (saved) accept();
}

}  // namespace korvel::desktop
