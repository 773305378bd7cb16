#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <memory>

#include "accounting/tax_table.h"
#include "accounting/third_parties.h"
#include "billing/customers.h"
#include "billing/tax_table.h"
#include "desktop/desktop_world.h"
#include "forms/accounting/accounting_forms.h"
#include "forms/accounting/frm_customer_ins.h"
#include "forms/accounting/frm_tax_table_ins.h"
#include "forms/billing/billing_forms.h"
#include "gateways/text.h"
#include "security/rights_catalogue.h"
#include "widgets/grid_panel.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {
namespace {

using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::string_view kAccountingQuarter = "20242024-04-012024-06-30";
constexpr std::string_view kBillingQuarter = "20242024-07-012024-09-30";
constexpr std::string_view kIntegratedQuarter = "20242024-10-012024-12-31";

/// One extraction form: what it offers, and the dialogs that its calculation goes through.
struct Extraction {
  std::string_view form;
  std::string_view grid;
  std::string_view table;
  int periods;  // offered
  std::string_view period;
  bool asksFilter = false;
};
constexpr Extraction kAccounts{"frmGeneralLedger", "lvwContas", "TabGeneralLedger", 3,
                               kAccountingQuarter, true};
constexpr Extraction kCustomers{"frmCustomerLunder", "lvwClientes", "TabCustomerPOC", 2, kAccountingQuarter};
constexpr Extraction kTaxes{"frmTaxTableLunder", "lvwImpostos", "TabTaxTablePOC", 2, kAccountingQuarter};
constexpr Extraction kProducts{"frmProductBrevant", "lvwProdutos", "TabProductGEST", 2,
                               kBillingQuarter,     true};
constexpr Extraction kBillingCustomers{"frmCustomerBrevant", "lvwClientes", "TabCustomerGEST", 2,
                                       kBillingQuarter};
constexpr Extraction kBillingTaxes{"frmTaxTableBrevant", "lvwImpostos", "TabTaxTableGEST", 2,
                                   kBillingQuarter};
constexpr Extraction kExtractions[] = {
    kAccounts,    kCustomers, {"frmSupplierLunder", "lvwClientes", "TabSupplierPOC", 3, kIntegratedQuarter},
    kTaxes,       kProducts,  kBillingCustomers,
    kBillingTaxes};

constexpr std::string_view kAllForms[] = {"frmGeneralLedger",         "frmGeneralLedgerEntriesLunder",
                                          "frmCustomerLunder",        "frmSupplierLunder",
                                          "frmTaxTableLunder",        "frmCustomerBrevant",
                                          "frmProductBrevant",        "frmTaxTableBrevant",
                                          "frmSourceDocumentsBrevant"};

/// A journal form, and what has to be staged before.
struct JournalCase {
  std::string_view form;
  std::string_view table;
  int periods;
  std::string_view period;
  std::vector<Extraction> before;
};

class ExtractionForms : public testing::Test {
 protected:
  ExtractionForms() { world.MakeCompany(); }

  std::unique_ptr<Form> Make(std::string_view name) {
    Form* form = MakeAccountingForm(world.desk, name, nullptr);
    return std::unique_ptr<Form>(form != nullptr ? form : MakeBillingForm(world.desk, name, nullptr));
  }
  std::unique_ptr<Form> Open(std::string_view name, std::string_view period) {
    auto form = Make(name);
    EXPECT_TRUE(form->Load());
    form->show();
    Choose(*form, period);
    return form;
  }
  static void Choose(Form& form, std::string_view period) {
    Find<SelOpta>(form, "eselFiscalYear").SetChave(period);
    QApplication::processEvents();
  }
  static GridModel& Rows(QWidget& form, std::string_view grid) {
    return dynamic_cast<GridModel&>(*Find<QAbstractItemView>(form, grid).model());
  }
  static void Select(QWidget& form, std::string_view grid, int row) {
    auto& view = Find<QAbstractItemView>(form, grid);
    view.setCurrentIndex({});
    view.setCurrentIndex(view.model()->index(row, 1));
  }
  /// Presses `cmdCalcular` and goes through the filter, if there is one, by its button.
  static void Calculate(Form& form, const Extraction& kind, std::string_view button = "cmdContinuar") {
    if (kind.asksFilter) WhenAsked([button](QWidget& filter) { Press(filter, button); });
    Press(form, "cmdCalcular");
  }
  void Stage(const Extraction& kind) {
    const auto form = Open(kind.form, kind.period);
    Calculate(*form, kind);
    Press(*form, "cmdGravar");
  }
  std::string Value(std::string_view query) { return world.server.One("Korvel0001", query); }
  std::string Staged(std::string_view table) { return Value("select count(*) from " + std::string(table)); }
  void Change(std::string_view script) { world.server.Run("Korvel0001", script); }

