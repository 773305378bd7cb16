#include "auditfile/export_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "staged_company.h"

namespace korvel::auditfile {
namespace {

namespace fs = std::filesystem;
using periods::Basis;
using test::CountOf;
using test::StagedCompany;
using testing::ElementsAre;

std::vector<std::string> NamesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
  return names;
}

void StageQuarter(StagedCompany& company) {
  company.AddHeader("C");
  company.Add("TabCustomerPOC", {{"CustomerID", "1"}, {"CompanyName", "Açúcar"}});
  company.AddLine("01", "A", "1", "1");
  company.AddLine("01", "B", "2", "3");
  company.Script("Update TabHeader set EndDate='2010-03-31'");
  for (const char* table : {"TabCustomerPOC", "TabGeneralLedgerEntriesPOC"}) {
    company.Script("Update " + std::string(table) + " set EndDate='2010-03-31'");
  }
}

const periods::PeriodKey kQuarter{"2010", "2010-01-01", "2010-03-31"};

std::vector<std::string> Lines(const ExportResult& result) {
  std::vector<std::string> lines;
  for (const std::string& file : result.files) {
    const std::string text = test::ReadFile(file);
    std::string records;
    for (const char* record : {"1", "2"}) {
      if (CountOf(text, "<RecordID>" + std::string(record) + "</RecordID>") > 0) records += record;
    }
    lines.push_back(records);
  }
  return lines;
}

TEST(ExportRun, OneFileNamedAfterThePeriod) {
  StagedCompany company("C");
  const ExportResult result = ExportaSaft(company.Context(), company.Options(), company.period);
  ASSERT_TRUE(result.ok) << result.error;
  const std::string path =
      (company.target / "508123453_2010_2010-01-01_2010-12-31_Saft_Contabilidade.XML").string();
  EXPECT_THAT(result.files, ElementsAre(path));
  EXPECT_TRUE(fs::exists(path));
  EXPECT_THAT(company.dialogs.Texts(), ElementsAre("Foram Gerados os Seguintes Ficheiros:\n\n" + path));
  EXPECT_EQ(company.progress.open, 0);
}

TEST(ExportRun, AScreenIsToldTheSectionsAndShowsTheFilesItself) {
  StagedCompany company;
  StageQuarter(company);
  ExportOptions options = company.Options();
  options.chkPorMeses = true;
  std::vector<std::string> reached;
  const ExportScreen screen{[&](std::string_view box) { reached.emplace_back(box); }, true};
  ASSERT_TRUE(ExportaSaft(company.Context(), options, kQuarter, "", true, screen).ok);
  EXPECT_THAT(reached, ElementsAre("chkPOCGeneralLedger", "chkPOCCustomer", "chkPOCSupplier",
                                   "chkPOCGeneralLedgerEntries", "chkPOCGeneralLedgerEntries"))
      << "the master data once, the entries in the months that have some";
  EXPECT_TRUE(company.dialogs.messages.empty());
}

TEST(ExportRun, AMonthlyRunWritesAFileAMonth) {
  StagedCompany company;
  StageQuarter(company);
  ExportOptions options = company.Options();
  options.chkPorMeses = true;
  company.statements.clear();
  const ExportResult result = ExportaSaft(company.Context(), options, kQuarter, "", true);
  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_THAT(Lines(result), ElementsAre("1", "", "2"));
  for (std::size_t month = 1; month <= 3; ++month) {
    const std::string& file = result.files[month - 1];
    EXPECT_TRUE(file.ends_with("_2010-01-01_2010-03-31_" + std::to_string(month) + "_Saft_Contabilidade.XML"))
        << file;
    const std::string text = test::ReadFile(file);
    EXPECT_EQ(CountOf(text, "<TaxAccountingBasis>P</TaxAccountingBasis>"), 1u);
    EXPECT_EQ(CountOf(text, "</Header><MasterFiles><Customer><CustomerID>1</CustomerID>"), 1u);
    EXPECT_EQ(CountOf(text,
                      "A\xE7\xFA"
                      "car"),
              1u);
    EXPECT_EQ(CountOf(text, "<TotalDebit>1234.50</TotalDebit>"), month == 2 ? 0u : 1u)
        << "the period's totals";
  }
  const auto readsCustomers = [](const std::string& sql) {
    return sql.find("TabCustomerPOC") != std::string::npos;
  };
  EXPECT_EQ(std::count_if(company.statements.begin(), company.statements.end(), readsCustomers), 1)
      << "master data are read once a run";
  EXPECT_EQ(company.dialogs.LastTitle(), "Exportação de Ficheiros Saft") << "shown in a silent run too";
  EXPECT_TRUE(
      company.dialogs.LastText().starts_with("Foram gerados os seguintes ficheiros:\n" + result.files[0]));

  options.chkContabilAcum = true;
  EXPECT_THAT(Lines(ExportaSaft(company.Context(), options, kQuarter, "", true)),
              ElementsAre("1", "1", "12"));
  options.chkPorMeses = false;
  EXPECT_THAT(Lines(ExportaSaft(company.Context(), options, kQuarter, "", true)), ElementsAre("12"));
}

TEST(ExportRun, WithoutHeaderTheDateStaysAndMonthlyNamesGrow) {
  StagedCompany company;
  StageQuarter(company);
  ExportOptions options = company.Options();
  options.chkHeader = false;
  options.txtPastaExportacao = "";
  const fs::path before = fs::current_path();
  fs::current_path(company.target.Path());
  EXPECT_EQ(CountOf(test::ReadFile(ExportaSaft(company.Context(), options, kQuarter, "", true).files.at(0)),
                    "<Header/><MasterFiles>"),
            1u);
  options.chkPorMeses = true;
  const ExportResult grown = ExportaSaft(company.Context(), options, kQuarter, "", true);
  options.txtPastaExportacao = company.target.Path().string();
  const ExportResult broken = ExportaSaft(company.Context(), options, kQuarter, "", true);
  fs::current_path(before);
  const std::string first = "508123453_2010_2010-01-01_2010-03-31_1_Saft_Contabilidade.XML";
  ASSERT_TRUE(grown.ok) << grown.error;
  EXPECT_EQ(grown.files[0], first);
  EXPECT_EQ(grown.files[1], "508123453_5081_" + first + "_2_Saft_Contabilidade.XML");
  EXPECT_FALSE(broken.ok) << "with a folder the grown name lies in none";
  EXPECT_EQ(broken.files.size(), 1u) << "the first month's file stays";
  EXPECT_EQ(company.Value("Select DateCreated from TabHeader"), "2010-12-31");
}

TEST(ExportRun, AFailureLeavesTheEarlierFileAndTellsItsCause) {
  StagedCompany company("C");
  company.AddLine("01", "A", "1", "1");
  const std::string path = company.Export(company.Options()).files.at(0);
  const std::string earlier = test::ReadFile(path);
  company.clock.now.day = 16;

  company.progress.cancelAfter = company.progress.shown;
  const ExportResult cancelled = company.Export(company.Options());
  EXPECT_THAT(cancelled.error, testing::HasSubstr("cancelada"));
  EXPECT_TRUE(cancelled.cancelled);
  company.progress.cancelAfter = INT64_MAX;

  company.AddLine("01", "A", "2", "1", {{"DebitAmount", "99999999999999999999"}});
  const ExportResult outside = company.Export(company.Options());
  EXPECT_FALSE(outside.ok || outside.cancelled) << "a number outside the range";

  company.Script("drop table TabGeneralLedgerEntriesPOC");
  const ExportResult result = ExportaSaft(company.Context(), company.Options(), company.period);
  EXPECT_FALSE(result.ok);
  EXPECT_THAT(result.error, testing::HasSubstr("TabGeneralLedgerEntriesPOC"));
  EXPECT_TRUE(company.dialogs.messages.empty()) << "a failed run says nothing by itself";
  EXPECT_EQ(test::ReadFile(path), earlier);
  EXPECT_THAT(NamesIn(company.target.Path()), testing::SizeIs(1));
  EXPECT_EQ(company.Value("Select DateCreated from TabHeader"), "2026-01-15");
  EXPECT_EQ(company.progress.open, 0);
}

/// No file of this process grows past a size, as on a full disk.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t bytes) : ignored_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, ignored_);
  }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;

 private:
  void (*ignored_)(int);
  rlimit before_{};
};

