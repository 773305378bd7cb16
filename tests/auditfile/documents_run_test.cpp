#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/error.h"
#include "staged_company.h"

namespace korvel::auditfile {
namespace {

using test::Cell;
using test::CountOf;
using test::DocumentOutline;
using test::StagedCompany;
using testing::ElementsAre;

using Cells = std::initializer_list<Cell>;

// The documents' running key is the ledger's, so the first document can be lost. Each file starts anew.
TEST(Documents, TheKeyGoesOnFromTheLedger) {
  const struct {
    std::string_view basis;
    bool ledger, months;
    std::string_view documents;
  } cases[] = {{"I", true, false, "B: 1"},
               {"I", true, true, "B: 1"},
               {"I", false, false, "A1: 1; B: 1"},
               {"F", true, false, "A1: 1; B: 1"}};
  StagedCompany company;
  company.AddHeader("I", {{"EndDate", "2010-02-28"}});
  const Cells february{{"EndDate", "2010-02-28"}};
  company.AddLine("01", "0", "1", "1", february);
  for (const char* month : {"1", "2"}) company.AddLine("01", "a1 ", "1", month, february);
  company.AddDocument("A1", "1", {{"Period", "1"}, {"EndDate", "2010-02-28"}});
  company.AddDocument("B", "1", {{"Period", "1"}, {"EndDate", "2010-02-28"}});
  company.AddDocument("A2", "1", {{"Period", "2"}, {"EndDate", "2010-02-28"}, {"SalesInvoices", "2"}});
  for (const auto& [basis, ledger, months, documents] : cases) {
    company.SetBasis(basis);
    ExportOptions options = company.DocumentsAlone();
    options.chkPOCGeneralLedgerEntries = ledger;
    options.chkPorMeses = months;
    const ExportResult result =
        ExportaSaft(company.Context(), options, {"2010", "2010-01-01", "2010-02-28"}, "", true);
    ASSERT_TRUE(result.ok) << result.error;
    std::string outline = DocumentOutline(test::ReadFile(result.files.front()));
    if (months) outline += "; " + DocumentOutline(test::ReadFile(result.files.back()));
    EXPECT_EQ(outline, std::string(documents) + "; A2: 1") << basis << ledger << months;
  }
}

class MonthlyDocuments : public testing::Test {
 protected:
  MonthlyDocuments() {
    company.AddHeader("I", {{"EndDate", "2010-03-31"}});
    for (const char* month : {"1", "3"}) AddDocument(("FT 2010/" + std::string(month)).c_str(), "1", month);
    company.AddLine("01", "A", "1", "1", {{"EndDate", "2010-03-31"}});
    company.AddLine("01", "B", "1", "2", {{"EndDate", "2010-03-31"}});
  }

  void AddDocument(const char* number, const char* line, const char* month) {
    company.AddDocument(number, line, {{"Period", month}, {"EndDate", "2010-03-31"}});
  }
  /// The documents and how many transactions each month's file has.
  std::vector<std::string> Files(bool billing, bool accounting) {
    ExportOptions options = company.DocumentsAlone();
    options.chkPOCGeneralLedgerEntries = options.chkPorMeses = true;
    options.chkFacturacaoAcum = billing;
    options.chkContabilAcum = accounting;
    const ExportResult result =
        ExportaSaft(company.Context(), options, {"2010", "2010-01-01", "2010-03-31"}, "", true);
    EXPECT_TRUE(result.ok) << result.error;
    std::vector<std::string> files;
    for (const std::string& name : result.files) {
      const std::string file = test::ReadFile(name);
      files.push_back(DocumentOutline(file) + " +" + std::to_string(CountOf(file, "<Transaction>")));
    }
    return files;
  }

