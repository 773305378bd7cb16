#include "forms/periods/frm_filtros_lunder.h"

#include <QSize>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <utility>

#include "forms/common/field_grid.h"
#include "toolkit/grid_layout.h"

namespace korvel::desktop {

namespace {

constexpr std::string_view kJournalLayout = "Nº Registo,330/Código,1050/Descrição,3300/Notas,2000/";
constexpr std::string_view kEveryAccount = "Todas";

std::string KeyOf(const periods::Journal& journal) {
  return std::to_string(journal.numRegisto);
}

constexpr QSize kLunderFiltersSize(560, 420);

}  // namespace

frmFiltrosLunder::frmFiltrosLunder(Desk& desk, QWidget* parent) : Form(desk, "frmFiltrosLunder", parent) {
  SetCaption("Condições de Pesquisa");
  txtContaInicial_ =
      new CodeBox(desk, {"txtContaInicial", "cmdContaInicial", "lblContaInicial", kEveryAccount},
                  periods::Contas_Contabilidade(), this);
  txtContaFinal_ = new CodeBox(desk, {"txtContaFinal", "cmdContaFinal", "lblContaFinal", kEveryAccount},
                               periods::Contas_Contabilidade(), this);
  lvwDiarios_ =
      new GridPanel(desk, Name(), "lvwDiarios", toolkit::ParseGridLayout(kJournalLayout), true, this);
  Arrange();
  resize(kLunderFiltersSize);
}

void frmFiltrosLunder::Arrange() {
  FieldGrid accounts;
  accounts.Add("Conta &Inicial:", txtContaInicial_);
  accounts.Add("Conta &Final:", txtContaFinal_);
  auto* column = FormColumn(this);
  column->addLayout(accounts.Layout());
  column->addWidget(lvwDiarios_, 1);
  column->addLayout(ButtonRow({PlainButton("cmdContinuar", "C&ontinuar", [this] { Continuar(); }),
                               PlainButton("cmdCancelar", "&Cancelar", [this] { reject(); })}));
}

periods::LunderFilter frmFiltrosLunder::Escolher() {
  return Ask() ? periods::MakeLunderFilter(Shown()) : periods::LunderFilter();
}

bool frmFiltrosLunder::Load() {
  auto stored = desk_.Try([](const session::Context& context) { return periods::LoadLunderFilter(context); });
  if (!stored || !*stored) return false;
  stored_ = std::move(**stored);
  txtContaInicial_->SetCodigo(stored_.contaInicial);
  txtContaFinal_->SetCodigo(stored_.contaFinal);
  ShowJournals();
  return true;
}

void frmFiltrosLunder::ShowJournals() {
  periods::Grid rows;
  for (const periods::Journal& journal : stored_.journals) {
    rows.push_back({journal.ticked, {KeyOf(journal), journal.codigo, journal.descricao, journal.notas}});
  }
  lvwDiarios_->Model().SetRows(std::move(rows));
  const auto ticked = std::ranges::find_if(stored_.journals, &periods::Journal::ticked);
  if (ticked != stored_.journals.end()) {
    lvwDiarios_->SelectRow(static_cast<std::size_t>(ticked - stored_.journals.begin()));
  }
}

void frmFiltrosLunder::Continuar() {
  if (periods::CheckJournals(desk_.Dialogs(), Shown())) accept();
}

periods::LunderFilterForm frmFiltrosLunder::Shown() const {
  periods::LunderFilterForm form = stored_;
  form.contaInicial = txtContaInicial_->Codigo();
  form.contaFinal = txtContaFinal_->Codigo();
  for (periods::Journal& journal : form.journals) {
    journal.ticked = std::ranges::any_of(lvwDiarios_->Model().Rows(), [&](const periods::GridRow& row) {
      return row.ticked && row.cells.front() == KeyOf(journal);
    });
  }
  return form;
}

}  // namespace korvel::desktop