  DesktopWorld world;
  test::ScriptedDialogs& dialogs = world.server.dialogs;
};

TEST_F(ExtractionForms, EachReadsItsSourceAndReplacesWhatIsStaged) {
  for (const Extraction& kind : kExtractions) {
    SCOPED_TRACE(kind.form);
    const auto form = Open(kind.form, kind.period);
    EXPECT_EQ(form->objectName(), ToQt(kind.form));
    EXPECT_THAT(FromQt(form->windowTitle()), StartsWith(std::string(security::FormCaption(kind.form))));
    EXPECT_EQ(Find<SelOpta>(*form, "eselFiscalYear").count(), kind.periods);
    GridModel& rows = Rows(*form, kind.grid);
    EXPECT_EQ(rows.Rows().size(), 0U);
    Calculate(*form, kind);
    ASSERT_GT(rows.TickedCount(), 1U);
    rows.Tick(0, false);
    Press(*form, "cmdGravar");
    EXPECT_THAT(dialogs.messages, IsEmpty());
    EXPECT_EQ(Staged(kind.table), std::to_string(rows.TickedCount()));
    const auto again = Open(kind.form, kind.period);
    EXPECT_EQ(std::to_string(Rows(*again, kind.grid).Rows().size()), Staged(kind.table));
    EXPECT_EQ(again->windowTitle(), form->windowTitle()) << "which names the period that is loaded";
    Press(*form, "cmdFechar");
    EXPECT_FALSE(form->isVisible());
  }
}

TEST_F(ExtractionForms, JournalsAreStagedAndReviewed) {
  const JournalCase cases[] = {
      {"frmGeneralLedgerEntriesLunder", "TabGeneralLedgerEntriesPOC", 3, kAccountingQuarter, {kAccounts}},
      {"frmSourceDocumentsBrevant",
       "TabSourceDocumentsGEST",
       2,
       kBillingQuarter,
       {kBillingCustomers, kBillingTaxes, kProducts}}};
  for (const JournalCase& journal : cases) {
    SCOPED_TRACE(journal.form);
    for (const Extraction& kind : journal.before) Stage(kind);
    const auto form = Open(journal.form, journal.period);
    EXPECT_EQ(Find<SelOpta>(*form, "eselFiscalYear").count(), journal.periods);
    GridModel& rows = Rows(*form, "lvwDocumentos");
    dialogs.answers = {1};
    Press(*form, "cmdCalcular");
    EXPECT_EQ(dialogs.questions.back().text, "Confirma o Processamento?");
    EXPECT_EQ(Staged(journal.table), "0");
    dialogs.answers = {0};
    Press(*form, "cmdCalcular");
    const std::string staged = Staged(journal.table);
    ASSERT_NE(staged, "0");
    dialogs.answers = {1, 0};
    Press(*form, "cmdVerRegistos");
    EXPECT_EQ(dialogs.questions.back().text, "Confirma a visualização de " + staged + " Registos?");
    EXPECT_EQ(rows.Rows().size(), 0U);
    Press(*form, "cmdVerRegistos");
    EXPECT_TRUE(rows.ReadAll());
    EXPECT_EQ(std::to_string(rows.Rows().size()), staged);
    rows.RemoveRow(0);
    Press(*form, "cmdGravar");
    EXPECT_EQ(Staged(journal.table), std::to_string(rows.Rows().size()));
    Press(*form, "cmdLimpaLVW");
    EXPECT_EQ(rows.Rows().size(), 0U);
    EXPECT_THAT(dialogs.messages, IsEmpty());
  }
}

TEST_F(ExtractionForms, NothingHappensWithoutAPeriod) {
  for (const std::string_view name : kAllForms) {
    SCOPED_TRACE(name);
    const auto form = Open(name, "");
    for (const char* button : {"cmdCalcular", "cmdGravar"}) Press(*form, button);
    EXPECT_THAT(dialogs.messages, IsEmpty());
  }
  EXPECT_EQ(Make("frmTabHeader"), nullptr);
}

TEST_F(ExtractionForms, AFilterThatIsLeftReadsNothing) {
  for (const Extraction& kind : {kAccounts, kProducts}) {
    SCOPED_TRACE(kind.form);
    const auto form = Open(kind.form, kind.period);
    Calculate(*form, kind, "cmdCancelar");
    EXPECT_EQ(Rows(*form, kind.grid).Rows().size(), 0U);
  }
}

TEST_F(ExtractionForms, ARowThatLacksAValueIsNamedAndShown) {
  const auto form = Open(kCustomers.form, kCustomers.period);
  Calculate(*form, kCustomers);
  GridModel& rows = Rows(*form, kCustomers.grid);
  rows.Edit([](periods::Grid& grid) { grid[2].cells[accounting::third_party::kCity].clear(); });
  Press(*form, "cmdGravar");
  EXPECT_EQ(dialogs.LastTitle(), "AVISO");
  EXPECT_EQ(dialogs.LastText(), "O Campo [Localidade] está Vazio!\nNão pode Gravar");
  EXPECT_EQ(Find<QAbstractItemView>(*form, kCustomers.grid).currentIndex().row(), 2);
  WhenAsked([](QWidget& correction) {
    EXPECT_EQ(Find<QLineEdit>(correction, "txtCity").text(), "");
    Find<QLineEdit>(correction, "txtCity").setText("Lagoa");
    Press(correction, "cmdGravar");
  });
  Press(*form, "cmdAlterar");
  Press(*form, "cmdGravar");
  EXPECT_EQ(Value("select count(*) from TabCustomerPOC where City='Lagoa'"), "1");
  EXPECT_EQ(dialogs.messages.size(), 1U);
}

TEST_F(ExtractionForms, WithoutRightsNothingIsReadOrWritten) {
  world.desk.Session().gUtilizador = "ana";
  for (const std::string_view name : kAllForms) {
    const auto form = Open(name, kIntegratedQuarter);
    for (const auto& button : security::FindForm(name)->buttons) {
      if (!security::IsGuardable(button.name, button.caption)) continue;
      dialogs.Clear();
      Press(*form, button.name);
      EXPECT_EQ(dialogs.LastText(), "Acesso Negado !") << name << " " << button.name;
    }
  }
}

TEST_F(ExtractionForms, ALostSourceIsToldAndTheGridStays) {
  const auto books = Open(kTaxes.form, kTaxes.period);
  const auto sales = Open(kBillingCustomers.form, kBillingCustomers.period);
  Calculate(*books, kTaxes);
  Calculate(*sales, kBillingCustomers);
  const std::size_t before = Rows(*books, kTaxes.grid).Rows().size();
  world.server.Run("master", "drop database LunderDemo\nGO\ndrop database BrevantDemo");
  Press(*books, "cmdCalcular");
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(Rows(*books, kTaxes.grid).Rows().size(), before);
  Press(*sales, "cmdCalcular");
  EXPECT_EQ(dialogs.messages.size(), 2U);
  Press(*sales, "cmdGravar");
  EXPECT_NE(Staged(kBillingCustomers.table), "0") << "what was read can still be saved";
}

TEST_F(ExtractionForms, ALostCompanyIsToldAndTheGridStays) {
  const auto form = Open(kBillingTaxes.form, kBillingTaxes.period);
  Calculate(*form, kBillingTaxes);
  world.server.Run("master", "drop database Korvel0001");
  dialogs.answers = {0, 0};  // try again later
  Press(*form, "cmdGravar");
  EXPECT_EQ(dialogs.messages.size() + dialogs.alerts.size(), 1U);
  EXPECT_GT(Rows(*form, kBillingTaxes.grid).Rows().size(), 0U);
  Choose(*form, kIntegratedQuarter);
  EXPECT_EQ(Rows(*form, kBillingTaxes.grid).Rows().size(), 0U) << "no rows of another period";
  EXPECT_FALSE(Make(kTaxes.form)->Load());
}

/// A grid of customers, suppliers or taxes whose cells are told apart, and a correction over its second row.
class Corrections : public testing::Test {
 protected:
  void Show(const periods::StagedTable& table) {
    table_ = &table;
    grid_ = std::make_unique<GridModel>(desk, GridColumnsOf(table.columns), true);
    periods::Grid rows(3);
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (std::size_t i = 0; i < table.columns.size(); ++i) {
        rows[row].cells.push_back(std::to_string(row) + "c" + std::to_string(i));
      }
    }
    grid_->SetRows(std::move(rows));
  }
  template <typename Correction>
  std::unique_ptr<Correction> Open() {
    auto form = std::make_unique<Correction>(desk, *table_, *grid_, 1);
    form->show();
    return form;
  }
  void Empty(std::size_t row, std::size_t column) {
    grid_->Edit([&](periods::Grid& rows) { rows[row].cells[column] = "  "; });
  }
  static std::string Text(QWidget& window, std::string_view field) {
    return FromQt(Find<QLineEdit>(window, field).text());
  }
  static void Set(QWidget& window, std::string_view field, std::string_view text) {
    Find<QLineEdit>(window, field).setText(ToQt(text));
  }

