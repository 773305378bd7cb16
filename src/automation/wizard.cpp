#include "automation/wizard.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "automation/period_rebuild.h"
#include "automation/sending_history.h"
#include "automation/wizard_steps.h"
#include "data/sql_text.h"
#include "periods/header_fields.h"
#include "periods/period_editor.h"
#include "security/activity_log.h"
#include "security/rights_catalogue.h"
#include "session/connections.h"
#include "session/lookups.h"
#include "toolkit/options.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::automation {
namespace {

using periods::Basis;

constexpr std::array<std::string_view, 2> kYesNo{"&Sim", "&Não"};

std::string Letter(Basis basis) {
  return {static_cast<char>(basis)};
}

std::string CaptionOf(Basis basis) {
  const std::string key = Letter(basis);
  for (const toolkit::Option& option : toolkit::eselToArray(periods::kBasisList)) {
    if (option.key == key) return option.caption;
  }
  return key;
}

class WizardRun {
 public:
  WizardRun(const session::Context& context, const WizardInput& input, const WizardObserver& observer,
            const auditfile::ExportScreen& screen)
      : context_(context),
        input_(input),
        observer_(observer),
        screen_(screen),
        steps_{context, input, {{input.txtAno, input.edatStartDate, input.edatEndDate}, {}}} {}

  WizardResult Go() {
    if (!CheckInput() || !Confirmed("Confirma o Processamento?")) return result_;
    if (!PreparePeriod()) return result_;
    result_.steps = StepsFor(input_.eselTaxAccountingBasis);
    if (RunSteps()) {
      Export();
    } else {
      AddHistory("Existem falhas na preparação dos dados", false);
    }
    result_.noJournalTicked = steps_.noJournalTicked;
    return result_;
  }

 private:
  /// Shows why the run does not begin, and goes to the field at fault.
  bool Stop(std::string text, std::string_view field = {}) {
    context_.dialogs.Message(toolkit::Icon::Warning, text);
    if (!field.empty()) context_.dialogs.Focus(field);
    return Refuse(std::move(text));
  }
  bool Refuse(std::string text) {
    result_.error = std::move(text);
    return false;
  }
  bool Confirmed(std::string_view question) {
    return input_.automatico || context_.dialogs.Ask(question, kYesNo) == 0;
  }

  bool CheckInput() {
    const std::optional<InputFault> fault = FaultOf(input_, true);
    return !fault || Stop(std::string(fault->message), fault->field);
  }

  bool PreparePeriod() {
    session::ConnectionPtr company;
    if (!session::AbreConnectionLOCAL_bln(context_, company)) return Refuse(context_.session.gErroDescricao);
    if (!KindIsDefined(*company)) return false;
    std::optional<Replaced> replaced;
    if (!MayReplace(*company, replaced)) return false;
    const auto made = RebuildPeriod(*company, Key(), input_.eselTaxAccountingBasis,
                                    replaced ? replaced->cliente : std::string());
    if (!made) return Stop(std::string(kNoHeaderOfKind));
    if (replaced) LogDeletion(replaced->companyName);
    steps_.period.cliente = toolkit::Trim(*made);
    return true;
  }

  const periods::PeriodKey& Key() const { return steps_.period.key; }

  bool KindIsDefined(data::Connection& company) {
    const data::Recordset rows = company.Query(
        "Select FiscalYear,Cliente,CompanyName from TabHeader With (NoLock) where TaxAccountingBasis=" +
        data::Quoted(Letter(input_.eselTaxAccountingBasis)));
    if (!rows.Eof()) return true;
    std::string text = "Deve primeiro criar um registo nas Definições da Empresa (" +
                       CaptionOf(input_.eselTaxAccountingBasis) + ")";
    return input_.automatico ? Refuse(std::move(text)) : Stop(std::move(text));
  }

  /// What is kept of a period that is there.
  struct Replaced {
    std::string cliente;
    std::string companyName;
  };

  /// False when the period is there and the user wants to keep it.
  bool MayReplace(data::Connection& company, std::optional<Replaced>& replaced) {
    const data::Recordset rows = company.Query(
        "Select FiscalYear,Cliente,CompanyName from TabHeader With (NoLock) Where " + Key().Condition());
    if (rows.Eof()) return true;
    replaced = Replaced{std::string(rows.Text("Cliente")), std::string(rows.Text("CompanyName"))};
    return Confirmed("Período já Configurado.\nSubstituir o existente?");
  }