TEST(ExportRun, AFullDiskLeavesTheEarlierFileAndSaysSo) {
  StagedCompany company("I");
  company.AddDocument("FT 2010/1", "1", {{"TaxPayable", "1"}});
  ExportOptions options = company.Options(Basis::Integrated);
  const std::string path = company.Export(options).files.at(0);
  const std::string earlier = test::ReadFile(path);
  company.clock.now.day = 16;
  company.Script("Update TabSourceDocumentsGEST set Description=replicate('x',1000),InvoiceNo='FT 2010/2'");
  // The server's own files are made while there is room.
  const auto master = company.Open("master");
  const auto database = company.Open(company.session.gBaseDados);
  for (const std::size_t size : {std::size_t{0}, earlier.size() / 2, earlier.size()}) {
    const SizeLimit full(size);
    const ExportResult result = company.Export(options);
    EXPECT_FALSE(result.ok) << size;
    EXPECT_THAT(result.files, testing::IsEmpty());
    EXPECT_EQ(result.error,
              "Não foi possível escrever \"" + path + "\": o ficheiro excede o tamanho permitido");
  }
  EXPECT_EQ(test::ReadFile(path), earlier);
  EXPECT_THAT(NamesIn(company.target.Path()), testing::SizeIs(1));
  EXPECT_EQ(company.Value("Select DateCreated from TabHeader"), "2026-01-15");
  EXPECT_TRUE(company.Export(options).ok) << "with room again";
}