  test::ScriptedDialogs dialogs;
  test::MemorySettings settings;
  test::FixedClock clock;
  Desk desk{{}, {dialogs, settings, clock}};
  const periods::StagedTable* table_ = nullptr;
  std::unique_ptr<GridModel> grid_;
};

TEST_F(Corrections, BoxesShowTheirColumnsInBothGrids) {
  const struct {
    const char* box;
    int books;  // of the customers' grid there
    int billing;
  } kBoxes[] = {{"txtCustomerID", 26, 1},  {"txtAccountID", 1, 2},      {"txtCustomerTaxID", 2, 3},
                {"txtCompanyName", 3, 4},  {"txtContact", 4, 5},        {"txtBuildingNumber", 6, 7},
                {"txtStreetName", 7, 8},   {"txtAddressDetail", 8, 9},  {"txtCity", 9, 10},
                {"txtPostalCode", 10, 11}, {"txtRegion", 11, 12},       {"txtCountry", 12, 13},
                {"txtShip_City", 17, 18},  {"txtShip_Country", 20, 21}, {"txtTelephone", 21, 22},
                {"txtFax", 22, 23},        {"txtEmail", 23, 24},        {"txtWebSite", 24, 25}};
  Show(*accounting::Clientes().table);
  const auto books = Open<frmCustomerIns>();
  Show(billing::ClientesTable());
  const auto billing = Open<frmCustomerIns>();
  for (const auto& box : kBoxes) {
    EXPECT_EQ(Text(*books, box.box), "1c" + std::to_string(box.books)) << box.box;
    EXPECT_EQ(Text(*billing, box.box), "1c" + std::to_string(box.billing)) << box.box;
  }
  EXPECT_EQ(FromQt(books->windowTitle()), "Manutenção de Fichas");
}

