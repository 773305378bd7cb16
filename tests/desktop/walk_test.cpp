#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <filesystem>
#include <sstream>

#include "cli/program.h"
#include "desktop/desktop_world.h"
#include "gateways/text.h"
#include "shell/application.h"
#include "widgets/grid_panel.h"
#include "widgets/sel_opta.h"

namespace korvel::desktop {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

constexpr std::string_view kPeriod = "20252025-01-012025-12-31";
constexpr const char* kCorrectedCity = "Angra do Heroismo";

/// The whole road of a period at a desk, in the demonstration company's books.
class Walk : public testing::Test {
 protected:
  Walk() {
    world.MakeCompany();
    world.desk.Session() = {};
  }

  QWidget& Window(std::string_view name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == ToQt(name) && window->isVisible()) return *window;
    }
    throw std::runtime_error("no window " + std::string(name) + "; " + dialogs.LastText());
  }
  /// Opens the form of a menu entry.
  QWidget& Open(const char* entry, std::string_view form) {
    QWidget& menu = Window("WMenu");
    menu.findChild<QAction*>(entry)->trigger();
    QApplication::processEvents();
    return Find(menu, form);
  }
  QWidget& OpenOnPeriod(const char* entry, std::string_view form) {
    QWidget& window = Open(entry, form);
    auto& period = Find<SelOpta>(window, "eselFiscalYear");
    period.SetChave(kPeriod);
    EXPECT_TRUE(period.Found()) << form;
    return window;
  }
  static GridModel& Model(QWidget& window, std::string_view grid) {
    return dynamic_cast<GridModel&>(*Find<QAbstractItemView>(window, grid).model());
  }

  void Enter();
  void MakePeriodIntegrated();
  void Extract(const char* entry, std::string_view form);
  void ExtractFiltered(const char* entry, std::string_view form);
  void CorrectFirstCustomer(QWidget& customers);
  void ProcessJournal(const char* entry, std::string_view form);
  fs::path Export();
  void ExportByCommand(const fs::path& folder);

  DesktopWorld world;
  test::ScriptedDialogs& dialogs = world.server.dialogs;
  const test::TempFolder target;
  Application application{world.desk, {.programFile = {}, .instanceLock = target / "lock", .printer = {}}};
};

void Walk::Enter() {
  ASSERT_TRUE(application.Start(""));
  QWidget& login = Window("frmLogin");
  Type(login, "txtServer", world.server.Name());
  Type(login, "txtLogin", "sa");
  Press(login, "cmdOK");
  QWidget& companies = Window("frmSelEmpresas");
  EXPECT_EQ(Find<QLabel>(companies, "lblCodEmpresa").text(), "0001");
  dialogs.answers = {0};
  companies.findChild<QAction*>("mnuCriaAcc")
      ->trigger();  // the first entry of a new server asks for base rights
  Press(companies, "cmdSelecionar");
  EXPECT_TRUE(Window("WMenu").isVisible());
}

/// The demonstration's period of the year is one of accounting alone.
void Walk::MakePeriodIntegrated() {
  QWidget& periods = Open("mnuTabHeader", "frmTabHeader");
  const periods::Grid& rows = Model(periods, "lvwTabela").Rows();
  const auto year = std::ranges::find_if(rows, [](const periods::GridRow& row) {
    return std::ranges::find(row.cells, "2025-01-01") != row.cells.end();
  });
  ASSERT_NE(year, rows.end());
  auto& list = Find<QAbstractItemView>(periods, "lvwTabela");
  list.setCurrentIndex(list.model()->index(static_cast<int>(year - rows.begin()), 1));
  WhenAsked([](QWidget& card) {
    Find<SelOpta>(card, "eselHeader_TaxAccountingBasis").SetChave("I");
    Press(card, "cmdGravar");
  });
  Press(periods, "cmdAlterar");
}

void Walk::Extract(const char* entry, std::string_view form) {
  QWidget& window = OpenOnPeriod(entry, form);
  Press(window, "cmdCalcular");
  Press(window, "cmdGravar");
}

