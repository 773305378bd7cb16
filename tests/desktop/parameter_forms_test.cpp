#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <memory>
#include <string>

#include "data/sql_text.h"
#include "desktop/desktop_world.h"
#include "forms/periods/frm_aa_responsavel.h"
#include "forms/periods/frm_filtros_brevant.h"
#include "forms/periods/frm_filtros_lunder.h"
#include "forms/periods/frm_param_geral.h"
#include "gateways/screen_dialogs.h"
#include "gateways/text.h"

namespace korvel::desktop {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::string_view kNoLocation = "Deve preencher pelo menos uma Localização (Brevant/Lunder)";
constexpr std::string_view kNoJournal = "Não seleccionou qualquer Diário!";

class ParameterForms : public testing::Test {
 protected:
  ParameterForms() { world.MakeCompany(); }

  template <typename Form>
  std::unique_ptr<Form> Open() {
    auto form = std::make_unique<Form>(world.desk);
    EXPECT_TRUE(form->Load());
    form->show();
    return form;
  }
  static std::string Text(QWidget& form, std::string_view box) {
    return FromQt(Find<QLineEdit>(form, box).text());
  }
  static std::string Label(QWidget& form, std::string_view label) {
    return FromQt(Find<QLabel>(form, label).text());
  }
  static GridModel& Rows(QWidget& form, std::string_view grid) {
    return dynamic_cast<GridModel&>(*Find<GridView>(form, grid).model());
  }
  static void Choose(QWidget& form, std::string_view list, std::string_view key) {
    Find<SelOpta>(form, list).SetChave(key);
  }
  std::string Value(std::string_view query) { return world.server.One("Korvel0001", query); }
  void Change(std::string_view script) { world.server.Run("Korvel0001", script); }
  std::string BrevantValue(std::string_view query) {
    return world.server.One(Value("select DBase_Brevant from ParamGeral"), query);
  }

