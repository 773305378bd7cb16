#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "automation/wizard.h"
#include "billing/billing_period.h"
#include "periods/staging.h"

namespace korvel::automation {

/// What the steps of a run share.
struct StepContext {
  const session::Context& context;
  const WizardInput& input;
  billing::BillingPeriod period;
  /// Set by the step that reads the balances.
  bool noJournalTicked = false;
};

/// Takes the next staged row, in the columns of the step's grid.
using StagedRowSink = std::function<void(const periods::GridRow&)>;

/// One section of the file to be staged. `load` reads the source, `save` stages what it gave; each false or empty when it
/// failed, which it has shown. A step without `load` reads and stages in one go, and `review` hands over what it staged,
/// one row at a time and without a question: there may be a million of them.
struct Step {
  std::string_view key;
  std::string_view description;
  std::string_view bases;                   // letters of the kinds of system that have it
  const periods::StagedTable& (*staged)();  // its grid, and where its rows are staged
  std::optional<periods::Grid> (*load)(StepContext& run) = nullptr;
  bool (*save)(StepContext& run, const periods::Grid& rows) = nullptr;
  bool (*review)(StepContext& run, const StagedRowSink& sink) = nullptr;

  bool Serves(periods::Basis basis) const {
    return bases.find(static_cast<char>(basis)) != std::string_view::npos;
  }
};

/// All steps, in the order that every kind keeps.
std::span<const Step> AllSteps();

/// Null for a key that no step has.
const Step* FindStep(std::string_view key);

/// What is wrong with the dates of an input: the field at fault and what is said. Nothing when they are right. The
/// folder counts too where `withFolder` says so.
struct InputFault {
  std::string_view field;
  std::string_view message;
};
std::optional<InputFault> FaultOf(const WizardInput& input, bool withFolder);

/// A step by hand, over the period that the dates of `input` name: the refusals of dates are those of a run, and the
/// period must be there. Nothing, or false, when it was not done, which has been shown. Throws data::Error.
std::optional<periods::Grid> CarregarPasso(const session::Context& context, const WizardInput& input,
                                           const Step& step);
bool GravarPasso(const session::Context& context, const WizardInput& input, const Step& step,
                 const periods::Grid& rows);
/// What a step has staged: of one with `load` all at once, of one without row by row.
std::optional<periods::Grid> LerPasso(const session::Context& context, const WizardInput& input,
                                      const Step& step);
bool VerPasso(const session::Context& context, const WizardInput& input, const Step& step,
              const StagedRowSink& sink);

inline constexpr std::string_view kNoHeaderOfKind = "Não tem os dados da Empresa definidos (Header)!";
inline constexpr std::string_view kExportKey = "Exporta";
inline constexpr std::string_view kExportDescription = "- Exportação de Ficheiros SAF-T";

}  // namespace korvel::automation