  void LogDeletion(std::string_view companyName) {
    const std::string text = periods::LogText(Key().fiscalYear, companyName);
    security::InsertLog(context_, {security::module::kTables, security::action::kDelete, text,
                                   security::FormCaption("frmWizard")});
  }

  bool RunSteps() {
    for (const Step& step : AllSteps()) {
      if (!step.Serves(input_.eselTaxAccountingBasis)) continue;
      SetStatus(step.key, StepStatus::Processing);
      const bool done = RunStep(step);
      SetStatus(step.key, done ? StepStatus::Ok : StepStatus::Failed, done ? RowsOf(step) : std::nullopt);
      if (!done) return false;
    }
    return true;
  }

  bool RunStep(const Step& step) {
    try {
      std::optional<periods::Grid> rows = step.load ? step.load(steps_) : periods::Grid();
      return rows && step.save(steps_, *rows);
    } catch (const toolkit::Cancelled& cancelled) {
      return Refuse(cancelled.what());  // the user knows
    } catch (const std::exception& failure) {
      if (!input_.automatico) context_.dialogs.Message(toolkit::Icon::Critical, failure.what());
      return Refuse(failure.what());
    }
  }

  std::optional<std::int64_t> RowsOf(const Step& step) {
    session::ConnectionPtr company;
    if (!session::AbreConnectionLOCAL_bln(context_, company)) return std::nullopt;
    return session::ContaRegistos_lng(*company, step.staged().table, " Where " + Key().Condition());
  }

  void Export() {
    SetStatus(kExportKey, StepStatus::Processing);
    auditfile::ExportOptions options = auditfile::OptionsFor(input_.eselTaxAccountingBasis);
    options.txtPastaExportacao = input_.txtPastaExportacao;
    result_.exported = auditfile::ExportaSaft(context_, options, Key(), "", input_.automatico, screen_);
    result_.ok = result_.exported.ok;
    SetStatus(kExportKey, result_.ok ? StepStatus::Ok : StepStatus::Failed);
    AddHistory(result_.ok ? "Exportação com Sucesso" : "Falha na Exportação", result_.ok);
  }

  /// The run's outcome stands whether its history can be kept or not.
  void AddHistory(std::string_view text, bool ok) {
    try {
      RegistaEnvio(context_, input_.edatStartDate, input_.edatEndDate, "", text, ok);
    } catch (const data::Error& failure) {
      Refuse(failure.what());
    }
  }

  void SetStatus(std::string_view key, StepStatus status, std::optional<std::int64_t> stagedRows = {}) {
    const auto row = std::find_if(result_.steps.begin(), result_.steps.end(),
                                  [&](const StepReport& step) { return step.key == key; });
    row->status = status;
    row->rows = stagedRows;
    if (observer_) observer_(*row);
  }

  const session::Context& context_;
  const WizardInput& input_;
  const WizardObserver& observer_;
  const auditfile::ExportScreen& screen_;
  StepContext steps_;
  WizardResult result_;
};

}  // namespace

std::string_view StatusText(StepStatus status) {
  switch (status) {
    case StepStatus::None:
      return "";
    case StepStatus::Processing:
      return "Processando...";
    case StepStatus::Ok:
      return "OK";
    case StepStatus::Failed:
      return "Falha";
  }
  return "";
}

std::vector<StepReport> StepsFor(Basis basis) {
  std::vector<StepReport> rows;
  for (const Step& step : AllSteps()) {
    if (step.Serves(basis)) rows.push_back({step.key, step.description});
  }
  rows.push_back({kExportKey, kExportDescription});
  return rows;
}

std::optional<toolkit::DateSpan> DatesOf(std::string_view txtAno, std::string_view eselMes) {
  if (toolkit::IsBlank(txtAno) || toolkit::IsBlank(eselMes)) return std::nullopt;
  if (eselMes != "365") return toolkit::GetDataIniFimParaMovs(txtAno, eselMes);
  const std::string ano(txtAno);
  return toolkit::DateSpan{ano + "-01-01", ano + "-12-31"};
}

WizardResult Assistente(const session::Context& context, const WizardInput& input,
                        const WizardObserver& observer, const auditfile::ExportScreen& screen) {
  return WizardRun(context, input, observer, screen).Go();
}

}  // namespace korvel::automation