TEST_F(Corrections, SuppliersHaveNoCodeOfTheirOwn) {
  Show(*accounting::Fornecedores().table);
  const auto form = Open<frmCustomerIns>();
  EXPECT_EQ(Text(*form, "txtCustomerTaxID"), "1c2");
  EXPECT_EQ(form->findChild<QWidget*>("txtCustomerID"), nullptr);
}

TEST_F(Corrections, OnlyTheRowIsWrittenWithoutFills) {
  Show(*accounting::Clientes().table);
  const periods::Grid before = grid_->Rows();
  const auto form = Open<frmCustomerIns>();
  Set(*form, "txtCompanyName", "Padaria");
  Find<QCheckBox>(*form, "chkSelfBillingIndicator").setChecked(true);
  Press(*form, "cmdGravar");
  EXPECT_FALSE(form->isVisible());
  EXPECT_EQ(grid_->Cell(1, accounting::third_party::kCompanyName), "Padaria");
  EXPECT_EQ(grid_->Cell(1, accounting::third_party::kSelfBilling), "1");
  EXPECT_EQ(grid_->Cell(1, accounting::third_party::kBilingAddress), "1c5");
  EXPECT_EQ(grid_->Rows()[0].cells, before[0].cells);
  EXPECT_EQ(grid_->Rows()[2].cells, before[2].cells);
}

TEST_F(Corrections, LeavingAnAddressFillsItsBlankShippingTwin) {
  Show(billing::ClientesTable());
  Empty(1, billing::customer::kShipCity);
  const auto form = Open<frmCustomerIns>();
  Type(*form, "txtCity", "Lagoa");
  Type(*form, "txtCountry", "ES");
  EXPECT_EQ(Text(*form, "txtShip_City"), "Lagoa");
  EXPECT_EQ(Text(*form, "txtShip_Country"), "1c21") << "which was not blank";
}

