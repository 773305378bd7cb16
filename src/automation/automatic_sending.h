#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "automation/wizard.h"
#include "data/connection.h"
#include "toolkit/dates.h"

/// The automatic export: what a company wants, and the rule that a daily timer runs by.
namespace korvel::automation {

/// Choices of the two settings, as option list texts; the empty key means no automatic export.
inline constexpr std::string_view kPeriodicidadeList = ":Sem Efeito;Mes:Mensal;Ano:Anual;";
inline constexpr std::string_view kPeriodoDadosList =
    ":Sem Efeito;P-1:Referente ao Periodo anterior;P:Referente ao Periodo actual;";

/// Two columns of `ParamGeral`, members named after them: keys of the lists above.
struct SendingSettings {
  std::string PeriodicidadeEnvio;
  std::string PeriodoDados;
};

/// Empty keys where the company has no parameters yet. Throws data::Error.
SendingSettings ReadSendingSettings(data::Connection& company);
/// False when the company has no row of parameters to keep them in. Throws data::Error; nothing has changed then.
bool GravarEnvioAutomatico(data::Connection& company, const SendingSettings& settings);

/// The dates that are due on a day: the current or the previous month or year. Nothing without effect.
std::optional<toolkit::DateSpan> DueDates(const SendingSettings& settings, const data::DateTime& today);

/// What the rule comes to on a day.
struct SendingRun {
  std::optional<toolkit::DateSpan> dates;  // nothing: the settings are without effect
  bool alreadySent = false;                // the history has these dates with status "OK": nothing was done
  WizardResult wizard;
};

/// Runs the wizard unattended for the dates that are due, unless they were sent already. Of `input` the kind, the
/// folder and the accounts count. Throws as Assistente.
SendingRun ExecutarEnvio(const session::Context& context, const data::DateTime& today, WizardInput input,
                         const WizardObserver& observer = {});

}  // namespace korvel::automation