void Walk::ExtractFiltered(const char* entry, std::string_view form) {
  WhenAsked([](QWidget& filter) { Press(filter, "cmdContinuar"); });
  Extract(entry, form);
}

void Walk::CorrectFirstCustomer(QWidget& customers) {
  auto& list = Find<QAbstractItemView>(customers, "lvwClientes");
  list.setCurrentIndex(list.model()->index(0, 1));
  WhenAsked([](QWidget& card) {
    Type(card, "txtCity", kCorrectedCity);
    Press(card, "cmdGravar");
  });
  Press(customers, "cmdAlterar");
  Press(customers, "cmdGravar");
}

void Walk::ProcessJournal(const char* entry, std::string_view form) {
  QWidget& window = OpenOnPeriod(entry, form);
  dialogs.answers = {0};
  Press(window, "cmdCalcular");
}

fs::path Walk::Export() {
  QWidget& window = OpenOnPeriod("mnuExportaSAFT", "frmExportaSAFT");
  for (const char* count :
       {"lblPOCGeneralLedger", "lblPOCSupplier", "lblPOCGeneralLedgerEntries", "lblGESTCustomer",
        "lblGESTProduct", "lblGESTTaxTable", "lblGESTSourceDocuments"}) {
    EXPECT_GT(Find<QLabel>(window, count).text().toInt(), 0) << count;
  }
  fs::create_directory(target / "desktop");
  Type(window, "txtPastaExportacao", (target / "desktop").string());
  dialogs.answers = {0, 0};
  Press(window, "cmdProcessar");
  for (const auto& made : fs::directory_iterator(target / "desktop")) return made.path();
  return {};
}

void Walk::ExportByCommand(const fs::path& folder) {
  fs::create_directory(folder);
  std::ostringstream out, err;
  const std::vector<std::string> arguments{
      "exportar",   "--servidor", world.server.Name(), "--empresa",  "0001",
      "--ano",      "2025",       "--inicio",          "2025-01-01", "--fim",
      "2025-12-31", "--pasta",    folder.string()};
  const cli::CommandEnvironment environment{.out = out,
                                            .err = err,
                                            .errIsTerminal = false,
                                            .serversFolder = world.server.folder.Path(),
                                            .programFile = folder / "korvelctl",
                                            .settings = world.server.settings,
                                            .clock = world.server.clock,
                                            .interrupted = {},
                                            .variable = {},
                                            .askSecret = {}};
  EXPECT_EQ(cli::RunKorvelctl(arguments, environment), cli::Exit::Done) << err.str();
}

TEST_F(Walk, FromTheLoginToTheIntegratedFile) {
  ASSERT_NO_FATAL_FAILURE(Enter());
  ASSERT_NO_FATAL_FAILURE(MakePeriodIntegrated());
  dialogs.Clear();
  ExtractFiltered("mnuGeneralLedger", "frmGeneralLedger");
  Extract("mnuSupplierPOC", "frmSupplierLunder");
  ProcessJournal("mnuGeneralLedgerEntries", "frmGeneralLedgerEntriesLunder");
  Extract("mnuCustomerBrevant", "frmCustomerBrevant");
  CorrectFirstCustomer(Find(Window("WMenu"), "frmCustomerBrevant"));
  ExtractFiltered("mnuProdutBrevant", "frmProductBrevant");
  Extract("mnuTaxTableGest", "frmTaxTableBrevant");
  ProcessJournal("mnuSourceDocumentsGest", "frmSourceDocumentsBrevant");
  const fs::path made = Export();
  EXPECT_THAT(dialogs.Texts(), IsEmpty());

  ASSERT_TRUE(made.filename().string().ends_with("_2025_2025-01-01_2025-12-31_Saft_Integrado.XML")) << made;
  const std::string file = test::ReadFile(made);
  EXPECT_NE(file.find(std::string("<City>") + kCorrectedCity), std::string::npos) << "the customer corrected";
  ExportByCommand(target / "command");
  EXPECT_EQ(file, test::ReadFile(target / "command" / made.filename().string()));
}

}  // namespace
}  // namespace korvel::desktop
