#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "automation/demo_company.h"
#include "automation/wizard_steps.h"
#include "databases/config_upgrade.h"
#include "databases/version.h"

namespace korvel::automation {
namespace {

namespace fs = std::filesystem;
using periods::Basis;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> Keys(Basis basis) {
  std::vector<std::string> keys;
  for (const StepReport& step : StepsFor(basis)) keys.emplace_back(step.key);
  return keys;
}

TEST(Wizard, StepsByBasis) {
  EXPECT_THAT(Keys(Basis::Accounting), ElementsAre("C_Contas", "C_Clientes", "C_Fornecedores", "C_Impostos",
                                                   "C_Movimentos", "Exporta"));
  EXPECT_THAT(Keys(Basis::Billing),
              ElementsAre("G_Clientes", "G_Produtos", "G_Impostos", "G_Movimentos", "Exporta"));
  EXPECT_THAT(Keys(Basis::Integrated), ElementsAre("C_Contas", "C_Fornecedores", "C_Movimentos", "G_Clientes",
                                                   "G_Produtos", "G_Impostos", "G_Movimentos", "Exporta"));
}

TEST(Wizard, DatesOfAMonth) {
  const struct {
    std::string_view month, first, last;
  } cases[] = {{"02", "2024-02-01", "2024-02-29"},
               {"12", "2024-12-01", "2024-12-31"},
               {"365", "2024-01-01", "2024-12-31"}};
  for (const auto& [month, first, last] : cases) {
    const auto dates = DatesOf("2024", month);
    ASSERT_TRUE(dates) << month;
    EXPECT_EQ(dates->first, first);
    EXPECT_EQ(dates->last, last);
  }
  EXPECT_FALSE(DatesOf("2024", "13"));
  EXPECT_FALSE(DatesOf("", "365"));
  EXPECT_FALSE(DatesOf("2024", ""));
}

TEST(Wizard, ChecksStopBeforeAnythingHappens) {
  DemoCompany company;
  company.StageByHand();
  const struct {
    std::string WizardInput::*field;
    std::string value, message, focus;
  } cases[] = {
      {&WizardInput::txtAno, " ", "Não definiu o Ano!", "txtAno"},
      {&WizardInput::edatStartDate, "", "Não definiu a Data Inicial!", "edatStartDate"},
      {&WizardInput::edatEndDate, "", "Não definiu a Data Final!", "edatEndDate"},
      {&WizardInput::txtPastaExportacao, " ", "Não definiu a Pasta para Exportação!", "txtPastaExportacao"},
      {&WizardInput::edatEndDate, "2024-12-31", "As Datas não estão bem definidas!", "edatEndDate"},
  };
  for (const auto& [field, value, message, focus] : cases) {
    WizardInput input = company.Year();
    input.*field = value;
    const WizardResult result = company.Run(input);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error, message);
    EXPECT_EQ(company.dialogs.LastText(), message);
    EXPECT_EQ(company.dialogs.LastFocus(), focus);
  }
  EXPECT_TRUE(company.HandStagedIsThere());
  EXPECT_THAT(company.History(), testing::IsEmpty());
}

TEST(Wizard, ARefusedQuestionOrNoHeaderOfTheKindChangesNothing) {
  DemoCompany company;
  company.StageByHand();
  WizardInput input = company.Year();
  input.automatico = false;
  company.dialogs.answers = {1};
  EXPECT_FALSE(company.Run(input).ok);
  company.dialogs.answers = {0, 1};
  EXPECT_FALSE(company.Run(input).ok);
  ASSERT_EQ(company.dialogs.questions.size(), 3u);
  EXPECT_EQ(company.dialogs.questions[1].text, "Confirma o Processamento?");
  EXPECT_EQ(company.dialogs.questions[2].text, "Período já Configurado.\nSubstituir o existente?");
  EXPECT_THAT(company.dialogs.questions[2].buttons, ElementsAre("&Sim", "&Não"));

  company.Change("Update TabHeader set TaxAccountingBasis='F'");
  const std::string text = "Deve primeiro criar um registo nas Definições da Empresa (Contabilidade)";
  EXPECT_EQ(company.Run(company.Year()).error, text);
  EXPECT_TRUE(company.dialogs.messages.empty()) << "an automatic run shows nothing here";
  company.dialogs.answers = {0};
  EXPECT_FALSE(company.Run(input).ok);
  EXPECT_EQ(company.dialogs.LastText(), text);
  EXPECT_TRUE(company.HandStagedIsThere());
  EXPECT_THAT(company.History(), testing::IsEmpty());
}

/// What an observer is told of a run without faults.
std::vector<std::string> GoodCourse(Basis basis) {
  std::vector<std::string> course;
  for (const std::string& key : Keys(basis)) {
    course.push_back(key + " Processando...");
    course.push_back(key + " OK");
  }
  return course;
}

TEST(Wizard, AYearFromSourcesToFile) {
  DemoCompany company;
  company.Change("Update TabHeader set ProductVersion='0.0.1'");
  const struct {
    Basis basis;
    std::string_view ending;
    std::vector<std::string_view> sections;
  } cases[] = {
      {Basis::Accounting, "_Saft_Contabilidade.XML", {"<GeneralLedgerEntries><NumberOfEntries>"}},
      {Basis::Billing, "_Saft_Facturação.XML", {"<SourceDocuments><SalesInvoices>"}},
      {Basis::Integrated,
       "_Saft_Integrado.XML",
       {"<GeneralLedgerEntries><NumberOfEntries>", "<SourceDocuments><SalesInvoices>"}},
  };
  for (const auto& [basis, ending, sections] : cases) {
    company.StageByHand();
    WizardInput input = company.Year();
    input.eselTaxAccountingBasis = basis;
    input.automatico = false;
    company.dialogs.answers = {0, 0};
    const WizardResult result = company.Run(input);
    ASSERT_TRUE(result.ok) << ending << result.error << result.exported.error << company.dialogs.LastText();
    EXPECT_EQ(company.changes, GoodCourse(basis));
    for (const StepReport& step : result.steps) {
      EXPECT_EQ(step.rows.value_or(0) > 0, step.key != "Exporta") << step.key;
    }
    EXPECT_FALSE(company.HandStagedIsThere());
    EXPECT_THAT(
        company.Rows(company.session.gBaseDados,
                     "Select TaxAccountingBasis,ProductVersion from TabHeader where StartDate='2025-01-01'"),
        ElementsAre(std::string(1, static_cast<char>(basis)) + "\t" +
                    std::string(databases::ProgramVersion())));
    ASSERT_EQ(result.exported.files.size(), 1u);
    EXPECT_THAT(result.exported.files[0], testing::EndsWith(ending));
    const std::string xml = test::ReadFile(result.exported.files[0]);
    for (const std::string_view section : sections) EXPECT_THAT(xml, HasSubstr(section));
    EXPECT_THAT(company.dialogs.LastText(), HasSubstr(result.exported.files[0]));
    EXPECT_EQ(company.History().back(),
              "2026-01-15\t10:30\t2025-01-01\t2025-12-31\t\tExportação com Sucesso\tOK");
  }
}

TEST(Wizard, AnotherPeriodTakesTheLastHeaderOfItsKindAndIsLoggedWhenReplaced) {
  DemoCompany company;
  ASSERT_TRUE(databases::EnsureConfigDatabase(company.Context()));
  company.StageByHand();
  company.Change(
      "Update TabHeader set CompanyName='Padaria D''Avila',HeaderComment='of the books' "
      "where TaxAccountingBasis='C'");
  const auto deletions = [&] {
    return company.Rows("KorvelConfig",
                        "select Modulo,Accao,FormCaption,Conteudo from LogGeral where Accao='E'");
  };
  WizardInput input = company.Year();
  input.edatStartDate = "2025-03-01";
  input.edatEndDate = "2025-03-31";
  ASSERT_TRUE(company.Run(input).ok);
  EXPECT_TRUE(company.HandStagedIsThere()) << "another period's";
  EXPECT_EQ(company.Value("Select HeaderComment from TabHeader where StartDate='2025-03-01' and "
                          "EndDate='2025-03-31' and FiscalYear='2025'"),
            "of the books");
  EXPECT_THAT(deletions(), testing::IsEmpty()) << "a new period";
  ASSERT_TRUE(company.Run(input).ok);
  EXPECT_THAT(deletions(), ElementsAre("TB\tE\tEnvio de SAF-T em Modo Sequencial\t2025 - Padaria D'Avila"));
  EXPECT_TRUE(company.dialogs.messages.empty());
}

TEST(Wizard, AFailedStepEndsTheRunAndKeepsTheStagedRows) {
  DemoCompany company;
  company.TestServer::Run(std::string(demo::kLunderDatabase), "drop table TaxasIva");
  const WizardResult result = company.Run(company.Year());
  EXPECT_FALSE(result.ok);
  EXPECT_EQ(company.changes.back(), "C_Impostos Falha");
  EXPECT_EQ(result.steps.back().status, StepStatus::None);
  EXPECT_NE(company.Value("Select count(*) from TabSupplierPOC"), "0");
  EXPECT_THAT(
      company.History(),
      ElementsAre(
          "2026-01-15\t10:30\t2025-01-01\t2025-12-31\t\tExistem falhas na preparação dos dados\tNULL"));
  EXPECT_TRUE(fs::is_empty(company.target.Path()));
}

TEST(Wizard, AFailedExportIsTold) {
  DemoCompany company;
  WizardInput input = company.Year();
  input.txtPastaExportacao = (company.target / "none").string();
  const WizardResult result = company.Run(input);
  EXPECT_FALSE(result.ok);
  EXPECT_EQ(company.changes.back(), "Exporta Falha");
  EXPECT_THAT(result.exported.error, HasSubstr("a pasta não existe"));
  EXPECT_THAT(company.History(), ElementsAre(HasSubstr("Falha na Exportação\tNULL")));
}

TEST(Wizard, ARebuildThatFailsLeavesThePeriodWhole) {
  DemoCompany company;
  company.StageByHand();
  company.Change("drop table TabTaxTablePOC");  // the last one to be cleared
  EXPECT_THROW(company.Run(company.Year()), data::Error);
  EXPECT_TRUE(company.HandStagedIsThere());
  EXPECT_EQ(company.Value("Select FiscalYear from TabHeader where StartDate='2025-01-01'"), "2025");
  EXPECT_THAT(company.History(), testing::IsEmpty());
}

TEST(Wizard, BalancesWithoutJournalsAreWarnedOf) {
  DemoCompany company;
  EXPECT_FALSE(company.Run(company.Year()).noJournalTicked);
  const std::string balances =
      "Select count(*) from TabGeneralLedger where OpeningDebitBalance<>0 or OpeningCreditBalance<>0";
  EXPECT_NE(company.Value(balances), "0");
  company.Change("Update ParamGeral set Header_ApenasDiarioSI='N'");
  const WizardResult result = company.Run(company.Year());
  EXPECT_TRUE(result.ok);
  EXPECT_TRUE(result.noJournalTicked);
  EXPECT_EQ(company.Value(balances), "0");
  WizardInput all = company.Year();
  all.contas = periods::LunderChoice{"1", "8", {}, true};
  EXPECT_FALSE(company.Run(all).noJournalTicked);
  EXPECT_NE(company.Value(balances), "0");
}

TEST(Wizard, ACancelledStepIsRolledBackWhole) {
  DemoCompany company;
  for (const int shown : {0, 1, 3}) {
    company.progress.cancelAfter = company.progress.shown + shown;
    WizardInput input = company.Year();
    input.automatico = false;
    company.dialogs.answers = {0, 0};
    const WizardResult result = company.Run(input);
    EXPECT_FALSE(result.ok) << shown;
    EXPECT_THAT(company.dialogs.messages, testing::IsEmpty()) << "whoever cancels knows";
    for (const StepReport& step : result.steps) {
      if (step.key == kExportKey) continue;
      const std::string rows =
          company.Value("Select count(*) from " + std::string(FindStep(step.key)->staged().table));
      EXPECT_EQ(rows != "0", step.status == StepStatus::Ok) << step.key << ' ' << shown;
    }
  }
}

TEST(Wizard, AStepByHandStagesThePeriodThatIsThereAndNoOther) {
  DemoCompany company;
  const WizardInput input = company.Year();
  for (const std::string_view key : {"C_Contas", "C_Movimentos"}) {
    const Step& step = *FindStep(key);
    const auto rows = CarregarPasso(company.Context(), input, step);
    ASSERT_TRUE(rows) << key;
    EXPECT_TRUE(GravarPasso(company.Context(), input, step, *rows)) << key;
    EXPECT_NE(company.Value("Select count(*) from " + std::string(step.staged().table)), "0") << key;
  }
  const auto staged = LerPasso(company.Context(), input, *FindStep("C_Contas"));
  ASSERT_TRUE(staged);
  EXPECT_EQ(std::to_string(staged->size()), company.Value("Select count(*) from TabGeneralLedger"));
  std::size_t lines = 0;
  EXPECT_TRUE(VerPasso(company.Context(), input, *FindStep("C_Movimentos"),
                       [&](const periods::GridRow&) { ++lines; }));
  EXPECT_EQ(std::to_string(lines), company.Value("Select count(*) from TabGeneralLedgerEntriesPOC"));
  EXPECT_EQ(FindStep(kExportKey), nullptr);

  WizardInput another = input;
  another.edatStartDate = "2025-02-01";
  EXPECT_FALSE(CarregarPasso(company.Context(), another, *FindStep("C_Contas")));
  EXPECT_EQ(company.dialogs.LastText(), kNoHeaderOfKind);
  another.edatEndDate = "2024-12-31";
  EXPECT_FALSE(GravarPasso(company.Context(), another, *FindStep("C_Contas"), {}));
  EXPECT_EQ(company.dialogs.LastText(), "As Datas não estão bem definidas!");
  EXPECT_EQ(company.dialogs.LastFocus(), "edatEndDate");
}

}  // namespace
}  // namespace korvel::automation
