#include "forms/auditfile/frm_exporta_saft.h"

#include <array>
#include <optional>
#include <string>

#include "auditfile/export_run.h"
#include "forms/common/field_grid.h"
#include "toolkit/text.h"

namespace korvel::desktop {

namespace {

constexpr int kWidth = 820, kHeight = 590;
constexpr std::array<std::string_view, 2> kYesNo{"&Sim", "&Não"};

}  // namespace

frmExportaSAFT::frmExportaSAFT(Desk& desk, QWidget* parent)
    : Form(desk, "frmExportaSAFT", parent),
      eselFiscalYear_(new PeriodChoice(desk, auditfile::kExportPeriods, this)),
      txtPastaExportacao_(new FolderBox(desk, Name(), this)),
      ticks_(nullptr) {
  eselFiscalYear_->onChange = [this] { ChoosePeriod(); };
  Arrange();
  resize(kWidth, kHeight);
}

void frmExportaSAFT::Arrange() {
  FieldGrid period;
  period.Add("A&no Fiscal", eselFiscalYear_);
  period.Add("Pasta para E&xportação", txtPastaExportacao_);
  auto* browse = CatalogueButton("cmdPesquisaPastas", [this] { txtPastaExportacao_->Browse(); });
  period.Layout()->addWidget(browse, 1, 2);
  ticks_ = new ExportTicks(this);
  QVBoxLayout* column = FormColumn(this);
  column->addLayout(period.Layout());
  column->addWidget(ticks_);
  column->addWidget(SeparatorsNote());
  column->addStretch();
  auto* process = CatalogueButton("cmdProcessar", [this] { Process(); });
  column->addLayout(ButtonRow({process, CatalogueButton("cmdFechar", [this] { reject(); })}));
}

QLabel* frmExportaSAFT::SeparatorsNote() {
  auto* note = new QLabel(
      "Note que para validar o resultado desta exportação utilizando a aplicação fornecida pela DGCI, o seu "
      "sistema tem que usar como definições regionais a vírgula para separador das casas decimais e ponto "
      "para "
      "separador dos milhares.",
      this);
  note->setObjectName("Label3");
  note->setWordWrap(true);
  return note;
}

bool frmExportaSAFT::Load() {
  txtPastaExportacao_->LoadFolder();
  return eselFiscalYear_->LoadPeriods();
}

void frmExportaSAFT::ChoosePeriod() {
  const periods::PeriodKey period = eselFiscalYear_->Chosen().period;
  const auto offer =
      desk_.Try([&](const session::Context& context) { return auditfile::OfferFor(context, period); });
  if (!offer || !*offer) {
    ticks_->Clear();
    SetCaptionDetail({});
    return;
  }
  ticks_->Show(**offer);
  SetCaptionDetail(eselFiscalYear_->Texto());
}

void frmExportaSAFT::Process() {
  const periods::PeriodKey period = eselFiscalYear_->Chosen().period;
  if (period.fiscalYear.empty()) return Refuse("Não definiu o Ano Fiscal!", "eselFiscalYear");
  if (toolkit::IsBlank(txtPastaExportacao_->Folder()))
    return Refuse("Não definiu a Localização para a Exportação!", "txtPastaExportacao");
  if (desk_.Dialogs().Ask("Confirma a Exportação?", kYesNo) != 0) return;
  ticks_->HideMarks();
  auditfile::ExportOptions options = ticks_->Options();
  options.txtPastaExportacao = txtPastaExportacao_->Folder();
  // The run is silent: what it has to say is shown here, once, with buttons that open the files.
  const auto result = desk_.Try(
      [&, screen = auditfile::ExportScreen{ticks_->Marker(), true}](const session::Context& context) {
        return auditfile::ExportaSaft(context, options, period, "", true, screen);
      });
  if (result) ShowExport(desk_, *result, options.chkPorMeses, openPath, this);
}

void frmExportaSAFT::Refuse(std::string_view text, std::string_view field) {
  desk_.Dialogs().Message(toolkit::Icon::Critical, text);
  desk_.Dialogs().Focus(field);
}

}  // namespace korvel::desktop
