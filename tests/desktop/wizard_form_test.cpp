#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QStackedWidget>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "automation/automatic_sending.h"
#include "desktop/desktop_world.h"
#include "forms/automation/frm_envio_automatico.h"
#include "forms/automation/frm_wizard.h"
#include "gateways/text.h"
#include "toolkit/list_rows.h"
#include "widgets/grid_view.h"

namespace korvel::desktop {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

/// The wizard in the demonstration company, for the year 2025.
class WizardForm : public testing::Test {
 protected:
  WizardForm() {
    world.MakeCompany();
    Open();
  }

  void Open() {
    form = std::make_unique<frmWizard>(world.desk);
    ASSERT_TRUE(form->Load());
    form->openPath = [this](const std::string& path) { opened.push_back(path); };
    form->show();
  }
  void FillIn(std::string_view basis, std::string_view month = "365") {
    Find<QLineEdit>(*form, "txtAno").setText("2025");
    Find<SelOpta>(*form, "eselMes").setCurrentIndex(-1);
    Find<SelOpta>(*form, "eselMes").SetChave(month);
    Find<SelOpta>(*form, "eselTaxAccountingBasis").SetChave(basis);
    Find<QLineEdit>(*form, "txtPastaExportacao").setText(ToQt(target.Path().string()));
  }
  /// The run with both questions answered and the file's box closed.
  void RunWhole(std::string_view basis) {
    FillIn(basis);
    world.server.dialogs.answers = {0, 0, 0};
    Press(*form, "cmdGravar");
  }

  GridModel& Steps() { return ModelOf("lvwTabelas"); }
  GridModel& ModelOf(std::string_view grid) {
    auto& view = Find<QAbstractItemView>(*form, grid);
    return dynamic_cast<GridModel&>(*view.model());
  }
  /// "C_Contas OK", one a row of the list.
  std::vector<std::string> Statuses() {
    std::vector<std::string> rows;
    for (const periods::GridRow& row : Steps().Rows()) rows.push_back(row.cells[0] + " " + row.cells[2]);
    return rows;
  }
  void Choose(int row) {
    auto& view = Find<QAbstractItemView>(*form, "lvwTabelas");
    view.setCurrentIndex({});
    view.setCurrentIndex(Steps().index(row, 1));
  }
  std::string Value(std::string_view query) {
    return world.server.One(world.desk.Session().gBaseDados, query);
  }
  void Change(std::string_view script) { world.server.Run(world.desk.Session().gBaseDados, script); }