TEST_F(Corrections, AFillIsAskedForAndReachesAllRows) {
  using namespace accounting::third_party;
  Show(*accounting::Clientes().table);
  Empty(0, kRegion);
  Empty(2, kRegion);
  Empty(2, kFax);
  grid_->Tick(2, false);
  const auto form = Open<frmCustomerIns>();
  Set(*form, "txtRegion", "Açores");
  auto& fill = Find<QCheckBox>(*form, "chkRegion");
  EXPECT_THAT(FromQt(fill.toolTip()), EndsWith("Aplica-se apenas aos registos vazios"));
  fill.setChecked(true);
  dialogs.answers = {1, 0};
  Press(*form, "cmdGravar");
  EXPECT_EQ(dialogs.questions.back().text, "Confirma o Preenchimento Automático?");
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(grid_->Cell(1, kRegion), "1c11");
  Press(*form, "cmdGravar");
  for (const std::size_t row : {0U, 1U, 2U}) EXPECT_EQ(grid_->Cell(row, kRegion), "Açores");
  EXPECT_EQ(grid_->Cell(2, kFax), "  ");
}

TEST_F(Corrections, LeavingTheFormKeepsTheGrid) {
  Show(accounting::ImpostosTable());
  const periods::Grid before = grid_->Rows();
  const auto form = Open<frmTaxTableIns>();
  dialogs.Clear();  // "1c5" is no date
  Find<QCheckBox>(*form, "chkTaxType").setChecked(true);
  Set(*form, "txtSaft_TaxType", "IS");
  dialogs.answers = {1};
  Press(*form, "cmdGravar");
  Press(*form, "cmdFechar");
  for (std::size_t row = 0; row < before.size(); ++row) {
    EXPECT_EQ(grid_->Rows()[row].cells, before[row].cells);
  }
}

TEST_F(Corrections, ATaxIsCorrectedInBothGrids) {
  for (const auto* table : {&accounting::ImpostosTable(), &billing::ImpostosTable()}) {
    Show(*table);
    grid_->Edit([](periods::Grid& rows) { rows[1].cells[5] = "31-12-2030"; });
    Empty(0, 2);
    const auto form = Open<frmTaxTableIns>();
    EXPECT_EQ(FromQt(form->windowTitle()), R"(Manutenção de "Tax Table")");
    EXPECT_EQ(Text(*form, "txtSaft_TaxType"), "1c1");
    EXPECT_EQ(Text(*form, "edatSaft_TaxExpirationDate"), "31-12-2030");
    Type(*form, "txtSaft_TaxCode", "esp");
    EXPECT_EQ(Text(*form, "txtSaft_Description"), "1c4");
    Type(*form, "txtSaft_TaxCode", "nor");
    EXPECT_EQ(Text(*form, "txtSaft_Description"), "Taxa Normal");
    Set(*form, "txtSaft_TaxCountryRegion", "PT-AC");
    Find<QCheckBox>(*form, "chkTaxCountryRegion").setChecked(true);
    dialogs.answers = {0};
    Press(*form, "cmdGravar");
    EXPECT_EQ(grid_->Cell(1, 3), "NOR");
    EXPECT_EQ(grid_->Cell(1, 5), "31-12-2030");
    EXPECT_EQ(grid_->Cell(0, 2), "PT-AC");
    EXPECT_EQ(grid_->Cell(2, 2), "2c2");
  }
}

TEST_F(Corrections, ABadDateKeepsTheFormOpen) {
  Show(billing::ImpostosTable());
  grid_->Edit([](periods::Grid& rows) { rows[1].cells[5].clear(); });
  const auto form = Open<frmTaxTableIns>();
  Set(*form, "edatSaft_TaxExpirationDate", "31-02-2030");
  Press(*form, "cmdGravar");
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(form->isVisible());
  Press(*form, "cmdGravar");
  EXPECT_EQ(grid_->Cell(1, 5), "") << "the box is empty by then";
}

TEST_F(Corrections, EverythingFitsASmallScreen) {
  Show(*accounting::Clientes().table);
  const auto form = Open<frmCustomerIns>();
  EXPECT_LE(form->width(), 1366);
  EXPECT_LE(form->height(), 700);
  for (const auto* label : form->findChildren<QLabel*>()) {
    EXPECT_GE(label->width(), label->sizeHint().width()) << FromQt(label->text());
  }
}

}  // namespace
}  // namespace korvel::desktop
