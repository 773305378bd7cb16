#include "automation/automatic_sending.h"

#include <fmt/format.h>

#include "automation/sending_history.h"
#include "session/connections.h"
#include "session/lookups.h"
#include "toolkit/text.h"

namespace korvel::automation {
namespace {

constexpr std::string_view kMonthly = "Mes";
constexpr std::string_view kYearly = "Ano";
constexpr std::string_view kCurrent = "P";
constexpr std::string_view kPrevious = "P-1";

std::string Setting(data::Connection& company, std::string_view column) {
  return std::string(toolkit::Trim(session::LerCampoTabela(company, "ParamGeral", column)));
}

toolkit::DateSpan YearOf(int year) {
  return {fmt::format("{:04}-01-01", year), fmt::format("{:04}-12-31", year)};
}

std::optional<toolkit::DateSpan> MonthOf(int year, int month) {
  return toolkit::GetDataIniFimParaMovs(fmt::format("{:04}", year), fmt::format("{:02}", month));
}

}  // namespace

SendingSettings ReadSendingSettings(data::Connection& company) {
  return {Setting(company, "PeriodicidadeEnvio"), Setting(company, "PeriodoDados")};
}

bool GravarEnvioAutomatico(data::Connection& company, const SendingSettings& settings) {
  return company.Execute("Update ParamGeral set PeriodicidadeEnvio=?,PeriodoDados=?",
                         {settings.PeriodicidadeEnvio, settings.PeriodoDados}) > 0;
}

std::optional<toolkit::DateSpan> DueDates(const SendingSettings& settings, const data::DateTime& today) {
  const bool previous = settings.PeriodoDados == kPrevious;
  if (!previous && settings.PeriodoDados != kCurrent) return std::nullopt;
  if (settings.PeriodicidadeEnvio == kYearly) return YearOf(previous ? today.year - 1 : today.year);
  if (settings.PeriodicidadeEnvio != kMonthly) return std::nullopt;
  if (!previous) return MonthOf(today.year, today.month);
  return today.month == 1 ? MonthOf(today.year - 1, 12) : MonthOf(today.year, today.month - 1);
}

SendingRun ExecutarEnvio(const session::Context& context, const data::DateTime& today, WizardInput input,
                         const WizardObserver& observer) {
  SendingRun run;
  session::ConnectionPtr company;
  if (!session::AbreConnectionLOCAL_bln(context, company)) {
    run.wizard.error = context.session.gErroDescricao;
    return run;
  }
  run.dates = DueDates(ReadSendingSettings(*company), today);
  run.alreadySent = run.dates && WasSent(*company, *run.dates);
  company.reset();
  if (!run.dates || run.alreadySent) return run;
  input.txtAno = run.dates->first.substr(0, 4);
  input.edatStartDate = run.dates->first;
  input.edatEndDate = run.dates->last;
  input.automatico = true;
  run.wizard = Assistente(context, input, observer);
  return run;
}

}  // namespace korvel::automation
