#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iterator>

#include "auditfile/staged_company.h"
#include "databases/config_upgrade.h"
#include "desktop/desktop_world.h"
#include "forms/auditfile/frm_exporta_saft.h"
#include "gateways/text.h"

namespace korvel::desktop {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::string_view kPeriod = "20102010-01-012010-12-31";

constexpr std::string_view kNoYear = "Não definiu o Ano Fiscal!";
constexpr std::string_view kNoFolder = "Não definiu a Localização para a Exportação!";

/// The export form over a company whose rows a test stages.
class ExportForms : public testing::Test {
 protected:
  ExportForms() : desk(company.servers, {company.dialogs, company.settings, company.clock}) {
    EXPECT_TRUE(databases::EnsureConfigDatabase(company.Context())) << "rights are asked there";
    desk.Session() = company.session;
  }

  /// The form as it opens, its folder the test's.
  std::unique_ptr<frmExportaSAFT> Open() {
    auto form = std::make_unique<frmExportaSAFT>(desk);
    EXPECT_TRUE(form->Load());
    form->openPath = [this](const std::string& path) { opened.push_back(path); };
    form->show();
    Find<QLineEdit>(*form, "txtPastaExportacao").setText(ToQt(company.target.Path().string()));
    return form;
  }
  std::unique_ptr<frmExportaSAFT> OpenOnPeriod() {
    auto form = Open();
    Find<SelOpta>(*form, "eselFiscalYear").SetChave(kPeriod);
    return form;
  }
  void SetEnd(std::string_view end) {
    company.Run(company.session.gBaseDados, "Update TabHeader set EndDate='" + std::string(end) + "'");
  }
  std::string FileName(std::string_view ending) const {
    return (company.target / ("508123453_2010_2010-01-01_2010-12-31_" + std::string(ending))).string();
  }

