#include "forms/session/frm_cria_empresa.h"

#include <QGroupBox>

#include "forms/common/field_grid.h"
#include "forms/session/menus.h"
#include "gateways/text.h"
#include "session/connections.h"

namespace korvel::desktop {

namespace {

constexpr int kCodeLength = 4;
constexpr int kDescriptionLength = 50;

QCheckBox* Box(std::string_view name, std::string_view caption) {
  auto* box = new QCheckBox(ToQt(caption));
  box->setObjectName(ToQt(name));
  return box;
}

}  // namespace

frmCriaEmpresa::frmCriaEmpresa(Desk& desk, std::string code, QWidget* parent)
    : Form(desk, "frmCriaEmpresa", parent),
      code_(std::move(code)),
      txtCodigo_(TextBox("txtCodigo", kCodeLength)),
      txtDescricao_(TextBox("txtDescricao", kDescriptionLength)),
      lvwUtilizadores_(new QListWidget),
      chkAcessoPrincipal_(Box("chkAcessoPrincipal", "Empresa p&rincipal")),
      chkAcessoIndependente_(Box("chkAcessoIndependente", "Os acessos desta empresa são &independentes")) {
  SetCaption(IsNew() ? "Criação de Empresas" : "Alteração de Empresas");
  resize(620, 520);
  txtCodigo_->setEnabled(IsNew());
  FieldGrid fields;
  fields.Add("C&odigo :", txtCodigo_);
  fields.Add("&Descrição :", txtDescricao_);
  auto* column = FormColumn(this);
  column->addLayout(fields.Layout());
  column->addWidget(UserFrame(), 1);
  column->addWidget(chkAcessoPrincipal_);
  column->addWidget(chkAcessoIndependente_);
  column->addLayout(Buttons());
}

QWidget* frmCriaEmpresa::UserFrame() {
  lvwUtilizadores_->setObjectName("lvwUtilizadores");
  auto* frame = new QGroupBox("&Utilizadores autorizados a trabalhar nesta Empresa");
  auto* column = new QVBoxLayout(frame);
  column->addWidget(lvwUtilizadores_);
  column->addLayout(ButtonRow({PlainButton("cmdTodos", "&Seleccionar Todos", [this] { TickAll(true); }),
                               PlainButton("cmdAnula", "&Anula Selecção", [this] { TickAll(false); })}));
  return frame;
}

QLayout* frmCriaEmpresa::Buttons() {
  auto* install = PlainButton("cmdInstal", "Ins&talação", [this] {
    desk_.Try([](const session::Context& context) { return databases::SwitchInstallMark(context); });
  });
  return ButtonRow({PlainButton("cmdAcessos", "Acessos ao &Programa", [this] { SayNoWindowYet(desk_); }),
                    install, PlainButton("cmdOK", "O&K", [this] { Save(); }),
                    PlainButton("cmdCancelar", "&Cancelar", [this] { reject(); })});
}

bool frmCriaEmpresa::Load() {
  const auto card = ReadCard();
  if (card) ShowCard(*card);
  txtDescricao_->setFocus();
  return card.has_value();
}

std::optional<databases::CompanyCard> frmCriaEmpresa::ReadCard() {
  using Card = std::optional<databases::CompanyCard>;
  return desk_
      .Try([this](const session::Context& context) -> Card {
        session::ConnectionPtr config;
        if (!session::AbreConfig(context, config)) {
          session::ShowConnectionError(context);
          return std::nullopt;
        }
        return IsNew() ? databases::NewCompanyCard(*config) : databases::LoadCompanyCard(*config, code_);
      })
      .value_or(std::nullopt);
}

void frmCriaEmpresa::ShowCard(const databases::CompanyCard& card) {
  txtCodigo_->setText(ToQt(card.company.code));
  txtDescricao_->setText(ToQt(card.company.description));
  chkAcessoPrincipal_->setChecked(card.company.main);
  chkAcessoIndependente_->setChecked(card.company.independent);
  lvwUtilizadores_->clear();
  for (const auto& user : card.users) {
    auto* item = new QListWidgetItem(ToQt(user.login), lvwUtilizadores_);
    item->setCheckState(user.ticked ? Qt::Checked : Qt::Unchecked);
  }
}

databases::CompanyCard frmCriaEmpresa::Typed() const {
  databases::CompanyCard card{.company = {.code = FromQt(txtCodigo_->text()),
                                          .description = FromQt(txtDescricao_->text()),
                                          .main = chkAcessoPrincipal_->isChecked(),
                                          .independent = chkAcessoIndependente_->isChecked()},
                              .users = {}};
  for (int row = 0; row < lvwUtilizadores_->count(); ++row) {
    const QListWidgetItem* item = lvwUtilizadores_->item(row);
    card.users.push_back({FromQt(item->text()), item->checkState() == Qt::Checked});
  }
  return card;
}

void frmCriaEmpresa::TickAll(bool ticked) {
  for (int row = 0; row < lvwUtilizadores_->count(); ++row) {
    lvwUtilizadores_->item(row)->setCheckState(ticked ? Qt::Checked : Qt::Unchecked);
  }
}

void frmCriaEmpresa::Save() {
  const auto card = Typed();
  const auto saved = desk_.Try([&](const session::Context& context) {
    return IsNew() ? databases::CreateFromCard(context, card) : databases::ChangeFromCard(context, card);
  });
  if (saved.value_or(false)) accept();
}

}  // namespace korvel::desktop
