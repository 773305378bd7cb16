#include "forms/automation/frm_envio_automatico.h"

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

#include "automation/automatic_sending.h"
#include "automation/sending_history.h"
#include "forms/common/field_grid.h"
#include "periods/company_connection.h"
#include "toolkit/grid_layout.h"

namespace korvel::desktop {

namespace {

constexpr std::string_view kHistoryLayout =
    "Nº Registo,0/Data Envio,1000,C/Hora Envio,1000,C/Periodicidade,2000/Observações,3000/Nome do "
    "Ficheiro,4000/";
constexpr std::chrono::seconds kRefreshEvery{60};
constexpr QSize kSendingSize(880, 440);

periods::Grid RowsOf(const std::vector<automation::SentRun>& runs) {
  periods::Grid rows;
  for (const automation::SentRun& run : runs) {
    periods::GridRow& row = rows.emplace_back();
    row.cells = {{},          run.dataEnvio, run.horaEnvio, run.dataInicial + " / " + run.dataFinal,
                 run.observa, run.ficheiro};
  }
  return rows;
}

}  // namespace

frmEnvioAutomatico::frmEnvioAutomatico(Desk& desk, QWidget* parent)
    : Form(desk, "frmEnvioAutomatico", parent),
      eselPeriodicidadeEnvio_(new SelOpta("eselPeriodicidadeEnvio", this)),
      eselPeriodoDados_(new SelOpta("eselPeriodoDados", this)),
      lvwHistorico_(new GridPanel(desk, Name(), "lvwHistorico", toolkit::ParseGridLayout(kHistoryLayout),
                                  false, this)) {
  SetCaption("Definições para Exportação Automática");
  eselPeriodicidadeEnvio_->SetLista(automation::kPeriodicidadeList);
  eselPeriodoDados_->SetLista(automation::kPeriodoDadosList);
  tmrHistorico_.setObjectName("tmrHistorico");
  connect(&tmrHistorico_, &QTimer::timeout, this, [this] {
    if (!desk_.IsBusy() && isActiveWindow()) Refresh();
  });
  Arrange();
  resize(kSendingSize);
}

void frmEnvioAutomatico::Arrange() {
  FieldGrid fields(2);
  fields.Add("Pe&riodicidade do Envio", eselPeriodicidadeEnvio_);
  fields.Add("Período dos &Dados", eselPeriodoDados_);
  QVBoxLayout* column = FormColumn(this);
  column->addLayout(fields.Layout());
  column->addWidget(lvwHistorico_, 1);
  column->addLayout(ButtonRow({PlainButton("cmdGravar", "&Gravar", [this] { Gravar(); }),
                               PlainButton("cmdRefresh", "Re&frescar", [this] { Refresh(); }),
                               PlainButton("cmdEliminar", "&Eliminar", [this] { Eliminar(); }),
                               PlainButton("cmdFechar", "&Fechar", [this] { reject(); })}));
}

bool frmEnvioAutomatico::Load() {
  const auto settings = desk_.Try([](const session::Context& context) {
    const auto company = periods::OpenCompany(context);
    return company ? std::optional(automation::ReadSendingSettings(*company)) : std::nullopt;
  });
  if (!settings || !*settings) return false;
  eselPeriodicidadeEnvio_->SetChave((*settings)->PeriodicidadeEnvio);
  eselPeriodoDados_->SetChave((*settings)->PeriodoDados);
  tmrHistorico_.start(kRefreshEvery);
  return Refresh();
}

bool frmEnvioAutomatico::Refresh() {
  const auto runs = desk_.Try([](const session::Context& context) {
    const auto company = periods::OpenCompany(context);
    return company ? std::optional(automation::ReadHistory(*company)) : std::nullopt;
  });
  if (!runs || !*runs) return false;
  lvwHistorico_->Model().SetRows(RowsOf(**runs));
  return true;
}

void frmEnvioAutomatico::Gravar() {
  const automation::SendingSettings settings{eselPeriodicidadeEnvio_->Chave(), eselPeriodoDados_->Chave()};
  const auto kept = desk_.Try([&](const session::Context& context) {
    const auto company = periods::OpenCompany(context);
    if (!company) return false;
    const bool saved = automation::GravarEnvioAutomatico(*company, settings);
    if (!saved) context.dialogs.Message(toolkit::Icon::Warning, "A empresa ainda não tem Parâmetros Gerais.");
    return saved;
  });
  if (kept.value_or(false)) accept();
}

void frmEnvioAutomatico::Eliminar() {
  const auto deleted = desk_.Try([](const session::Context& context) {
    const auto company = periods::OpenCompany(context);
    return company && automation::EliminarHistorico(context, *company);
  });
  if (deleted.value_or(false)) lvwHistorico_->Model().SetRows({});
}

}  // namespace korvel::desktop
