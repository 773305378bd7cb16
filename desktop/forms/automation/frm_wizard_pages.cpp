#include <QGroupBox>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLabel>
#include <memory>
#include <string>
#include <utility>

#include "forms/accounting/corrections.h"
#include "forms/automation/frm_envio_automatico.h"
#include "forms/automation/frm_wizard.h"
#include "forms/common/field_grid.h"
#include "gateways/row_feed.h"
#include "gateways/text.h"
#include "periods/header_fields.h"
#include "periods/incomplete_rows.h"
#include "security/rights_catalogue.h"
#include "toolkit/grid_layout.h"
#include "toolkit/list_rows.h"

namespace korvel::desktop {

namespace {

constexpr std::string_view kStepsLayout = "Chave,0/Tabela,3600/Relatório,1400,D/";
constexpr QSize kWizardSize(1080, 640);
constexpr int kYearCharacters = 4, kDateCharacters = 10;
constexpr std::string_view kTaxesKey = "C_Impostos";

/// The names of a step's buttons begin with this; those of the suppliers are shorter than their key.
std::string ButtonPrefix(std::string_view key) {
  return "cmd" + std::string(key == "C_Fornecedores" ? "C_Fornece" : key) + "_";
}

/// Wide enough for so many digits.
void Widen(QLineEdit* box, int characters) {
  box->setMinimumWidth(box->fontMetrics().horizontalAdvance('0') * (characters + 3));
}

/// A button with a key that its caption does not show.
void GiveKey(QPushButton* button, const char* key) {
  button->setShortcut(QKeySequence(key));
  button->setToolTip(button->shortcut().toString(QKeySequence::NativeText));
}

}  // namespace

const frmWizard::Verb frmWizard::kVerbs[] = {
    {"Carregar", "Alt+C", &frmWizard::Carregar, Writes::No},
    {"Gravar", "Alt+G", &frmWizard::Gravar, Writes::Yes},
    {"Alterar", "Alt+A", &frmWizard::Alterar, Writes::No},
};

frmWizard::frmWizard(Desk& desk, QWidget* parent)
    : Form(desk, "frmWizard", parent),
      txtAno_(TextBox("txtAno", 4)),
      eselMes_(new SelOpta("eselMes", this)),
      edatStartDate_(new Edatas(desk, "edatStartDate", this)),
      edatEndDate_(new Edatas(desk, "edatEndDate", this)),
      eselTaxAccountingBasis_(new SelOpta("eselTaxAccountingBasis", this)),
      txtPastaExportacao_(new FolderBox(desk, Name(), this)),
      chkMostraMoimentosLVW_(new QCheckBox("Visualizar os registos na Grelha (Apenas Movimentos)", this)),
      lvwTabelas_(
          new GridPanel(desk, Name(), "lvwTabelas", toolkit::ParseGridLayout(kStepsLayout), false, this)),
      stack_(new QStackedWidget(this)),
      ticks_(new ExportTicks(stack_)) {
  chkMostraMoimentosLVW_->setObjectName("chkMostraMoimentosLVW");
  eselMes_->SetLista(automation::kMesesList);
  eselMes_->onChange = [this] { ChooseMonth(); };
  eselTaxAccountingBasis_->SetLista(periods::kBasisList);
  eselTaxAccountingBasis_->onChange = [this] { CarregaTabelas(); };
  connect(lvwTabelas_->View().selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this] { ChooseRow(); });
  AddPages();
  Arrange();
  resize(kWizardSize);
}

void frmWizard::Arrange() {
  auto* work = new QHBoxLayout;
  work->setSpacing(kSpacing);
  work->addWidget(lvwTabelas_, 2);
  work->addWidget(stack_, 3);
  QVBoxLayout* column = FormColumn(this);
  column->addLayout(ArrangeInputs());
  column->addLayout(work, 1);
  cmdGravar_ = CatalogueButton(
      "cmdGravar", [this] { Processar(); }, Writes::Yes);
  auto* cmdEnvioAuto = CatalogueButton(
      "cmdEnvioAuto", [this] { frmEnvioAutomatico(desk_, this).Ask(); }, Writes::Yes);
  GiveKey(cmdEnvioAuto, "Alt+U");
  column->addLayout(
      ButtonRow({cmdGravar_, cmdEnvioAuto, CatalogueButton("cmdFechar", [this] { reject(); })}));
}

