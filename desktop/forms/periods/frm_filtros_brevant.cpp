#include "forms/periods/frm_filtros_brevant.h"

#include <QSize>
#include <QVBoxLayout>
#include <optional>
#include <string>

#include "forms/common/field_grid.h"
#include "periods/company_connection.h"

namespace korvel::desktop {

namespace {

constexpr QSize kBrevantFiltersSize(480, 240);

}  // namespace

frmFiltrosBrevant::frmFiltrosBrevant(Desk& desk, QWidget* parent) : Form(desk, "frmFiltrosBrevant", parent) {
  SetCaption("Condições de Pesquisa");
  txtGrupo_ =
      new CodeBox(desk, {"txtGrupo", "cmdGrupo", "lblGrupo", "Todos"}, periods::Grupo_Produtos(), this);
  txtFamilia_ = new CodeBox(desk, {"txtFamilia", "cmdFamilia", "lblFamilia", "Todas"},
                            periods::Familia_Produtos(), this);
  txtSubFamilia_ = new CodeBox(desk, {"txtSubFamilia", "cmdSubFamilia", "lblSubFamilia", "Todas"},
                               periods::SubFamilia_Produtos(), this);
  txtSituacao_ = new CodeBox(desk, {"txtSituacao", "cmdSituacao", "lblSituacao", "Todas"},
                             periods::Situacoes_Brevant(), this);
  eselPatamar_ = new SelOpta("eselPatamar", this);
  eselPatamar_->SetLista(periods::kPatamarList);
  Arrange();
  resize(kBrevantFiltersSize);
}

void frmFiltrosBrevant::Arrange() {
  FieldGrid fields;
  fields.Add("&Grupo:", txtGrupo_);
  fields.Add("&Família:", txtFamilia_);
  fields.Add("&Subfamília:", txtSubFamilia_);
  fields.Add("Si&tuação:", txtSituacao_);
  fields.Add("&Patamar de envio", eselPatamar_);
  auto* column = FormColumn(this);
  column->addLayout(fields.Layout());
  column->addStretch();
  column->addLayout(ButtonRow({PlainButton("cmdContinuar", "C&ontinuar", [this] { accept(); }),
                               PlainButton("cmdCancelar", "&Cancelar", [this] { reject(); })}));
}

periods::BrevantFilter frmFiltrosBrevant::Escolher() {
  if (Ask()) return periods::FiltrosBrevant(Shown());
  return {std::string(periods::kFilterCancelled), {}};
}

bool frmFiltrosBrevant::Load() {
  using Choice = std::optional<periods::BrevantChoice>;
  const auto stored = desk_.Try([](const session::Context& context) -> Choice {
    const auto company = periods::OpenCompany(context);
    if (!company) return std::nullopt;
    return periods::StoredBrevantChoice(periods::ReadParameters(*company).value_or(periods::Parameters()));
  });
  if (!stored || !*stored) return false;
  const periods::BrevantChoice& choice = **stored;
  txtGrupo_->SetCodigo(choice.grupo);
  txtFamilia_->SetCodigo(choice.familia);
  txtSubFamilia_->SetCodigo(choice.subFamilia);
  txtSituacao_->SetCodigo(choice.situacao);
  eselPatamar_->SetChave(choice.patamar);
  return true;
}

periods::BrevantChoice frmFiltrosBrevant::Shown() const {
  return {txtGrupo_->Codigo(), txtFamilia_->Codigo(), txtSubFamilia_->Codigo(), txtSituacao_->Codigo(),
          eselPatamar_->Chave()};
}

}  // namespace korvel::desktop
