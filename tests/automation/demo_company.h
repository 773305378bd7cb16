#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "automation/wizard.h"
#include "demo/demo_company.h"
#include "support/scripted_world.h"

namespace korvel::automation {

/// The demonstration company with a year of books and nothing staged.
class DemoCompany : public test::TestServer {
 public:
  DemoCompany() {
    EXPECT_TRUE(demo::MakeDemoCompany(Context(), {.year = 2025, .lines = 300}));
    dialogs.Clear();
  }

  WizardInput Year() const {
    return {"2025", "2025-01-01", "2025-12-31", periods::Basis::Accounting, target.Path().string(), true, {}};
  }
  WizardResult Run(const WizardInput& input) {
    changes.clear();
    return Assistente(Context(), input, [this](const StepReport& step) {
      changes.push_back(std::string(step.key) + " " + std::string(StatusText(step.status)));
    });
  }
  std::string Value(std::string_view query) { return One(session.gBaseDados, query); }
  void Change(std::string_view script) { TestServer::Run(session.gBaseDados, script); }
  std::vector<std::string> History() {
    return Rows(
        session.gBaseDados,
        "Select DataEnvio,HoraEnvio,DataInicial,DataFinal,Ficheiro,Observa,Status from HistoricoEnvio");
  }
  /// A row staged by hand, which a rebuilt period no longer has.
  void StageByHand() {
    Change(
        "Insert into TabCustomerPOC (FiscalYear,StartDate,EndDate,CustomerID) "
        "values ('2025','2025-01-01','2025-12-31','by hand')");
  }
  bool HandStagedIsThere() {
    return Value("Select count(*) from TabCustomerPOC where CustomerID='by hand'") == "1";
  }

  const test::TempFolder target;
  std::vector<std::string> changes;  // of statuses, in their order
};

}  // namespace korvel::automation