TEST(ExportRun, AFolderThatIsNoneFailsBeforeAnythingIsWritten) {
  StagedCompany company("C");
  test::WriteFile(company.target / "file", "");
  ExportOptions options = company.Options();
  options.txtPastaExportacao = (company.target / "file").string();
  const ExportResult result = company.Export(options);
  EXPECT_FALSE(result.ok);
  EXPECT_THAT(result.error, testing::HasSubstr("o caminho não é uma pasta"));
  EXPECT_EQ(company.Value("Select DateCreated from TabHeader"), "2010-12-31");
}

TEST(ExportRun, WithoutPeriodOrServerItSaysSoUnlessSilent) {
  StagedCompany company;
  ExportOptions options = company.Options();
  EXPECT_FALSE(company.Export(options).ok);
  EXPECT_TRUE(company.dialogs.messages.empty());
  EXPECT_EQ(ExportaSaft(company.Context(), options, company.period).error,
            "Não definiu a Identificação da Empresa - Header");
  EXPECT_THAT(company.dialogs.Texts(), ElementsAre("Não definiu a Identificação da Empresa - Header"));

  company.dialogs.Clear();
  company.session.gBaseDados = "KorvelNone";
  EXPECT_FALSE(company.Export(options).error.empty());
  EXPECT_TRUE(company.dialogs.messages.empty());
  EXPECT_FALSE(ExportaSaft(company.Context(), options, company.period).ok);
  EXPECT_EQ(company.dialogs.messages.size(), 1u);
}

/// Ends the process, as nothing else could, when the section is reached.
class KillingProgress final : public toolkit::Progress {
 public:
  explicit KillingProgress(std::string_view section) : section_(section) {}
  void Begin(std::string_view caption, std::int64_t) override { reached_ = caption.starts_with(section_); }
  bool Show(std::int64_t, std::string_view) override {
    if (reached_) ::raise(SIGKILL);
    return true;
  }
  void End() override {}

 private:
  std::string_view section_;
  bool reached_ = false;
};