  DesktopWorld world;
  test::ScriptedDialogs& dialogs = world.server.dialogs;
};

TEST_F(ParameterForms, ParametersOpenWithWhatIsKept) {
  Change(
      "update ParamGeral set Header_ContaInicial='21',Product_Grupo='',Product_Patamar='Familia',"
      "EquivCliente='Codigo',AgrupaContasClientes=0,CasasDec=3,Password_Lunder='segredo'");
  const auto form = Open<frmParamGeral>();
  EXPECT_EQ(form->windowTitle(), "Parâmetros Gerais");
  EXPECT_EQ(Text(*form, "txtServidor_Brevant"), world.server.Name());
  EXPECT_EQ(Text(*form, "txtHeader_ContaInicial"), "21");
  EXPECT_EQ(Label(*form, "lblHeader_ContaFinal"), "Todas");
  EXPECT_EQ(Label(*form, "lblProduct_Grupo"), "Todos");
  EXPECT_EQ(Find<SelOpta>(*form, "eselProduct_Patamar").Chave(), "Familia");
  EXPECT_EQ(Find<Inteiro>(*form, "eintCasasDecimais").Valor(), 3);
  EXPECT_TRUE(Find<QRadioButton>(*form, "optEquivCliente_Codigo").isChecked());
  EXPECT_FALSE(Find(*form, "chkAgrupaContasClientes").isEnabled());
  EXPECT_EQ(Find<QLineEdit>(*form, "txtPassword_Lunder").displayText().count("segredo"), 0);
  EXPECT_THAT(Label(*form, "shpLigaGest"), HasSubstr("#00FF00"));
  EXPECT_THAT(Label(*form, "shpLigaPOC"), HasSubstr("#FF0000")) << "a wrong password";
  EXPECT_FALSE(Rows(*form, "lvwTiposMov").Rows().empty());
  EXPECT_EQ(std::to_string(Rows(*form, "lvwArmazens").Rows().size()),
            BrevantValue("select count(*) from Armazens"));
  EXPECT_THAT(dialogs.Texts(), IsEmpty());
  Press(*form, "cmdGravar");
  EXPECT_EQ(Value("select Password_Lunder from ParamGeral"), "segredo")
      << "kept as typed, and saved all the same";
  EXPECT_FALSE(form->isVisible());
}

TEST_F(ParameterForms, ParametersOfAFreshCompanyAreTypedAndSaved) {
  const std::string database = Value("select DBase_Lunder from ParamGeral");
  Change("delete from ParamGeral\nGO\ndelete from TabArmazens");
  const auto form = Open<frmParamGeral>();
  EXPECT_EQ(Text(*form, "txtProductDescriptionDefault"), "Sem Descrição");
  EXPECT_TRUE(Find<QRadioButton>(*form, "optEquivCliente_ContaA").isChecked());
  Press(*form, "cmdGravar");
  EXPECT_THAT(dialogs.Texts(), ElementsAre(kNoLocation));
  EXPECT_EQ(dialogs.LastFocus(), "Servidor_Brevant");
  EXPECT_TRUE(form->isVisible());
  dialogs.Clear();
  Type(*form, "txtServidor_Lunder", world.server.Name());
  Type(*form, "txtLogin_Lunder", "sa");
  Type(*form, "txtDBase_Lunder", "LunderFalta");
  EXPECT_EQ(dialogs.LastTitle(), "Registo Inexistente:") << "looked up where the boxes point to";
  dialogs.Clear();
  Type(*form, "txtDBase_Lunder", database);
  Press(*form, "cmdActivarLigacoes");
  EXPECT_THAT(Label(*form, "shpLigaPOC"), HasSubstr("#00FF00"));
  EXPECT_EQ(Value("select DBase_Lunder from ParamGeral"), database) << "kept at once";
  Press(*form, "optEquivCliente_ContaB");
  Press(*form, "optEquivCliente_Codigo");
  EXPECT_FALSE(Find<QCheckBox>(*form, "chkAgrupaContasClientes").isChecked());
  Press(*form, "optSourceDocuments_DescLinhaDoc_Descricao");
  Press(*form, "chkIncluirDocumentosAnulados");
  Choose(*form, "eselProduct_Patamar", "Grupo");
  Press(*form, "cmdGravar");
  EXPECT_THAT(dialogs.Texts(), IsEmpty());
  EXPECT_FALSE(form->isVisible());
  EXPECT_EQ(world.server.Rows("Korvel0001",
                              "select EquivCliente,AgrupaContasClientes,SourceDocuments_DescLinhaDoc,"
                              "IncluirDocumentosAnulados,Product_Patamar,CasasDec from ParamGeral"),
            std::vector<std::string>{"Codigo\t0\tDescricao\tS\tGrupo\t2"});
}

TEST_F(ParameterForms, WarehousesNeedTheirRegion) {
  Change("delete from TabArmazens");
  const auto form = Open<frmParamGeral>();
  Press(*form, "cmdGravar");
  EXPECT_THAT(dialogs.Texts(), ElementsAre("Não definiu os IVAS na grelha de Armazéns!"));
  EXPECT_EQ(dialogs.LastFocus(), "lvwArmazens");
  dialogs.Clear();
  auto& tabs = Find<QTabWidget>(*form, "tabPaginas");
  tabs.setCurrentIndex(tabs.count() - 1);
  auto& grid = Find<GridView>(*form, "lvwArmazens");
  for (int row = 0; row < grid.model()->rowCount(); ++row) {
    grid.SelectRow(static_cast<std::size_t>(row));
    Choose(*form, "eselArmazemClassifica", row == 0 ? "PT-AC" : "PT");
    Press(*form, "cmdActualizaArmazem");
  }
  grid.SelectRow(0);
  EXPECT_EQ(Find<SelOpta>(*form, "eselArmazemClassifica").Chave(), "PT-AC") << "that of the row";
  EXPECT_NE(Rows(*form, "lvwArmazens").Rows().front().colour, 0U);
  Press(*form, "cmdGravar");
  EXPECT_FALSE(form->isVisible());
  EXPECT_EQ(Value("select top 1 Classificacao from TabArmazens order by Armazem"), "PT-AC");
}

TEST_F(ParameterForms, GridsAreReadWhenTheirPageIsEntered) {
  const auto form = Open<frmParamGeral>();
  auto& tabs = Find<QTabWidget>(*form, "tabPaginas");
  for (const char* grid : {"lvwTiposMov", "lvwArmazens"}) {
    Rows(*form, grid).SetRows({});
    tabs.setCurrentIndex(0);
    int page = 0;
    while (!tabs.widget(page)->isAncestorOf(&Find(*form, grid))) ++page;
    tabs.setCurrentIndex(page);
    EXPECT_FALSE(Rows(*form, grid).Rows().empty()) << grid;
  }
  for (const char* button : {"cmdCarregarTiposMov", "cmdCarregarArmazens"}) Press(*form, button);
  EXPECT_FALSE(Rows(*form, "lvwArmazens").Rows().empty());
  Press(*form, "cmdFechar");
  EXPECT_FALSE(form->isVisible());
}

TEST_F(ParameterForms, RefusedFieldIsBroughtToTheFront) {
  const auto form = Open<frmParamGeral>();
  auto& tabs = Find<QTabWidget>(*form, "tabPaginas");
  QApplication::setActiveWindow(form.get());
  ScreenDialogs screen;
  for (const char* field : {"lvwArmazens", "Servidor_Brevant"}) {
    screen.Focus(field);
    QWidget* focused = QApplication::focusWidget();
    ASSERT_NE(focused, nullptr) << field;
    EXPECT_TRUE(focused->objectName().endsWith(field)) << FromQt(focused->objectName());
    EXPECT_TRUE(tabs.currentWidget()->isAncestorOf(focused));
  }
}

TEST_F(ParameterForms, SourceThatIsLostIsToldAndTheWindowStays) {
  Change("update ParamGeral set DBase_Brevant='BrevantFalta'");
  const auto form = Open<frmParamGeral>();
  EXPECT_EQ(dialogs.messages.size(), 2U) << "one a grid";
  EXPECT_EQ(std::to_string(Rows(*form, "lvwArmazens").Rows().size()),
            Value("select count(*) from TabArmazens"))
      << "what is stored stays, so that a save keeps it";
  dialogs.Clear();
  world.desk.Session().gBaseDados = "Korvel0009";
  Press(*form, "cmdActivarLigacoes");
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(form->isVisible() && form->isEnabled());
  EXPECT_FALSE(frmParamGeral(world.desk).Load()) << "without its company it does not open";
}

TEST_F(ParameterForms, EntityIsKeptWithItsAccounts) {
  const auto form = Open<frmAAResponsavel>();
  EXPECT_EQ(form->windowTitle(), "Configurações da entidade responsável pelo processamento");
  EXPECT_FALSE(Text(*form, "txtSMTPServer").empty());
  Type(*form, "txtEntidade", "Contas d'Ouro");
  Type(*form, "txtFTPPwd", "segredo");
  EXPECT_EQ(Find<QLineEdit>(*form, "txtFTPPwd").displayText().count("segredo"), 0);
  Press(*form, "cmdGravar");
  EXPECT_FALSE(form->isVisible());
  EXPECT_EQ(world.server.Rows("KorvelConfig", "select NomeEntidade,FtpPWD from Entidade"),
            std::vector<std::string>{"Contas d'Ouro\tsegredo"});
  const auto again = Open<frmAAResponsavel>();
  EXPECT_EQ(Text(*again, "txtEntidade"), "Contas d'Ouro");
  Press(*again, "cmdFechar");
  EXPECT_FALSE(again->isVisible());
}

TEST_F(ParameterForms, LunderFilterIsWhatIsTickedAndTyped) {
  Change("update ParamGeral set Header_ApenasDiarioSI='S',Header_ContaInicial='21'");
  frmFiltrosLunder form(world.desk);
  WhenAsked([&](QWidget& window) {
    EXPECT_EQ(window.windowTitle(), "Condições de Pesquisa");
    EXPECT_EQ(Label(window, "lblContaFinal"), "Todas");
    EXPECT_FALSE(Label(window, "lblContaInicial").empty());
    GridModel& journals = Rows(window, "lvwDiarios");
    EXPECT_EQ(journals.TickedCount(), 1U) << "the one of opening balances";
    const std::size_t ticked = Find<GridView>(window, "lvwDiarios").CurrentRow().value();
    EXPECT_EQ(journals.Cell(ticked, 3), "Saldos Iniciais");
    journals.Tick(ticked, false);
    Press(window, "cmdContinuar");
    EXPECT_THAT(dialogs.Texts(), ElementsAre(kNoJournal));
    EXPECT_EQ(dialogs.LastFocus(), "lvwDiarios");
    EXPECT_TRUE(window.isVisible());
    PressKey(Find(window, "lvwDiarios"), Qt::Key_Menu);
    Find<QLineEdit>(window, "txtContaInicial").setText("21.1");
    Press(window, "cmdContinuar");
  });
  const periods::LunderFilter filter = form.Escolher();
  EXPECT_FALSE(filter.cancelled);
  EXPECT_EQ(filter.contas, " and ContaSp>='211'");
  EXPECT_EQ(filter.diarios, "") << "all are ticked";
}

TEST_F(ParameterForms, LunderFilterThatIsLeftIsCancelled) {
  WhenAsked([](QWidget& window) { Press(window, "cmdCancelar"); });
  EXPECT_TRUE(frmFiltrosLunder(world.desk).Escolher().cancelled);
  Change("update ParamGeral set DBase_Lunder='LunderFalta'");
  EXPECT_TRUE(frmFiltrosLunder(world.desk).Escolher().cancelled);
  EXPECT_THAT(dialogs.Texts(), IsEmpty()) << "a source that does not open is not told";
}

TEST_F(ParameterForms, BrevantFilterIsWhatIsTyped) {
  const std::string family = BrevantValue("select top 1 Codigo from TabFamPro order by Codigo");
  Change("update ParamGeral set Product_Patamar='Subfamilia',Product_Familia=" + data::Quoted(family));
  WhenAsked([&](QWidget& window) {
    EXPECT_EQ(Text(window, "txtFamilia"), family);
    EXPECT_FALSE(Label(window, "lblFamilia").empty());
    EXPECT_EQ(Label(window, "lblGrupo") + Label(window, "lblSituacao"), "TodosTodas");
    Find<QLineEdit>(window, "txtSituacao").setText("A'");
    Press(window, "cmdContinuar");
  });
  const periods::BrevantFilter filter = frmFiltrosBrevant(world.desk).Escolher();
  EXPECT_EQ(filter.filtro, " and Produtos.Familia='" + family + "' and Produtos.Situacao='A'''");
  EXPECT_EQ(filter.patamar, "Subfamilia");
  WhenAsked([](QWidget& window) { PressKey(window, Qt::Key_Escape); });
  EXPECT_EQ(frmFiltrosBrevant(world.desk).Escolher().filtro, periods::kFilterCancelled);
}

}  // namespace
}  // namespace korvel::desktop
