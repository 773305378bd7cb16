#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <memory>

#include "desktop/desktop_world.h"
#include "forms/periods/frm_tab_header.h"
#include "forms/periods/frm_tab_header_ins.h"
#include "gateways/screen_dialogs.h"
#include "gateways/text.h"
#include "security/rights_catalogue.h"

namespace korvel::desktop {
namespace {

using periods::HeaderMode;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

constexpr std::string_view kHint = "INFORMAÇÃO";

/// The demonstration company: the second, third and fourth quarter of 2024, one of each kind, and the year 2025.
class PeriodForms : public testing::Test {
 protected:
  PeriodForms() { world.MakeCompany(); }

  std::unique_ptr<frmTabHeader> OpenList() {
    auto list = std::make_unique<frmTabHeader>(world.desk);
    EXPECT_TRUE(list->Load());
    list->show();
    return list;
  }
  std::unique_ptr<frmTabHeaderIns> OpenEntry(HeaderMode mode, std::int64_t numRegisto = 0) {
    auto entry = std::make_unique<frmTabHeaderIns>(world.desk, mode, numRegisto);
    EXPECT_TRUE(entry->Load());
    entry->show();
    dialogs.Clear();
    return entry;
  }
  static GridModel& Rows(QWidget& list) {
    return dynamic_cast<GridModel&>(*Find<QAbstractItemView>(list, "lvwTabela").model());
  }
  static std::string StartOf(QWidget& list, std::size_t row) { return Rows(list).Cell(row, 2); }
  static void Select(QWidget& list, int row) {
    auto& view = Find<QAbstractItemView>(list, "lvwTabela");
    view.setCurrentIndex({});
    view.setCurrentIndex(view.model()->index(row, 1));
  }
  static std::string Text(QWidget& window, std::string_view field) {
    return FromQt(Find<QLineEdit>(window, field).text());
  }
  static void Set(QWidget& window, std::string_view field, std::string_view text) {
    Find<QLineEdit>(window, field).setText(ToQt(text));
  }
  /// What a new period still lacks beside the template.
  static void FillNew(QWidget& entry, std::string_view year) {
    Type(entry, "txtHeader_FiscalYear", year);
    Set(entry, "txtHeader_BusinessName", "Padaria d'Ávila");
  }
  std::string Value(std::string_view query) { return world.server.One("Korvel0001", query); }
  void Change(std::string_view script) { world.server.Run("Korvel0001", script); }