QLayout* frmWizard::ArrangeInputs() {
  Widen(txtAno_, kYearCharacters);
  for (QLineEdit* date : {edatStartDate_, edatEndDate_}) Widen(date, kDateCharacters);
  FieldGrid fields(5);
  fields.Add("A&no", txtAno_);
  fields.Add("&Mês", eselMes_);
  fields.Add("Data &Inicial", edatStartDate_);
  fields.Add("Data Fina&l", edatEndDate_);
  fields.Add("&Tipo de Sistema", eselTaxAccountingBasis_);
  auto* folder = new QHBoxLayout;
  auto* label = new QLabel("Pasta para E&xportação", this);
  label->setBuddy(txtPastaExportacao_);
  folder->addWidget(label);
  folder->addWidget(txtPastaExportacao_, 1);
  folder->addWidget(CatalogueButton("cmdPesquisaPastas", [this] { txtPastaExportacao_->Browse(); }));
  auto* inputs = new QVBoxLayout;
  inputs->setSpacing(kSpacing);
  inputs->addLayout(fields.Layout());
  inputs->addLayout(folder);
  inputs->addWidget(chkMostraMoimentosLVW_);
  return inputs;
}

void frmWizard::AddPages() {
  stack_->addWidget(new QWidget(stack_));  // before a row is chosen
  for (const automation::Step& step : automation::AllSteps()) AddPage(step);
  fraExportacao_ = MakeExportFrame();
  stack_->addWidget(fraExportacao_);
}

void frmWizard::AddPage(const automation::Step& step) {
  auto* frame = new QGroupBox(ToQt(step.description.substr(2)), stack_);
  frame->setObjectName(ToQt("fra" + std::string(step.key)));
  auto* grid = new GridPanel(desk_, Name(), "lvw" + std::string(step.key),
                             GridColumnsOf(step.staged().columns), true, frame);
  pages_.push_back({&step, frame, grid});
  auto* column = new QVBoxLayout(frame);
  column->setSpacing(kSpacing);
  column->addWidget(grid, 1);
  column->addLayout(StepButtons(pages_.size() - 1));
  stack_->addWidget(frame);
}

/// One under the other: their captions are long.
QLayout* frmWizard::StepButtons(std::size_t page) {
  const std::string prefix = ButtonPrefix(pages_[page].step->key);
  auto* column = new QVBoxLayout;
  for (const security::FormButton& button : security::FindForm(Name())->buttons) {
    if (!button.name.starts_with(prefix)) continue;
    for (const Verb& verb : kVerbs) {
      if (button.name.substr(prefix.size()) != verb.name) continue;
      column->addWidget(StepButton(page, button.name, verb));
    }
  }
  return column;
}

QPushButton* frmWizard::StepButton(std::size_t page, std::string_view name, const Verb& verb) {
  auto* button = CatalogueButton(
      name, [this, page, action = verb.action] { (this->*action)(pages_[page]); }, verb.writes);
  GiveKey(button, verb.key);
  // Enter or a double click corrects a row, by the same right.
  if (verb.action == &frmWizard::Alterar) pages_[page].grid->onActivate = [button] { button->click(); };
  return button;
}

QWidget* frmWizard::MakeExportFrame() {
  auto* frame = new QGroupBox(ToQt(automation::kExportDescription.substr(2)), stack_);
  frame->setObjectName("fraExportacao");
  auto* column = new QVBoxLayout(frame);
  column->setSpacing(kSpacing);
  column->addWidget(ticks_);
  column->addStretch();
  auto* prepare = CatalogueButton("cmdExportacao_Prepara", [this] { Exportacao_Prepara(); });
  GiveKey(prepare, "Alt+R");
  prepare->setToolTip("Contar os registos do período (" + prepare->toolTip() + ")");
  column->addLayout(ButtonRow({prepare, CatalogueButton("cmdExportar", [this] { Exportar(); })}));
  return frame;
}