  test::StagedCompany company;
  Desk desk;
  std::vector<std::string> opened;
};

/// The boxes that are ticked, or enabled.
std::vector<std::string> Boxes(QWidget& form, bool (QAbstractButton::*is)() const) {
  std::vector<std::string> names;
  for (const QCheckBox* box : form.findChildren<QCheckBox*>()) {
    if ((box->*is)()) names.push_back(FromQt(box->objectName()));
  }
  return names;
}
std::vector<std::string> Ticked(QWidget& form) {
  return Boxes(form, &QAbstractButton::isChecked);
}
bool IsEnabled(QWidget& form, std::string_view box) {
  return Find<QCheckBox>(form, box).isEnabled();
}
std::vector<std::string> Marked(QWidget& form) {
  std::vector<std::string> names;
  for (const QLabel* label : form.findChildren<QLabel*>()) {
    if (label->objectName().startsWith("pic") && label->isVisible())
      names.push_back(FromQt(label->objectName()));
  }
  return names;
}

TEST_F(ExportForms, TheKindOfThePeriodTicksTheBoxes) {
  company.AddHeader("I");
  auto form = OpenOnPeriod();
  EXPECT_THAT(Ticked(*form),
              ElementsAre("chkHeader", "chkPOCGeneralLedger", "chkPOCSupplier", "chkPOCGeneralLedgerEntries",
                          "chkGESTCustomer", "chkGESTProduct", "chkGESTTaxTable", "chkGESTSourceDocuments"));
  EXPECT_TRUE(IsEnabled(*form, "chkPorMeses") && IsEnabled(*form, "chkFacturacaoAcum") &&
              IsEnabled(*form, "chkContabilAcum"));
  EXPECT_THAT(FromQt(form->windowTitle()), testing::HasSubstr("2010")) << "the period is in the title";

  company.Run(company.session.gBaseDados, "Update TabHeader set TaxAccountingBasis='C',EndDate='2010-01-31'");
  ASSERT_TRUE(form->Load());
  Find<QCheckBox>(*form, "chkPorMeses").setChecked(true);
  Find<SelOpta>(*form, "eselFiscalYear").SetChave("20102010-01-012010-01-31");
  EXPECT_THAT(Ticked(*form), ElementsAre("chkHeader", "chkPOCGeneralLedger", "chkPOCCustomer",
                                         "chkPOCSupplier", "chkPOCTaxTable", "chkPOCGeneralLedgerEntries"));
  EXPECT_FALSE(IsEnabled(*form, "chkPorMeses")) << "one month";
  EXPECT_FALSE(IsEnabled(*form, "chkFacturacaoAcum"));
  EXPECT_TRUE(IsEnabled(*form, "chkContabilAcum"));
}

TEST_F(ExportForms, TheRowsOfThePeriodAreCounted) {
  company.AddHeader("C");
  company.Add("TabCustomerPOC", {{"CustomerID", "1"}});
  company.Add("TabCustomerPOC", {{"CustomerID", "2"}});
  company.Add("TabCustomerPOC", {{"CustomerID", "3"}, {"FiscalYear", "2011"}});
  company.AddLine("01", "A", "1", "1");
  auto form = OpenOnPeriod();
  EXPECT_EQ(Find<QLabel>(*form, "lbPOCCustomer").text(), "2");
  EXPECT_EQ(Find<QLabel>(*form, "lblPOCGeneralLedgerEntries").text(), "1");
  EXPECT_EQ(Find<QLabel>(*form, "lblGESTSourceDocuments").text(), "0");
}

TEST_F(ExportForms, PeriodsOfAnEarlierVersionAreNotOffered) {
  company.AddHeader("Contabilidade");
  auto form = Open();
  EXPECT_EQ(Find<SelOpta>(*form, "eselFiscalYear").count(), 0);
}

TEST_F(ExportForms, RefusalsPutTheCursorInTheField) {
  company.AddHeader("C");
  auto form = Open();
  Press(*form, "cmdProcessar");
  EXPECT_EQ(company.dialogs.LastText(), kNoYear);
  EXPECT_EQ(company.dialogs.messages.back().icon, toolkit::Icon::Critical);
  EXPECT_EQ(company.dialogs.LastFocus(), "eselFiscalYear");

  form = OpenOnPeriod();
  Find<QLineEdit>(*form, "txtPastaExportacao").setText("  ");
  Press(*form, "cmdProcessar");
  EXPECT_EQ(company.dialogs.LastText(), kNoFolder);
  EXPECT_EQ(company.dialogs.LastFocus(), "txtPastaExportacao");

  form = OpenOnPeriod();
  company.dialogs.answers = {1};
  Press(*form, "cmdProcessar");
  EXPECT_EQ(company.dialogs.questions.back().text, "Confirma a Exportação?");
  EXPECT_TRUE(fs::is_empty(company.target.Path()));
}

TEST_F(ExportForms, OneFileIsToldWithButtonsThatOpenIt) {
  company.AddHeader("C");
  company.Add("TabGeneralLedger", {{"AccountID", "11"}});
  company.AddLine("01", "A", "1", "1");
  auto form = OpenOnPeriod();
  const std::string path = FileName("Saft_Contabilidade.XML");
  for (const std::size_t button : {0u, 1u, 2u}) {
    company.dialogs.answers = {0, button};
    Press(*form, "cmdProcessar");
    EXPECT_EQ(company.dialogs.questions.back().text, "Foram Gerados os Seguintes Ficheiros:\n\n" + path);
  }
  EXPECT_THAT(opened, ElementsAre(path, company.target.Path().string()));
  EXPECT_TRUE(fs::exists(path));
  EXPECT_THAT(company.dialogs.messages, IsEmpty());
  EXPECT_THAT(Marked(*form), ElementsAre("picPOCGeneralLedger", "picPOCCustomer", "picPOCSupplier",
                                         "picPOCGeneralLedgerEntries"))
      << "the sections that were reached";
  EXPECT_TRUE(form->isEnabled());

  auto& period = Find<SelOpta>(*form, "eselFiscalYear");
  period.setCurrentIndex(-1);
  period.SetChave(kPeriod);
  EXPECT_THAT(Marked(*form), IsEmpty());
}

TEST_F(ExportForms, AMonthlyRunListsItsFiles) {
  company.AddHeader("C");
  SetEnd("2010-03-31");
  auto form = Open();
  Find<SelOpta>(*form, "eselFiscalYear").SetChave("20102010-01-012010-03-31");
  Find<QCheckBox>(*form, "chkPorMeses").setChecked(true);
  company.dialogs.answers = {0};
  std::vector<std::string> listed;
  WhenAsked([&](QWidget& box) {
    EXPECT_EQ(box.objectName(), "frmExportaSAFTShowMsgFinal");
    EXPECT_EQ(box.windowTitle(), "Exportação de Ficheiros Saft");
    auto& list = Find<QListWidget>(box, "List1");
    for (int row = 0; row < list.count(); ++row) listed.push_back(FromQt(list.item(row)->text()));
    list.setCurrentRow(1);
    Press(box, "cmdAbrirFicheiro");
    Press(box, "cmdAbrirPasta");
    Press(box, "cmdFechar");
  });
  Press(*form, "cmdProcessar");
  ASSERT_THAT(listed, SizeIs(3));
  EXPECT_TRUE(listed[2].ends_with("_2010-01-01_2010-03-31_3_Saft_Contabilidade.XML")) << listed[2];
  EXPECT_THAT(opened, ElementsAre(listed[1], company.target.Path().string()));
  EXPECT_THAT(company.dialogs.messages, IsEmpty()) << "the list is not told twice";
}

TEST_F(ExportForms, AFailedRunTellsWhyAndTheFormGoesOn) {
  company.AddHeader("C");
  test::WriteFile(company.target / "ficheiro", "");
  auto form = OpenOnPeriod();
  auto& folder = Find<QLineEdit>(*form, "txtPastaExportacao");
  folder.setText(ToQt((company.target / "ficheiro").string()));
  company.dialogs.answers = {0};
  Press(*form, "cmdProcessar");
  EXPECT_EQ(company.dialogs.messages.back().icon, toolkit::Icon::Critical);
  EXPECT_THAT(company.dialogs.LastText(), testing::HasSubstr("o caminho não é uma pasta"));

  folder.setText(ToQt(company.target.Path().string()));
  company.dialogs.answers = {0, 0};
  Press(*form, "cmdProcessar");
  EXPECT_TRUE(fs::exists(FileName("Saft_Contabilidade.XML")));

  company.Run(company.session.gBaseDados, "Delete from TabHeader");
  company.dialogs.answers = {0};
  Press(*form, "cmdProcessar");
  EXPECT_EQ(company.dialogs.LastText(), "Não definiu a Identificação da Empresa - Header")
      << "another user has deleted the period";
  company.dialogs.Clear();
  desk.Session().gBaseDados = "KorvelNone";
  Find<SelOpta>(*form, "eselFiscalYear").setCurrentIndex(-1);
  Find<SelOpta>(*form, "eselFiscalYear").SetChave(kPeriod);
  EXPECT_THAT(company.dialogs.messages, IsEmpty()) << "a choice without a connection says nothing";
  EXPECT_EQ(Find<QLabel>(*form, "lbPOCCustomer").text(), "");
}

/// While it lives no file grows beyond `bytes`, as on a disk without room.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &before_);
    Limit({bytes, before_.rlim_max});
  }
  ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  static void Limit(const rlimit& limit) {
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("files cannot be limited");
  }
  rlimit before_{};
};

