#include "forms/automation/frm_wizard.h"

#include <QApplication>
#include <QItemSelectionModel>
#include <QMetaObject>
#include <algorithm>
#include <string>
#include <utility>

#include "automation/wizard.h"
#include "gateways/text.h"
#include "periods/header_fields.h"

namespace korvel::desktop {

using automation::StepStatus;

namespace {

constexpr std::string_view kShowMovementsKey = "chkMostraMoimentosLVW";
constexpr std::size_t kKeyColumn = 0, kDescriptionColumn = 1, kStatusColumn = 2;

periods::PeriodKey KeyOf(const automation::WizardInput& input) {
  return {input.txtAno, input.edatStartDate, input.edatEndDate};
}

/// As the choice of months has it: the year or the month of its end.
std::string MonthKey(std::string_view start, std::string_view end) {
  constexpr std::size_t kMonthAt = 5, kMonthLength = 2;
  if (start.ends_with("01-01") && end.ends_with("12-31")) return "365";
  return end.size() < kMonthAt ? std::string() : std::string(end.substr(kMonthAt, kMonthLength));
}

}  // namespace

bool frmWizard::Load() {
  txtPastaExportacao_->LoadFolder();
  chkMostraMoimentosLVW_->setChecked(desk_.Settings().Read(Name(), kShowMovementsKey) == "1");
  eselTaxAccountingBasis_->SetChave("F");
  return true;
}

void frmWizard::Abrir(std::string_view Ano, std::string_view StartDate, std::string_view EndDate,
                      std::string_view TaxAccountingBasis) {
  txtAno_->setText(ToQt(Ano));
  eselMes_->SetChave(MonthKey(StartDate, EndDate));
  if (!StartDate.empty()) edatStartDate_->SetConteudoAMD(StartDate);
  if (!EndDate.empty()) edatEndDate_->SetConteudoAMD(EndDate);
  if (!TaxAccountingBasis.empty()) eselTaxAccountingBasis_->SetChave(TaxAccountingBasis);
  Automatico_ = true;
  QApplication::processEvents();
  cmdGravar_->click();
  QApplication::processEvents();
  close();
}

void frmWizard::ChooseMonth() {
  const auto dates = automation::DatesOf(FromQt(txtAno_->text()), eselMes_->Chave());
  if (!dates) return;
  edatStartDate_->SetConteudoAMD(dates->first);
  edatEndDate_->SetConteudoAMD(dates->last);
}

void frmWizard::CarregaTabelas() {
  periods::Grid rows;
  for (const automation::StepReport& step : automation::StepsFor(Input().eselTaxAccountingBasis)) {
    rows.emplace_back().cells = {std::string(step.key), std::string(step.description), {}};
  }
  lvwTabelas_->Model().SetRows(std::move(rows));
  lvwTabelas_->View().WidenToTexts(kDescriptionColumn);
  for (Page& page : pages_) {
    page.grid->Model().SetRows({});
    page.filled = false;
  }
  stack_->setCurrentIndex(0);
}

void frmWizard::ChooseRow() {
  const auto row = lvwTabelas_->CurrentRow();
  if (!row) return;
  const std::string key = lvwTabelas_->Model().Cell(*row, kKeyColumn);
  if (key == automation::kExportKey) return stack_->setCurrentWidget(fraExportacao_);
  const auto page =
      std::find_if(pages_.begin(), pages_.end(), [&](const Page& each) { return each.step->key == key; });
  stack_->setCurrentWidget(page->frame);
  if (!desk_.IsBusy() && !page->filled && StatusOf(key) == StepStatus::Ok) FillFromStaged(*page);
}

automation::WizardInput frmWizard::Input() {
  automation::WizardInput input;
  input.txtAno = FromQt(txtAno_->text());
  input.edatStartDate = edatStartDate_->ConteudoAMD();
  input.edatEndDate = edatEndDate_->ConteudoAMD();
  const std::string basis = eselTaxAccountingBasis_->Chave();
  if (!basis.empty()) input.eselTaxAccountingBasis = static_cast<periods::Basis>(basis.front());
  input.txtPastaExportacao = txtPastaExportacao_->Folder();
  input.automatico = Automatico_;
  return input;
}

bool frmWizard::Refuses(const automation::WizardInput& input) {
  const auto fault = automation::FaultOf(input, true);
  if (!fault) return false;
  desk_.Dialogs().Message(toolkit::Icon::Warning, fault->message);
  desk_.Dialogs().Focus(fault->field);
  return true;
}

void frmWizard::Processar() {
  CarregaTabelas();
  ticks_->Clear();
  const automation::WizardInput input = Input();
  const auditfile::ExportScreen screen{ticks_->Marker(), true};
  desk_.Remember(Name(), kShowMovementsKey, chkMostraMoimentosLVW_->isChecked() ? "1" : "0");
  const auto result = desk_.Try([&](const session::Context& context) {
    return automation::Assistente(context, input, Observer(context, KeyOf(input)), screen);
  });
  if (!result || result->steps.empty()) return;
  ShowPeriod();
  Tell(*result);
}

void frmWizard::ShowPeriod() {
  SetCaptionDetail(edatStartDate_->Conteudo() + " a " + edatEndDate_->Conteudo());
}

/// Called on the run's thread, which reads the counts of the sections too; the screen is told behind it.
automation::WizardObserver frmWizard::Observer(const session::Context& context,
                                               const periods::PeriodKey& period) {
  return [this, &context, period](const automation::StepReport& step) {
    std::optional<auditfile::ExportOffer> offer;
    const bool exports = step.key == automation::kExportKey && step.status == StepStatus::Processing;
    if (exports) offer = auditfile::OfferFor(context, period);
    QMetaObject::invokeMethod(
        this,
        [this, key = std::string(step.key), status = step.status, offer = std::move(offer)] {
          if (offer) ticks_->Show(*offer);
          SetStatus(key, status);
        },
        Qt::QueuedConnection);
  };
}

/// The row that something happens to is the one shown.
void frmWizard::SetStatus(std::string_view key, StepStatus status) {
  const periods::Grid& rows = lvwTabelas_->Model().Rows();
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [&](const periods::GridRow& row) { return row.cells[kKeyColumn] == key; });
  if (found == rows.end()) return;
  const auto place = static_cast<std::size_t>(found - rows.begin());
  lvwTabelas_->Model().Edit(
      [&](periods::Grid& grid) { grid[place].cells[kStatusColumn] = automation::StatusText(status); });
  lvwTabelas_->SelectRow(place);
}

StepStatus frmWizard::StatusOf(std::string_view key) const {
  for (const periods::GridRow& row : lvwTabelas_->Model().Rows()) {
    if (row.cells[kKeyColumn] != key) continue;
    for (const StepStatus status : {StepStatus::Processing, StepStatus::Ok, StepStatus::Failed}) {
      if (row.cells[kStatusColumn] == automation::StatusText(status)) return status;
    }
  }
  return StepStatus::None;
}

void frmWizard::Tell(const automation::WizardResult& result) {
  if (Automatico_) return;
  if (result.noJournalTicked) {
    desk_.Dialogs().Message(toolkit::Icon::Warning,
                            "Sem diários seleccionados, todos os saldos iniciais ficam a zero.");
  }
  const bool exported = result.steps.back().status != StepStatus::None;
  if (exported) ShowExport(desk_, result.exported, false, openPath, this);
}

}  // namespace korvel::desktop
