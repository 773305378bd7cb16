#include "automation/automatic_sending.h"

#include <gmock/gmock.h>

#include "automation/demo_company.h"
#include "automation/sending_history.h"

namespace korvel::automation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(AutomaticSending, DatesThatAreDue) {
  const struct {
    std::string often, which, today;
    std::string due;  // "first last", empty for none
  } cases[] = {
      {"Mes", "P-1", "2025-03-31", "2025-02-01 2025-02-28"},
      {"Mes", "P-1", "2024-03-01", "2024-02-01 2024-02-29"},
      {"Mes", "P-1", "2025-01-01", "2024-12-01 2024-12-31"},
      {"Mes", "P", "2025-04-30", "2025-04-01 2025-04-30"},
      {"Ano", "P-1", "2025-12-31", "2024-01-01 2024-12-31"},
      {"Ano", "P", "2025-01-01", "2025-01-01 2025-12-31"},
      {"", "P", "2025-01-01", ""},
      {"Mes", "", "2025-01-01", ""},
      {"Semana", "P", "2025-01-01", ""},
  };
  for (const auto& [often, which, today, due] : cases) {
    const auto dates = DueDates({often, which}, *data::DateTime::FromText(today));
    EXPECT_EQ(dates ? dates->first + " " + dates->last : "", due) << often << " " << which << " " << today;
  }
}

/// The demonstration company, with a day on which January is due.
class SendingCompany : public DemoCompany {
 public:
  void Define(const SendingSettings& wanted) {
    const auto company = Open(session.gBaseDados);
    EXPECT_TRUE(GravarEnvioAutomatico(*company, wanted));
  }
  SendingRun Execute() { return Execute(Year()); }
  SendingRun Execute(const WizardInput& input) {
    return ExecutarEnvio(Context(), *data::DateTime::FromText("2025-02-10"), input);
  }
};

TEST(AutomaticSending, RunsOnceForTheDatesThatAreDue) {
  SendingCompany company;
  EXPECT_FALSE(company.Execute().dates) << "a company that wants nothing";
  EXPECT_THAT(company.History(), testing::IsEmpty());

  company.Define({"Mes", "P-1"});
  const SendingRun first = company.Execute();
  ASSERT_TRUE(first.wizard.ok) << first.wizard.error << first.wizard.exported.error;
  EXPECT_THAT(first.wizard.exported.files, ElementsAre(HasSubstr("_2025_2025-01-01_2025-01-31_")));
  const SendingRun second = company.Execute();
  EXPECT_TRUE(second.alreadySent);
  EXPECT_THAT(second.wizard.steps, testing::IsEmpty());
  EXPECT_EQ(company.History().size(), 1u);
}

TEST(AutomaticSending, AFailedRunIsTriedAgain) {
  SendingCompany company;
  company.Define({"Mes", "P-1"});
  WizardInput nowhere = company.Year();
  nowhere.txtPastaExportacao += "/none";
  EXPECT_FALSE(company.Execute(nowhere).wizard.ok);
  EXPECT_TRUE(company.Execute().wizard.ok);
  const auto runs = ReadHistory(*company.Open(company.session.gBaseDados));
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_TRUE(runs[0].ok) << "the newest comes first";
  EXPECT_EQ(runs[1].observa, "Falha na Exportação");
}

TEST(AutomaticSending, SettingsNeedTheRowOfParameters) {
  test::TestServer server;
  server.UseCompany("0009");
  server.Run(server.session.gBaseDados,
             "create table ParamGeral (NumRegisto int identity,PeriodicidadeEnvio varchar(10),PeriodoDados "
             "varchar(10))");
  EXPECT_FALSE(GravarEnvioAutomatico(*server.Open(server.session.gBaseDados), {"Ano", "P"}));
}

}  // namespace
}  // namespace korvel::automation
