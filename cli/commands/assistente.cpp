#include "automation/wizard.h"
#include "cli/basis_option.h"
#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/journal_option.h"
#include "cli/period_options.h"
#include "cli/wizard_report.h"
#include "cli/written_files.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

std::string BlankOrDate(const std::string& text) {
  return toolkit::IsBlank(text) ? std::string() : DateArgument(text);
}

class Assistente final : public Command {
 public:
  std::string_view Path() const override { return "assistente"; }
  std::string_view Summary() const override {
    return "Prepara um período de uma vez e escreve o ficheiro de auditoria";
  }
  NeededRight Needs() const override { return {"frmWizard", "cmdGravar", true}; }

  void Declare(CLI::App& app) override {
    app.add_option("--ano", input_.txtAno, "Ano fiscal")->required()->type_name("ANO");
    month_ = app.add_option("--mes", monthText_, "Mês, 01 a 12, ou 365 para o ano inteiro")->type_name("MM");
    start_ = app.add_option("--inicio", input_.edatStartDate, "Primeiro dia")->type_name("AAAA-MM-DD");
    end_ = app.add_option("--fim", input_.edatEndDate, "Último dia")->type_name("AAAA-MM-DD");
    start_->excludes(month_);
    end_->excludes(month_);
    basis_.Declare(app);
    app.add_option("--pasta", input_.txtPastaExportacao, "Pasta para a exportação")
        ->required()
        ->type_name("PASTA");
    journals_.Declare(app);
  }

  bool Run(Workspace& workspace) override {
    TakeDates();
    input_.eselTaxAccountingBasis = basis_.Get();
    input_.automatico = true;
    if (!toolkit::IsBlank(input_.txtPastaExportacao)) RequireFolder(input_.txtPastaExportacao, {});
    workspace.EnterCompany();
    input_.contas = journals_.Choice(workspace);
    const auto result = automation::Assistente(workspace.Context(), input_, StepPrinter(workspace));
    TellOutcome(workspace, result);
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

  automation::WizardInput input_;
  std::string monthText_;
  BasisOption basis_;
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
