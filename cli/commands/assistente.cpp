#include <fmt/format.h>

#include <ostream>

#include "automation/wizard.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/journal_option.h"
#include "cli/period_options.h"
#include "cli/written_files.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

using automation::StepReport;
using automation::StepStatus;

periods::Basis BasisOf(const std::string& text) {
  const std::string letter = toolkit::Upper(toolkit::Trim(text));
  if (letter.empty()) throw Refusal("Deve primeiro criar um registo nas Definições da Empresa ()");
  if (letter != "C" && letter != "F" && letter != "I") {
    throw UsageError(fmt::format("A opção --base aceita C, F ou I, não \"{}\".", text));
  }
  return static_cast<periods::Basis>(letter.front());
}

std::string BlankOrDate(const std::string& text) {
  return toolkit::IsBlank(text) ? std::string() : DateArgument(text);
}

class Assistente final : public Command {
 public:
  std::string_view Path() const override { return "assistente"; }
  std::string_view Summary() const override {
    return "Prepara um período de uma vez e escreve o ficheiro de auditoria";
  }

  void Declare(CLI::App& app) override {
    app.add_option("--ano", input_.txtAno, "Ano fiscal")->required()->type_name("ANO");
    month_ = app.add_option("--mes", monthText_, "Mês, 01 a 12, ou 365 para o ano inteiro")->type_name("MM");
    start_ = app.add_option("--inicio", input_.edatStartDate, "Primeiro dia")->type_name("AAAA-MM-DD");
    end_ = app.add_option("--fim", input_.edatEndDate, "Último dia")->type_name("AAAA-MM-DD");
    start_->excludes(month_);
    end_->excludes(month_);
    app.add_option("--base", basis_, "C contabilidade, F facturação, I integrados")
        ->required()
        ->type_name("C|F|I");
    app.add_option("--pasta", input_.txtPastaExportacao, "Pasta para a exportação")
        ->required()
        ->type_name("PASTA");
    journals_.Declare(app);
  }

  bool Run(Workspace& workspace) override {
    TakeDates();
    input_.eselTaxAccountingBasis = BasisOf(basis_);
    input_.automatico = true;
    if (!toolkit::IsBlank(input_.txtPastaExportacao)) RequireFolder(input_.txtPastaExportacao, {});
    workspace.EnterCompany();
    input_.contas = journals_.Choice(workspace);
    const auto result = automation::Assistente(workspace.Context(), input_,
                                               [&](const StepReport& step) { Report(workspace, step); });
    Tell(workspace, result);
    return result.ok;
  }

 private:
  /// As choosing a month fills the form's dates.
  void TakeDates() {
    if (month_->count() + start_->count() + end_->count() == 0) {
      throw UsageError("Falta a opção --mes, ou --inicio e --fim.");
    }
    input_.edatStartDate = BlankOrDate(input_.edatStartDate);
    input_.edatEndDate = BlankOrDate(input_.edatEndDate);
    if (monthText_.size() == 1) monthText_.insert(0, "0");
    const auto dates = automation::DatesOf(input_.txtAno, monthText_);
    if (month_->count() == 0 || !dates) return;
    input_.edatStartDate = dates->first;
    input_.edatEndDate = dates->last;
  }

  static void Report(Workspace& workspace, const StepReport& step) {
    if (step.status == StepStatus::Processing) return;
    workspace.Out() << fmt::format("{:<45}{}\n", step.description, automation::StatusText(step.status))
                    << std::flush;
  }

  void Tell(Workspace& workspace, const automation::WizardResult& result) const {
    if (result.noJournalTicked) workspace.Dialogs().SayReason(kNoJournalWarning);
    if (result.ok) ListSections(workspace, {input_.txtAno, input_.edatStartDate, input_.edatEndDate});
    ListFiles(workspace.Out(), result.exported.files, workspace.Context().session.Marks());
    if (result.ok) return;
    workspace.Dialogs().SayReason(result.error.empty() ? result.exported.error : result.error);
  }

  /// How many rows each section of the file came to.
  static void ListSections(Workspace& workspace, const periods::PeriodKey& period) {
    const auto company = workspace.OpenCompany();
    for (const auditfile::SectionCount& section : auditfile::CountSections(*company, period)) {
      if (section.rows > 0) workspace.Out() << fmt::format("{:>9}  {}\n", section.rows, section.caption);
    }
  }

  automation::WizardInput input_;
  std::string monthText_;
  std::string basis_;
  JournalOption journals_;
  CLI::Option* month_ = nullptr;
  CLI::Option* start_ = nullptr;
  CLI::Option* end_ = nullptr;
};

}  // namespace

std::unique_ptr<Command> MakeAssistente() {
  return std::make_unique<Assistente>();
}

}  // namespace korvel::cli
