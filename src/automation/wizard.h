#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "auditfile/export_run.h"
#include "periods/filters.h"
#include "periods/period.h"
#include "session/context.h"
#include "toolkit/dates.h"

namespace korvel::automation {

struct WizardInput {
  std::string txtAno;         // four digits
  std::string edatStartDate;  // YYYY-MM-DD
  std::string edatEndDate;    // YYYY-MM-DD
  periods::Basis eselTaxAccountingBasis = periods::Basis::Billing;
  std::string txtPastaExportacao;
  /// No questions and no boxes of the wizard's own.
  bool automatico = false;
  /// Account range and journals of the opening balances; nothing: as the parameters of the company say.
  std::optional<periods::LunderChoice> contas;
};

/// The months and the year, as an option list text.
inline constexpr std::string_view kMesesList =
    "01:Janeiro;02:Fevereiro;03:Março;04:Abril;05:Maio;06:Junho;07:Julho;08:Agosto;09:Setembro;10:Outubro;"
    "11:Novembro;12:Dezembro;365:Anual;";

enum class StepStatus { None, Processing, Ok, Failed };
/// "", "Processando...", "OK", "Falha".
std::string_view StatusText(StepStatus status);

/// One row of the list of steps.
struct StepReport {
  std::string_view key;          // "C_Contas" ... "Exporta"
  std::string_view description;  // "- Plano Oficial de Contas" ...
  StepStatus status = StepStatus::None;
  std::optional<std::int64_t> rows = {};  // how many it staged, once it is done; the export stages none
};

struct WizardResult {
  /// The file was written.
  bool ok = false;
  /// Empty when the run stopped at a check or a question, before the first step.
  std::vector<StepReport> steps;
  auditfile::ExportResult exported;
  /// Why it stopped where `exported` does not say it; the boxes have told it too, unless the run is automatic.
  std::string error;
  /// The opening balances are all zero because the parameters of the company choose no journal.
  bool noJournalTicked = false;
};

/// Told a row of the list whenever its status changes.
using WizardObserver = std::function<void(const StepReport&)>;

/// The steps of a basis in their order, the export last, without status.
std::vector<StepReport> StepsFor(periods::Basis basis);

/// The dates of a month ("01" to "12") or of the year ("365"); nothing for anything else.
std::optional<toolkit::DateSpan> DatesOf(std::string_view txtAno, std::string_view eselMes);

/// Makes the period anew, stages every section of its basis and exports the file. The period's earlier rows
/// and its header are replaced in one transaction; then each step is a transaction of its own. A failed step
/// ends the run and keeps what was staged before it. Every run that got as far as the steps leaves a row in
/// `HistoricoEnvio`. Throws data::Error when the company database fails before the steps; nothing has changed then.
WizardResult Assistente(const session::Context& context, const WizardInput& input,
                        const WizardObserver& observer = {}, const auditfile::ExportScreen& screen = {});

}  // namespace korvel::automation