TEST(ExportRun, AKilledRunLeavesTheEarlierFileAndTheNextClearsUp) {
  StagedCompany company("C");
  company.AddLine("01", "A", "1", "1");
  const std::string path = company.Export(company.Options()).files.at(0);
  const std::string earlier = test::ReadFile(path);
  const pid_t child = ::fork();
  if (child == 0) {
    KillingProgress killer("General Ledger Entries");
    const session::Context context{company.session, company.servers,  company.dialogs,
                                   killer,          company.settings, company.clock};
    ExportaSaft(context, company.Options(), company.period, "", true);
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(test::ReadFile(path), earlier);
  EXPECT_THAT(NamesIn(company.target.Path()), testing::SizeIs(2)) << "killed while it wrote";
  EXPECT_TRUE(company.Export(company.Options()).ok);
  EXPECT_THAT(NamesIn(company.target.Path()), testing::SizeIs(1));
}

TEST(ExportChoices, KindOfAPeriod) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"I", "I"}, {"C", "C"}, {"F", "G"}, {"Contabilidade", ""}};
  StagedCompany company("C");
  for (const auto& [basis, kind] : cases) {
    company.SetBasis(basis);
    EXPECT_EQ(TipoSistemaPeriodo(company.Context(), company.period), kind);
    EXPECT_EQ(TipoSistemaPeriodo(company.Context(), "20102010-01-012010-12-31"), kind);
    EXPECT_EQ(TipoSistemaPeriodo(company.Context(), "2011"), "");
  }
}

TEST(ExportChoices, BoxesByBasisAndPeriod) {
  EXPECT_FALSE(ChoicesFor(Basis::Accounting, {"2010", "2010-03-01", "2010-03-31"}).chkPorMeses);
  EXPECT_TRUE(ChoicesFor(Basis::Accounting, {"2010", "2010-03-01", "2010-04-30"}).chkPorMeses);
  const ExportOptions integrated = OptionsFor(Basis::Integrated);
  EXPECT_TRUE(integrated.chkPOCSupplier && integrated.chkGESTCustomer && !integrated.chkPOCCustomer);
  const ExportOptions accounting = OptionsFor(Basis::Accounting);
  EXPECT_TRUE(accounting.chkPOCTaxTable && !accounting.chkGESTSourceDocuments && accounting.chkHeader);
}

TEST(ExportChoices, APeriodThatIsThereIsOffered) {
  StagedCompany company;
  EXPECT_FALSE(OfferFor(company.Context(), company.period));
  EXPECT_EQ(company.dialogs.LastText(), "Não definiu a Identificação da Empresa - Header");
  company.AddHeader("F");
  const auto offer = OfferFor(company.Context(), company.period);
  ASSERT_TRUE(offer);
  EXPECT_TRUE(offer->options.chkGESTProduct && !offer->options.chkPOCSupplier);
  EXPECT_TRUE(offer->choices.chkFacturacaoAcum && !offer->choices.chkContabilAcum);
  company.dialogs.Clear();
  company.session.gBaseDados = "KorvelNone";
  EXPECT_FALSE(OfferFor(company.Context(), company.period));
  EXPECT_TRUE(company.dialogs.messages.empty()) << "without a connection it says nothing";
}

TEST(ExportChoices, CountsTheRowsOfThePeriodAlone) {
  StagedCompany company;
  company.Add("TabSupplierPOC", {{"SupplierID", "1"}});
  company.Add("TabSupplierPOC", {{"SupplierID", "2"}});
  company.Add("TabSupplierPOC", {{"SupplierID", "3"}, {"FiscalYear", "2011"}});
  const auto connection = company.Open(company.session.gBaseDados);
  const std::vector<SectionCount> counts = CountSections(*connection, company.period);
  ASSERT_EQ(counts.size(), 9u);
  EXPECT_EQ(counts[2].section, "chkPOCSupplier");
  EXPECT_EQ(counts[2].rows, 2);
  EXPECT_EQ(counts[1].rows, 0);
}

}  // namespace
}  // namespace korvel::auditfile