  DesktopWorld world;
  const test::TempFolder target;
  std::unique_ptr<frmWizard> form;
  std::vector<std::string> opened;
};

TEST_F(WizardForm, TheListFollowsTheKindAndTheDatesTheMonth) {
  EXPECT_THAT(Statuses(),
              ElementsAre("G_Clientes ", "G_Produtos ", "G_Impostos ", "G_Movimentos ", "Exporta "))
      << "billing at first";
  FillIn("I", "02");
  EXPECT_THAT(Statuses(), ElementsAre("C_Contas ", "C_Fornecedores ", "C_Movimentos ", "G_Clientes ",
                                      "G_Produtos ", "G_Impostos ", "G_Movimentos ", "Exporta "));
  EXPECT_EQ(Find<Edatas>(*form, "edatStartDate").ConteudoAMD(), "2025-02-01");
  EXPECT_EQ(Find<Edatas>(*form, "edatEndDate").ConteudoAMD(), "2025-02-28");
  Choose(1);
  EXPECT_TRUE(Find(*form, "fraC_Fornecedores").isVisible());
  Choose(7);
  EXPECT_TRUE(Find(*form, "fraExportacao").isVisible());
}

TEST_F(WizardForm, RefusalsPutTheCursorInTheField) {
  const struct {
    std::string_view field;
    std::string_view text;
  } cases[] = {{"txtAno", "Não definiu o Ano!"},
               {"edatStartDate", "Não definiu a Data Inicial!"},
               {"edatEndDate", "Não definiu a Data Final!"},
               {"txtPastaExportacao", "Não definiu a Pasta para Exportação!"}};
  for (const auto& [field, text] : cases) {
    FillIn("C");
    if (auto* date = dynamic_cast<Edatas*>(&Find(*form, field))) {
      date->SetConteudoAMD("");
    } else {
      Find<QLineEdit>(*form, field).clear();
    }
    for (const std::string_view button : {"cmdGravar", "cmdExportar"}) {
      Press(*form, button);
      EXPECT_EQ(world.server.dialogs.LastText(), text) << button;
      EXPECT_EQ(world.server.dialogs.LastFocus(), field) << button;
    }
  }
  EXPECT_EQ(Value("Select count(*) from HistoricoEnvio"), "0");

  FillIn("C");
  world.server.dialogs.answers = {0, 1};
  Press(*form, "cmdGravar");
  EXPECT_EQ(world.server.dialogs.questions.back().text, "Período já Configurado.\nSubstituir o existente?");
  EXPECT_EQ(Statuses().front(), "C_Contas ") << "nothing was run";
}

TEST_F(WizardForm, ARunShowsItsStepsAndWhatTheyStaged) {
  RunWhole("C");
  EXPECT_THAT(Statuses(), Each(EndsWith(" OK")));
  EXPECT_THAT(world.server.dialogs.messages, IsEmpty());
  ASSERT_FALSE(fs::is_empty(target.Path()));
  EXPECT_TRUE(Find(*form, "fraExportacao").isVisible());
  EXPECT_TRUE(Find(*form, "picPOCGeneralLedgerEntries").isVisible());
  EXPECT_FALSE(Find(*form, "picGESTCustomer").isVisible());
  EXPECT_EQ(Find<QLabel>(*form, "lblPOCGeneralLedger").text(),
            ToQt(Value("Select count(*) from TabGeneralLedger where StartDate='2025-01-01'")));
  EXPECT_EQ(Value("Select Status from HistoricoEnvio"), "OK");
  EXPECT_THAT(FromQt(form->windowTitle()), testing::HasSubstr("2025"));

  Choose(0);
  EXPECT_EQ(std::to_string(ModelOf("lvwC_Contas").Rows().size()),
            Value("Select count(*) from TabGeneralLedger where StartDate='2025-01-01'"));
  Choose(4);
  EXPECT_THAT(ModelOf("lvwC_Movimentos").Rows(), IsEmpty()) << "movements are shown when asked for";
  FillIn("F");
  EXPECT_THAT(Statuses(), Each(EndsWith(" "))) << "another kind clears the statuses";
}

TEST_F(WizardForm, AFailedStepEndsTheRunAndTheFormGoesOn) {
  Change(
      "drop table TabSupplierPOC;Create table TabSupplierPOC (NumRegisto int,FiscalYear varchar(4),"
      "StartDate varchar(10),EndDate varchar(10))");
  FillIn("C");
  world.server.dialogs.answers = {0, 0};
  Press(*form, "cmdGravar");
  EXPECT_THAT(Statuses(), ElementsAre("C_Contas OK", "C_Clientes OK", "C_Fornecedores Falha", "C_Impostos ",
                                      "C_Movimentos ", "Exporta "));
  EXPECT_THAT(world.server.dialogs.messages, testing::Not(IsEmpty()));
  EXPECT_EQ(Value("Select Observa from HistoricoEnvio"), "Existem falhas na preparação dos dados");
  EXPECT_EQ(Value("Select Status from HistoricoEnvio"), "NULL");
  EXPECT_TRUE(Find(*form, "fraC_Fornecedores").isVisible()) << "the step at fault is shown";
  EXPECT_TRUE(form->isEnabled());
}

TEST_F(WizardForm, ACancelledRunEndsAtItsStepAndTheFormGoesOn) {
  std::atomic<bool> held = false;
  std::atomic<bool> cancelled = false;
  world.server.onStatement = [&](std::string_view statement) {
    held = statement.starts_with("Delete from TabSupplierPOC") &&
           Value("Select count(*) from TabCustomerPOC") != "0";
    while (held && !cancelled) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  };
  const std::function<void(QWidget&)> cancel = [&](QWidget& box) {
    if (!held) return WhenWorking(cancel);
    Press(box, "cmdCancelar");
    cancelled = true;
  };
  WhenWorking(cancel);
  FillIn("C");
  world.server.dialogs.answers = {0, 0};
  Press(*form, "cmdGravar");
  EXPECT_THAT(Statuses(), ElementsAre("C_Contas OK", "C_Clientes OK", "C_Fornecedores Falha", "C_Impostos ",
                                      "C_Movimentos ", "Exporta "));
  EXPECT_EQ(world.server.dialogs.LastText(), "Operação cancelada: o que estava em curso foi desfeito.");
  EXPECT_EQ(Value("Select count(*) from TabSupplierPOC"), "0");
  EXPECT_TRUE(fs::is_empty(target.Path()));
  EXPECT_TRUE(form->isEnabled());
}

TEST_F(WizardForm, StepsCanBeRepeatedByHand) {
  RunWhole("C");
  Change("Delete from TabCustomerPOC");
  Choose(1);
  Press(*form, "cmdC_Clientes_Carregar");
  GridModel& customers = ModelOf("lvwC_Clientes");
  ASSERT_GT(customers.Rows().size(), 1u);
  EXPECT_EQ(Value("Select count(*) from TabCustomerPOC"), "0") << "loaded, not saved";
  customers.Tick(0, false);
  Press(*form, "cmdC_Clientes_Gravar");
  EXPECT_EQ(Value("Select count(*) from TabCustomerPOC"), std::to_string(customers.Rows().size() - 1));
  EXPECT_THAT(Statuses(), Contains("C_Clientes OK"));

  Find<QCheckBox>(*form, "chkMostraMoimentosLVW").setChecked(true);
  Press(*form, "cmdC_Movimentos_Gravar");
  EXPECT_THAT(ModelOf("lvwC_Movimentos").Rows(), testing::Not(IsEmpty()));

  Press(*form, "cmdExportacao_Prepara");
  Find<QCheckBox>(*form, "chkPOCCustomer").setChecked(false);
  world.server.dialogs.answers = {1};
  Press(*form, "cmdExportar");
  ASSERT_EQ(opened.size(), 1u);
  EXPECT_EQ(test::ReadFile(opened[0]).find("<Customer>"), std::string::npos);

  FillIn("C", "03");
  Press(*form, "cmdC_Contas_Gravar");
  EXPECT_EQ(world.server.dialogs.LastText(), "Não tem os dados da Empresa definidos (Header)!");
}

TEST_F(WizardForm, RowsOfAStepAreCorrectedByHandAndStoredByItsSave) {
  RunWhole("C");
  const struct {
    int row;
    std::string_view grid, buttons, window, box, stored;
  } cases[] = {
      {1, "lvwC_Clientes", "cmdC_Clientes_", "frmCustomerIns", "txtCompanyName",
       "TabCustomerPOC where CompanyName"},
      {2, "lvwC_Fornecedores", "cmdC_Fornece_", "frmCustomerIns", "txtCity", "TabSupplierPOC where City"},
      {3, "lvwC_Impostos", "cmdC_Impostos_", "frmTaxTableIns", "txtSaft_Description",
       "TabTaxTablePOC where Description"}};
  for (const auto& step : cases) {
    const std::string buttons(step.buttons);
    Choose(step.row);
    Find<QAbstractItemView>(*form, step.grid).setCurrentIndex({});
    Press(*form, buttons + "Alterar");
    EXPECT_EQ(world.server.dialogs.LastText(), toolkit::kNoSuchItem);
    dynamic_cast<GridView&>(Find<QAbstractItemView>(*form, step.grid)).SelectRow(0);
    WhenAsked([&](QWidget& window) {
      EXPECT_EQ(FromQt(window.objectName()), step.window);
      Type(window, step.box, "Corrigido à mão");
      Press(window, "cmdGravar");
    });
    Press(*form, buttons + "Alterar");
    Press(*form, buttons + "Gravar");
    EXPECT_EQ(Value("Select count(*) from " + std::string(step.stored) + "='Corrigido à mão'"), "1")
        << buttons;
  }
}

TEST_F(WizardForm, AbrirRunsWithoutAWord) {
  Find<QLineEdit>(*form, "txtPastaExportacao").setText(ToQt(target.Path().string()));
  form->Abrir("2025", "2025-01-01", "2025-12-31", "C");
  EXPECT_FALSE(form->isVisible());
  EXPECT_THAT(world.server.dialogs.Texts(), IsEmpty());
  EXPECT_THAT(world.server.dialogs.questions, IsEmpty());
  EXPECT_FALSE(fs::is_empty(target.Path()));
  EXPECT_EQ(Value("Select Observa from HistoricoEnvio"), "Exportação com Sucesso");
  EXPECT_EQ(Find<SelOpta>(*form, "eselMes").Chave(), "365");
}

TEST_F(WizardForm, SendingKeepsItsSettingsAndShowsTheHistory) {
  RunWhole("C");
  WhenAsked([&](QWidget& window) {
    EXPECT_EQ(window.objectName(), "frmEnvioAutomatico");
    EXPECT_EQ(window.windowTitle(), "Definições para Exportação Automática");
    auto& model = dynamic_cast<GridModel&>(*Find<QAbstractItemView>(window, "lvwHistorico").model());
    ASSERT_EQ(model.Rows().size(), 1u);
    EXPECT_EQ(model.Cell(0, 3), "2025-01-01 / 2025-12-31");
    EXPECT_EQ(model.Cell(0, 4), "Exportação com Sucesso");
    world.server.dialogs.confirmations = {false, true};
    Press(window, "cmdEliminar");
    EXPECT_EQ(model.Rows().size(), 1u);
    Press(window, "cmdEliminar");
    EXPECT_TRUE(model.Rows().empty());
    Press(window, "cmdRefresh");
    EXPECT_TRUE(model.Rows().empty());
    Find<SelOpta>(window, "eselPeriodicidadeEnvio").SetChave("Mes");
    Find<SelOpta>(window, "eselPeriodoDados").SetChave("P-1");
    Press(window, "cmdGravar");
  });
  Press(*form, "cmdEnvioAuto");
  EXPECT_EQ(Value("Select PeriodicidadeEnvio+' '+PeriodoDados from ParamGeral"), "Mes P-1");

  frmEnvioAutomatico again(world.desk);
  ASSERT_TRUE(again.Load());
  EXPECT_EQ(Find<SelOpta>(again, "eselPeriodicidadeEnvio").Chave(), "Mes");
  Change("Delete from ParamGeral");
  Press(again, "cmdGravar");
  EXPECT_EQ(world.server.dialogs.LastText(), "A empresa ainda não tem Parâmetros Gerais.");
}

}  // namespace
}  // namespace korvel::desktop