rlim_t LargestFile(const fs::path& folder) {
  std::uintmax_t largest = 0;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file()) largest = std::max(largest, entry.file_size());
  return largest;
}

TEST_F(ExportForms, AFullDiskIsToldAndTheEarlierFileStays) {
  company.AddHeader("C");
  company.Add("TabGeneralLedger",
              {{"AccountID", "11"}, {"AccountDescription", "Caixa da sede e das filiais"}});
  for (int doubling = 0; doubling < 14; ++doubling) {
    company.Script(
        "Insert into TabGeneralLedger (FiscalYear,StartDate,EndDate,AccountID,AccountDescription) "
        "Select FiscalYear,StartDate,EndDate,AccountID,AccountDescription from TabGeneralLedger");
  }
  auto form = OpenOnPeriod();
  const std::string path = FileName("Saft_Contabilidade.XML");
  test::WriteFile(path, "de antes");
  const rlim_t room = LargestFile(company.folder.Path()) + 100'000;
  {
    const FullDisk full(room);
    company.dialogs.answers = {0};
    Press(*form, "cmdProcessar");
  }
  EXPECT_THAT(company.dialogs.LastText(), testing::HasSubstr("Não foi possível escrever"));
  EXPECT_TRUE(test::ReadFile(path) == "de antes");
  EXPECT_EQ(std::distance(fs::directory_iterator(company.target.Path()), {}), 1) << "nothing half written";

  company.dialogs.answers = {0, 0};
  Press(*form, "cmdProcessar");
  EXPECT_GT(fs::file_size(path), room);
}

TEST_F(ExportForms, TheFolderIsClosedAndKept) {
  const std::string closed = company.target.Path().string() + "/";
  {
    auto form = Open();
    Type(*form, "txtPastaExportacao", company.target.Path().string());
    EXPECT_EQ(form->Folder().Folder(), closed);
    form->close();
  }
  EXPECT_EQ(company.settings.Read("frmExportaSAFT", "LocalizaExporta"), closed);

  frmExportaSAFT again(desk);
  ASSERT_TRUE(again.Load());
  EXPECT_EQ(again.Folder().Folder(), closed);
  again.Folder().choose = [&](QWidget*, const QString& start) {
    EXPECT_EQ(start, ToQt(closed));
    return start + "outra";
  };
  Press(again, "cmdPesquisaPastas");
  EXPECT_EQ(again.Folder().Folder(), closed + "outra/");
  again.Folder().choose = [](QWidget*, const QString&) { return QString(); };
  Press(again, "cmdPesquisaPastas");
  EXPECT_EQ(again.Folder().Folder(), closed + "outra/") << "given up";
}

}  // namespace
}  // namespace korvel::desktop