  DesktopWorld world;
  test::ScriptedDialogs& dialogs = world.server.dialogs;
};

TEST_F(PeriodForms, TheListShowsThePeriodsByYearAndStart) {
  const auto list = OpenList();
  EXPECT_EQ(FromQt(list->windowTitle()), R"(Identificação da Empresa - "Header")");
  GridModel& rows = Rows(*list);
  ASSERT_EQ(rows.Rows().size(), 4U);
  EXPECT_EQ(rows.headerData(3, Qt::Horizontal, Qt::DisplayRole).toString(), "Dt Final");
  EXPECT_THAT(rows.Rows().front().cells,
              ElementsAre("1", "2024", "2024-04-01", "2024-06-30", "Padaria d'Ávila & Filhos, Lda", "C",
                          "1.01_01", "sa", "15-01-2026", ""));
  EXPECT_EQ(StartOf(*list, 3), "2025-01-01");
  Change("update TabHeader set StartDate='2024-01-01' where StartDate='2024-10-01'");
  Press(*list, "cmdRefresh");
  EXPECT_EQ(StartOf(*list, 0), "2024-01-01");
}

TEST_F(PeriodForms, AnEmptyListHasNothingToActOn) {
  Change("delete from TabHeader");
  const auto list = OpenList();
  for (const char* button : {"cmdAlterar", "cmdVer", "cmdEliminar"}) Press(*list, button);
  EXPECT_THAT(dialogs.messages, IsEmpty());
  WhenAsked([&](QWidget& entry) {
    EXPECT_EQ(Text(entry, "txtHeader_FiscalYear"), "");
    EXPECT_EQ(Text(entry, "txtHeader_Country"), "PT");
    EXPECT_EQ(Find<QComboBox>(entry, "eselHeader_TaxAccountingBasis").currentIndex(), -1);
    Press(entry, "cmdCancelar");
  });
  Press(*list, "cmdAdicionar");
  EXPECT_EQ(Rows(*list).Rows().size(), 0U);
}

TEST_F(PeriodForms, ANewPeriodIsMadeFromTheLatest) {
  const auto list = OpenList();
  WhenAsked([&](QWidget& entry) {
    EXPECT_THAT(FromQt(entry.windowTitle()), EndsWith(" - Entrada de Registos :"));
    EXPECT_EQ(dialogs.LastTitle(), kHint);
    EXPECT_EQ(dialogs.LastFocus(), "FiscalYear");
    EXPECT_EQ(Text(entry, "txtHeader_FiscalYear"), "2026");
    EXPECT_EQ(Text(entry, "edatHeader_StartDate"), "");
    EXPECT_EQ(Text(entry, "txtHeader_TaxEntity"), "Sede");
    FillNew(entry, "2026");
    Press(entry, "cmdGravar");
  });
  Press(*list, "cmdAdicionar");
  EXPECT_EQ(Value("select EndDate+' '+BusinessName from TabHeader where FiscalYear='2026'"),
            "2026-12-31 Padaria d'Ávila");
  ASSERT_EQ(Rows(*list).Rows().size(), 5U);
  WhenAsked([&](QWidget& entry) {
    EXPECT_EQ(Text(entry, "txtHeader_FiscalYear"), "2026") << "the new row has the cursor";
    Press(entry, "cmdCancelar");
  });
  Press(*list, "cmdVer");
}

TEST_F(PeriodForms, AChangeKeepsTheKeyAndRefreshesItsRow) {
  const auto list = OpenList();
  Select(*list, 1);
  WhenAsked([&](QWidget& entry) {
    EXPECT_THAT(FromQt(entry.windowTitle()), EndsWith(" - Alteração de Registo :"));
    EXPECT_EQ(dialogs.LastFocus(), "CompanyID");
    for (const char* key : {"txtHeader_FiscalYear", "edatHeader_StartDate", "edatHeader_EndDate"}) {
      EXPECT_FALSE(Find(entry, key).isEnabled()) << key;
    }
    Set(entry, "txtHeader_CompanyName", "Outra");
    Press(entry, "cmdGravar");
  });
  PressKey(Find(*list, "lvwTabela"), Qt::Key_Return);  // as a double click
  EXPECT_EQ(Value("select CompanyName from TabHeader where StartDate='2024-07-01'"), "Outra");
  EXPECT_EQ(Rows(*list).Cell(1, 4), "Outra");
  EXPECT_EQ(Rows(*list).Rows().size(), 4U);
}

TEST_F(PeriodForms, AViewIsLocked) {
  const auto entry = OpenEntry(HeaderMode::View, 2);
  EXPECT_THAT(FromQt(entry->windowTitle()), EndsWith(" - Consulta de Registo :"));
  for (const auto* box : entry->findChildren<QLineEdit*>()) EXPECT_TRUE(box->isReadOnly());
  EXPECT_FALSE(Find(*entry, "cmdGravar").isVisible());
  EXPECT_EQ(entry->focusWidget()->objectName(), "cmdCancelar");
  Press(*entry, "cmdCancelar");
  EXPECT_FALSE(entry->isVisible());
}

TEST_F(PeriodForms, ARowOfAnEarlierVersionCannotBeSaved) {
  Change("update TabHeader set TaxAccountingBasis='Contabilidade',TaxEntity='Loja' where NumRegisto=1");
  frmTabHeaderIns entry(world.desk, HeaderMode::Change, 1);
  ASSERT_TRUE(entry.Load());
  EXPECT_THAT(dialogs.Texts(), Contains("Este registo é de uma versão anterior. Apenas pode Visualizar"));
  EXPECT_FALSE(Find(entry, "cmdGravar").isEnabled());
  EXPECT_EQ(Find<SelOpta>(entry, "eselHeader_TaxAccountingBasis").Chave(), "C");
  EXPECT_EQ(Text(entry, "txtHeader_TaxEntity"), "Loja") << "filling the form is no change of the kind";
}

TEST_F(PeriodForms, TheKindDecidesTheEstablishmentAndTheCustomer) {
  const auto entry = OpenEntry(HeaderMode::New);
  auto& kind = Find<SelOpta>(*entry, "eselHeader_TaxAccountingBasis");
  for (const auto& [key, establishment] : {std::pair("F", "Global"), std::pair("I", "Sede")}) {
    kind.SetChave(key);
    EXPECT_EQ(Text(*entry, "txtHeader_TaxEntity"), establishment) << key;
    for (const char* part : {"txtCliente", "cmdCliente", "lblCliente"}) {
      EXPECT_EQ(Find(*entry, part).isVisible(), std::string_view(key) == "F") << part;
    }
  }
}

TEST_F(PeriodForms, TheCustomerOfSelfBillingIsLookedUp) {
  const std::string code = world.server.One("BrevantDemo", "select min(Codigo) from Clientes");
  const std::string name =
      world.server.One("BrevantDemo", "select Descricao from Clientes where Codigo='" + code + "'");
  const auto entry = OpenEntry(HeaderMode::Change, 2);
  Type(*entry, "txtCliente", code);
  EXPECT_EQ(FromQt(Find<QLabel>(*entry, "lblCliente").text()), name);
  Press(*entry, "cmdGravar");
  EXPECT_EQ(Value("select Cliente from TabHeader where NumRegisto=2"), code);
}

TEST_F(PeriodForms, LeavingAFieldFillsTheDatesAndRefusesLetters) {
  const auto entry = OpenEntry(HeaderMode::New);
  Type(*entry, "txtHeader_FiscalYear", "201x");
  EXPECT_EQ(Text(*entry, "txtHeader_FiscalYear"), "201");
  for (const char* date : {"edatHeader_StartDate", "edatHeader_EndDate"}) Set(*entry, date, "");
  Type(*entry, "txtHeader_FiscalYear", "2010");
  EXPECT_EQ(Text(*entry, "edatHeader_StartDate") + " " + Text(*entry, "edatHeader_EndDate"),
            "01-01-2010 31-12-2010");
  Type(*entry, "txtHeader_TaxResgistrationNumber", "51x");
  EXPECT_EQ(dialogs.LastText(),
            "N.º Identificação Fiscal da Empresa, deve apenas conter caracteres numéricos.");
  EXPECT_EQ(dialogs.LastFocus(), "TaxRegistrationNumber");
  Type(*entry, "txtHeader_TaxResgistrationNumber", "512345678");
  EXPECT_EQ(dialogs.messages.size(), 1U);
}

TEST_F(PeriodForms, ARefusedSaveNamesTheFieldAndWritesNothing) {
  const struct {
    const char *field, *text, *message;
  } kRefusals[] = {
      {"txtHeader_FiscalYear", "  ", ""},
      {"edatHeader_StartDate", "", ""},
      {"edatHeader_EndDate", "", ""},
      {"edatHeader_StartDate", "01-12-2025", ""},
      {"txtHeader_AuditFileVersion", "", ""},
      {"txtHeader_CompanyID", " ", ""},
      {"txtHeader_TaxResgistrationNumber", "", ""},
      {"txtHeader_CompanyName", "", ""},
      {"txtHeader_AdressDetail", "", ""},
      {"txtHeader_City", "", ""},
      {"txtHeader_PostalCode", "", ""},
      {"txtHeader_Country", "", ""},
      {"txtHeader_CurrencyCode", "", ""},
      {"txtHeader_ProductID", "", ""},
      {"txtHeader_ProductVersion", "", "Sem a versão do produto definida!"},
      {"txtHeader_PostalCode", "1000-00", "O Código Postal tem que obedecer à formatação 0000-000"},
      {"txtHeader_BusinessName", "", "Não definiu a Designação Comercial!"},
      {"txtHeader_TaxEntity", "", "Não definiu o Estabelecimento!"}};
  const auto entry = OpenEntry(HeaderMode::New);
  FillNew(*entry, "2026");
  for (const auto& refusal : kRefusals) {
    const QString good = Find<QLineEdit>(*entry, refusal.field).text();
    Set(*entry, refusal.field, refusal.text);
    dialogs.Clear();
    Press(*entry, "cmdGravar");
    EXPECT_EQ(dialogs.LastText(), refusal.message) << refusal.field;
    QWidget* field = FindField(entry.get(), ToQt(dialogs.LastFocus()));
    ASSERT_NE(field, nullptr) << refusal.field;
    EXPECT_EQ(FromQt(field->objectName()), refusal.field);
    Find<QLineEdit>(*entry, refusal.field).setText(good);
  }
  EXPECT_TRUE(entry->isVisible());
  EXPECT_EQ(Value("select count(*) from TabHeader"), "4");
  Set(*entry, "txtHeader_PostalCode", "ABCD-EFG");
  Press(*entry, "cmdGravar");
  EXPECT_EQ(Value("select PostalCode from TabHeader where FiscalYear='2026'"), "ABCD-EFG");
}

/// Closes the box that comes up next.
void PressOk() {
  WhenAsked([](QWidget& box) { box.findChild<QPushButton*>()->click(); });
}

TEST_F(PeriodForms, TheCursorGoesToWhatIsRefused) {
  ScreenDialogs screen;
  Desk desk(world.server.servers, {screen, world.server.settings, world.server.clock});
  desk.Session() = world.desk.Session();
  frmTabHeaderIns entry(desk, HeaderMode::Change, 1);
  PressOk();
  ASSERT_TRUE(entry.Load());
  entry.show();
  QApplication::setActiveWindow(&entry);
  Find(entry, "cmdGravar").setFocus();
  Set(entry, "txtHeader_City", "");
  Press(entry, "cmdGravar");
  EXPECT_EQ(entry.focusWidget()->objectName(), "txtHeader_City");
  Set(entry, "txtHeader_City", "Ponta Delgada");
  Set(entry, "txtHeader_PostalCode", "1");
  PressOk();
  Press(entry, "cmdGravar");
  EXPECT_EQ(entry.focusWidget()->objectName(), "txtHeader_PostalCode");
}

TEST_F(PeriodForms, APeriodDeletedByAnotherIsTold) {
  const auto list = OpenList();
  const auto entry = OpenEntry(HeaderMode::Change, 1);
  Change("delete from TabHeader where NumRegisto=1");
  Press(*entry, "cmdGravar");
  EXPECT_EQ(dialogs.LastText(), "Esse Registo foi Eliminado por Outro Utilizador !");
  EXPECT_FALSE(entry->isVisible()) << "there is nothing left to save";
  for (const char* button : {"cmdAlterar", "cmdVer"}) {
    dialogs.Clear();
    Press(*list, button);
    EXPECT_EQ(dialogs.LastText(), "Esse Registo Foi Eliminado por outro Utilizador !");
    EXPECT_EQ(dialogs.LastTitle(), "ATENÇÃO :");
  }
  Press(*list, "cmdRefresh");
  EXPECT_EQ(Rows(*list).Rows().size(), 3U);
}

TEST_F(PeriodForms, ADeletionTakesOnePeriodWarnsTwiceAndAsks) {
  Change(
      "insert into TabSupplierPOC (FiscalYear,StartDate,EndDate) values ('2024','2024-07-01','2024-09-30'),"
      "('2024','2024-10-01','2024-12-31')");
  const auto list = OpenList();
  Find<QAbstractItemView>(*list, "lvwTabela").selectAll();
  Press(*list, "cmdEliminar");
  EXPECT_THAT(dialogs.Texts(), ElementsAre("Apenas pode seleccionar um registo para eliminar."));
  dialogs.Clear();
  Select(*list, 1);
  dialogs.confirmations = {false, true};
  Press(*list, "cmdEliminar");
  EXPECT_EQ(dialogs.messages.size(), 2U);
  EXPECT_EQ(dialogs.deletions.back().text,
            "Pretende Eliminar o Registo '2024 - Padaria d'Ávila & Filhos, Lda?");
  EXPECT_EQ(Rows(*list).Rows().size(), 4U);
  Press(*list, "cmdEliminar");
  ASSERT_EQ(Rows(*list).Rows().size(), 3U);
  EXPECT_EQ(StartOf(*list, 1), "2024-10-01");
  EXPECT_EQ(Value("select count(*) from TabSupplierPOC"), "1");
}

TEST_F(PeriodForms, ASearchNarrowsTheListUntilItIsRefreshed) {
  const auto list = OpenList();
  WhenAsked([](QWidget& window) {
    Set(window, "txtFiscalYear", "2024");
    Press(window, "cmdOK");
  });
  Press(*list, "cmdPesquisar");
  EXPECT_EQ(Rows(*list).Rows().size(), 3U);
  EXPECT_THAT(FromQt(list->windowTitle()), EndsWith("Pesquisa"));
  WhenAsked([](QWidget& window) {
    EXPECT_EQ(Text(window, "txtFiscalYear"), "2024");
    Set(window, "txtCompanyName", "Nenhuma");
    Press(window, "cmdOK");
  });
  Press(*list, "cmdPesquisar");
  EXPECT_EQ(Rows(*list).Rows().size(), 0U);
  WhenAsked([](QWidget& window) { Press(window, "cmdCancelar"); });
  Press(*list, "cmdPesquisar");
  Press(*list, "cmdRefresh");
  EXPECT_EQ(Rows(*list).Rows().size(), 4U);
  EXPECT_THAT(FromQt(list->windowTitle()), EndsWith("\"Header\""));
}

TEST_F(PeriodForms, WithoutRightsTheListCanBeSeenAlone) {
  world.desk.Session().gUtilizador = "ana";
  const auto list = OpenList();
  for (const auto& button : security::FindForm("frmTabHeader")->buttons) {
    if (!security::IsGuardable(button.name, button.caption)) continue;
    dialogs.Clear();
    Press(*list, button.name);
    EXPECT_EQ(dialogs.LastText(), "Acesso Negado !") << button.name;
  }
  PressKey(Find(*list, "lvwTabela"), Qt::Key_Return);
  EXPECT_EQ(dialogs.messages.size(), 2U) << "a double click needs the right of its button";
  EXPECT_EQ(Rows(*list).Rows().size(), 4U);
  Press(*list, "cmdFechar");
  EXPECT_FALSE(list->isVisible());
}

TEST_F(PeriodForms, ALostDatabaseIsToldAndTheWindowsStay) {
  const auto list = OpenList();
  const auto entry = OpenEntry(HeaderMode::Change, 1);
  world.server.Run("master", "drop database Korvel0001");
  Set(*entry, "txtHeader_CompanyName", "Outra");
  Press(*entry, "cmdGravar");
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(entry->isVisible());
  EXPECT_EQ(Text(*entry, "txtHeader_CompanyName"), "Outra");
  dialogs.answers = {0, 0, 0, 0};  // try again later
  dialogs.confirmations = {true};
  for (const char* button : {"cmdRefresh", "cmdVer", "cmdAlterar", "cmdEliminar"}) {
    dialogs.Clear();
    Press(*list, button);
    EXPECT_GE(dialogs.messages.size() + dialogs.alerts.size(), 1U) << button;
  }
  EXPECT_EQ(Rows(*list).Rows().size(), 4U);
  frmTabHeader another(world.desk);
  EXPECT_FALSE(another.Load());
}

TEST_F(PeriodForms, TheTabKeyFollowsTheEye) {
  const auto entry = OpenEntry(HeaderMode::New);
  std::vector<std::string> columns;
  QWidget* first = &Find(*entry, "txtHeader_FiscalYear");
  QWidget* field = first;
  do {
    const QString column = field->property(kColumnProperty).toString();
    if (!column.isEmpty()) columns.push_back(FromQt(column));
    field = field->nextInFocusChain();
  } while (field != first);
  EXPECT_THAT(columns,
              ElementsAre("FiscalYear", "TaxAccountingBasis", "StartDate", "EndDate", "CompanyID",
                          "TaxRegistrationNumber", "CompanyName", "BusinessName", "TaxEntity", "CurrencyCode",
                          "Cliente", "AddressDetail", "StreetName", "BuildingNumber", "City", "PostalCode",
                          "Region", "Country", "Telephone", "Fax", "Email", "WebSite", "AuditFileVersion",
                          "DateCreated", "ProductID", "ProductVersion", "ProductCompanyTaxId",
                          "SoftwareCertificateNumber", "HeaderComment"));
}

TEST_F(PeriodForms, EverythingFitsASmallScreen) {
  const auto entry = OpenEntry(HeaderMode::Change, 2);
  EXPECT_LE(entry->width(), 1366);
  EXPECT_LE(entry->height(), 700) << "the screen, without title and task bar";
  for (const auto* label : entry->findChildren<QLabel*>()) {
    if (label->objectName() == "lblCliente") continue;
    EXPECT_GE(label->width(), label->sizeHint().width()) << FromQt(label->text());
  }
}

}  // namespace
}  // namespace korvel::desktop