  StagedCompany company;
};

TEST_F(MonthlyDocuments, MonthsAndCumulativeMonthsOfBothSides) {
  EXPECT_THAT(Files(false, false), ElementsAre("FT 2010/1: 1 +1", " +1", "FT 2010/3: 1 +0"));
  EXPECT_THAT(Files(true, false),
              ElementsAre("FT 2010/1: 1 +1", "FT 2010/1: 1 +1", "FT 2010/1: 1; FT 2010/3: 1 +0"));
  EXPECT_THAT(Files(false, true), ElementsAre("FT 2010/1: 1 +1", " +2", "FT 2010/3: 1 +2"));
}

TEST_F(MonthlyDocuments, TheLinesOfADocumentComeFromAllMonths) {
  AddDocument("FT 2010/1", "2", "2");
  EXPECT_THAT(Files(false, false), ElementsAre("FT 2010/1: 1 2 +1", "FT 2010/1: 1 2 +1", "FT 2010/3: 1 +0"));
}

TEST_F(MonthlyDocuments, AMonthThatIsNoNumberEndsTheRun) {
  AddDocument("FT 2010/4", "1", "Abril");
  ExportOptions options = company.DocumentsAlone();
  options.chkPorMeses = true;
  EXPECT_FALSE(ExportaSaft(company.Context(), options, {"2010", "2010-01-01", "2010-03-31"}, "", true).ok);
}

TEST(Documents, ABlankTaxPayableIsRepairedInTheFirstRow) {
  StagedCompany company("F");
  company.AddDocument("FT 2010/1", "2", {{"TaxPayable", "  "}});
  company.AddDocument("FT 2010/1", "1", {{"TaxPayable", ""}});
  company.AddDocument("FT 2010/2", "1", {{"TaxPayable", "2,5"}});
  company.AddDocument("FT 2010/3", "1", {{"TaxPayable", nullptr}});
  company.AddDocument("FT 2009/3", "1", {{"TaxPayable", ""}, {"FiscalYear", "2009"}});
  EXPECT_EQ(CountOf(company.Exported(company.DocumentsAlone()), "<TaxPayable>0.00</TaxPayable>"), 2u);
  EXPECT_THAT(company.Rows(company.session.gBaseDados,
                           "Select TaxPayable from TabSourceDocumentsGEST order by NumRegisto"),
              ElementsAre("0", "", "2,5", "0", ""));
}

TEST(Documents, ARepairThatFailsEndsTheRunBeforeTheFileStands) {
  StagedCompany company("F");
  company.AddDocument("FT 2010/1", "1", {{"TaxPayable", ""}});
  company.servers.observer = [](std::string_view statement) {
    if (statement.starts_with("Update TabSourceDocumentsGEST")) {
      throw data::Error(data::Failure::Permission, "no right to write");
    }
  };
  const ExportResult result = company.Export(company.DocumentsAlone());
  EXPECT_EQ(result.error, "no right to write");
  EXPECT_TRUE(std::filesystem::is_empty(company.target.Path()));
}

std::size_t StatementsOf(StagedCompany& company, const ExportOptions& options) {
  company.statements.clear();
  EXPECT_TRUE(company.Export(options).ok);
  return company.statements.size();
}

TEST(Documents, StatementsDoNotGrowWithThem) {
  StagedCompany company("F");
  const ExportOptions options = company.DocumentsAlone();
  company.AddDocument("FT 2010/0", "1", {{"TaxPayable", ""}, {"Invoice", "1"}});
  const std::size_t few = StatementsOf(company, options);
  std::string more;
  for (int i = 1; i <= 1200; ++i) {
    const std::string n = std::to_string(i);
    more +=
        "Insert into TabSourceDocumentsGEST "
        "(FiscalYear,StartDate,EndDate,SalesInvoices,Invoice,InvoiceNo,LineNumber,"
        "TaxPayable) values ('2010','2010-01-01','2010-12-31','','" +
        std::to_string(i % 2) + "','FT 2010/" + n + "','1','') ";
  }
  company.Script("begin tran " + more + " commit");
  EXPECT_EQ(StatementsOf(company, options), few + 2) << "1200 repairs in three batches of 500";
  EXPECT_EQ(StatementsOf(company, options), few - 1) << "nothing left to repair";
}

}  // namespace
}  // namespace korvel::auditfile
