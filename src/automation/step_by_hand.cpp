#include <algorithm>
#include <array>
#include <string>

#include "automation/wizard_steps.h"
#include "periods/company_connection.h"
#include "periods/period_editor.h"
#include "toolkit/text.h"

namespace korvel::automation {
namespace {

struct Check {
  InputFault fault;
  bool fails;
  bool ofFolder = false;
};

/// The run of a step over a period that is there; nothing, and said, where the input or the period is at fault.
std::optional<StepContext> StepOver(const session::Context& context, const WizardInput& input) {
  if (const std::optional<InputFault> fault = FaultOf(input, false)) {
    context.dialogs.Message(toolkit::Icon::Warning, fault->message);
    context.dialogs.Focus(fault->field);
    return std::nullopt;
  }
  const session::ConnectionPtr company = periods::OpenCompany(context);
  if (!company) return std::nullopt;
  const periods::PeriodKey key{input.txtAno, input.edatStartDate, input.edatEndDate};
  const auto period = periods::FindPeriod(context, *company, key);
  if (!period) {
    context.dialogs.Message(toolkit::Icon::Warning, kNoHeaderOfKind);
    return std::nullopt;
  }
  return StepContext{context, input, {key, std::string(toolkit::Trim(period->cliente))}};
}

}  // namespace

std::optional<InputFault> FaultOf(const WizardInput& input, bool withFolder) {
  using toolkit::IsBlank;
  const std::array checks{
      Check{{"txtAno", "Não definiu o Ano!"}, IsBlank(input.txtAno)},
      Check{{"edatStartDate", "Não definiu a Data Inicial!"}, IsBlank(input.edatStartDate)},
      Check{{"edatEndDate", "Não definiu a Data Final!"}, IsBlank(input.edatEndDate)},
      Check{{"txtPastaExportacao", "Não definiu a Pasta para Exportação!"},
            IsBlank(input.txtPastaExportacao),
            true},
      Check{{"edatEndDate", "As Datas não estão bem definidas!"}, input.edatEndDate < input.edatStartDate},
  };
  const auto found = std::find_if(checks.begin(), checks.end(), [&](const Check& check) {
    return check.fails && (withFolder || !check.ofFolder);
  });
  return found == checks.end() ? std::nullopt : std::optional(found->fault);
}

std::optional<periods::Grid> CarregarPasso(const session::Context& context, const WizardInput& input,
                                           const Step& step) {
  auto run = StepOver(context, input);
  if (!run) return std::nullopt;
  return step.load ? step.load(*run) : periods::Grid();
}

bool GravarPasso(const session::Context& context, const WizardInput& input, const Step& step,
                 const periods::Grid& rows) {
  auto run = StepOver(context, input);
  return run && step.save(*run, rows);
}

std::optional<periods::Grid> LerPasso(const session::Context& context, const WizardInput& input,
                                      const Step& step) {
  const auto run = StepOver(context, input);
  if (!run) return std::nullopt;
  const session::ConnectionPtr company = periods::OpenCompany(context);
  if (!company) return std::nullopt;
  return periods::LoadStaged(context, *company, step.staged(), run->period.key);
}

bool VerPasso(const session::Context& context, const WizardInput& input, const Step& step,
              const StagedRowSink& sink) {
  auto run = StepOver(context, input);
  return run && step.review && step.review(*run, sink);
}

}  // namespace korvel::automation
