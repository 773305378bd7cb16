#pragma once

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

/// One section of the file to be staged. `load` reads the source, `save` stages what it gave; each false or empty when it
/// failed, which it has shown. A step without `load` reads and stages in one go.
struct Step {
  std::string_view key;
  std::string_view description;
  std::string_view bases;  // letters of the kinds of system that have it
  std::string_view table;  // where its rows are staged
  std::optional<periods::Grid> (*load)(StepContext& run) = nullptr;
  bool (*save)(StepContext& run, const periods::Grid& rows) = nullptr;

  bool Serves(periods::Basis basis) const {
    return bases.find(static_cast<char>(basis)) != std::string_view::npos;
  }
};

/// All steps, in the order that every kind keeps.
std::span<const Step> AllSteps();

inline constexpr std::string_view kExportKey = "Exporta";
inline constexpr std::string_view kExportDescription = "- Exportação de Ficheiros SAF-T";

}  // namespace korvel::automation