void frmWizard::Carregar(Page& page) {
  const automation::WizardInput input = Input();
  SetStatus(page.step->key, automation::StepStatus::Processing);
  auto rows = desk_.Try(
      [&](const session::Context& context) { return automation::CarregarPasso(context, input, *page.step); });
  page.filled = rows && *rows;
  if (page.filled) {
    page.grid->Model().SetRows(std::move(**rows));
    ShowPeriod();
  }
  SetStatus(page.step->key, page.filled ? automation::StepStatus::None : automation::StepStatus::Failed);
}

/// What was not loaded yet is loaded first, as in a run.
void frmWizard::Gravar(Page& page) {
  if (page.step->load != nullptr && !page.filled) Carregar(page);
  if (page.step->load != nullptr && !page.filled) return;
  const automation::WizardInput input = Input();
  SetStatus(page.step->key, automation::StepStatus::Processing);
  const auto saved = desk_.Try([&, &rows = page.grid->Model().Rows()](const session::Context& context) {
    return automation::GravarPasso(context, input, *page.step, rows);
  });
  const bool done = saved.value_or(false);
  if (done && page.step->load == nullptr) FillFromStaged(page);
  SetStatus(page.step->key, done ? automation::StepStatus::Ok : automation::StepStatus::Failed);
  if (done) return;
  if (const auto row = periods::FirstIncomplete(page.step->staged(), page.grid->Model().Rows())) {
    page.grid->SelectRow(*row);
  }
}

void frmWizard::Alterar(Page& page) {
  const auto row = page.grid->CurrentRow();
  if (!row) {
    desk_.Dialogs().Message(toolkit::Icon::Warning, toolkit::kNoSuchItem, toolkit::kAttention);
  } else if (page.step->key == kTaxesKey) {
    CorrectingTaxes(desk_, page.step->staged())(this, page.grid->Model(), *row);
  } else {
    CorrectingCustomers(desk_, page.step->staged())(this, page.grid->Model(), *row);
  }
}

/// Of the movements there may be a million: they are shown where the tick asks for them, as one scrolls.
void frmWizard::FillFromStaged(Page& page) {
  page.filled = true;
  const automation::WizardInput input = Input();
  if (page.step->load == nullptr) {
    if (!chkMostraMoimentosLVW_->isChecked()) return;
    page.grid->Model().SetFeed(std::make_unique<RowFeed>(
        [context = desk_.Context(), input, step = page.step](const RowFeed::Sink& sink) {
          automation::VerPasso(context, input, *step, sink);
        }));
    return;
  }
  auto rows = desk_.Try(
      [&](const session::Context& context) { return automation::LerPasso(context, input, *page.step); });
  if (rows && *rows) page.grid->Model().SetRows(std::move(**rows));
}

void frmWizard::Exportacao_Prepara() {
  const automation::WizardInput input = Input();
  if (Refuses(input)) return;
  const auto offer = desk_.Try([&](const session::Context& context) {
    return auditfile::OfferFor(context, {input.txtAno, input.edatStartDate, input.edatEndDate});
  });
  if (offer && *offer) {
    ticks_->Show(**offer);
  } else {
    ticks_->Clear();
  }
}

void frmWizard::Exportar() {
  const automation::WizardInput input = Input();
  if (Refuses(input)) return;
  auditfile::ExportOptions options = ticks_->Options();
  options.txtPastaExportacao = input.txtPastaExportacao;
  ticks_->HideMarks();
  SetStatus(automation::kExportKey, automation::StepStatus::Processing);
  const auditfile::ExportScreen screen{ticks_->Marker(), true};
  const auto result = desk_.Try([&](const session::Context& context) {
    return auditfile::ExportaSaft(context, options, {input.txtAno, input.edatStartDate, input.edatEndDate},
                                  "", true, screen);
  });
  const bool done = result && result->ok;
  SetStatus(automation::kExportKey, done ? automation::StepStatus::Ok : automation::StepStatus::Failed);
  if (result) ShowExport(desk_, *result, options.chkPorMeses, openPath, this);
}

}  // namespace korvel::desktop
