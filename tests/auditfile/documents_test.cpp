#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "staged_company.h"
#include "support/schema_check.h"

namespace korvel::auditfile {
namespace {

using periods::Basis;
using test::Cell;
using test::CountOf;
using test::OneLine;
using test::StagedCompany;
using testing::ElementsAre;

using Cells = std::initializer_list<Cell>;

/// The text from the first `from` to the end of the first `to` behind it.
std::string Between(std::string_view text, std::string_view from, std::string_view to) {
  const auto begin = text.find(from);
  if (begin == std::string_view::npos) return {};
  const auto end = text.find(to, begin);
  return std::string(text.substr(begin, end == std::string_view::npos ? end : end + to.size() - begin));
}

ExportOptions DocumentsAlone(const StagedCompany& company) {
  ExportOptions options;
  options.txtPastaExportacao = company.target.Path().string();
  options.chkGESTSourceDocuments = true;
  return options;
}

/// Documents and their lines: "FT 2010/1: 1 10 2; FT 2010/2: 1". What is between the tags of a line number and of a
/// document number.
std::string Outline(std::string_view file) {
  std::string outline;
  for (std::size_t at = file.find('<'); at != std::string_view::npos; at = file.find('<', at + 1)) {
    const auto textOf = [&](std::string_view tag) {
      return std::string(file.substr(at + tag.size(), file.find('<', at + 1) - at - tag.size()));
    };
    if (file.substr(at).starts_with("<InvoiceNo>")) {
      outline += (outline.empty() ? "" : "; ") + textOf("<InvoiceNo>") + ":";
    }
    if (file.substr(at).starts_with("<LineNumber>")) outline += " " + textOf("<LineNumber>");
  }
  return outline;
}

const char* const kDocument = R"(
<SourceDocuments>
  <SalesInvoices>
    <NumberOfEntries> 2x</NumberOfEntries><TotalDebit>0.00</TotalDebit><TotalCredit>1234.50</TotalCredit>
    <Invoice>
      <InvoiceNo>FT 2010/1</InvoiceNo><InvoiceStatus>N</InvoiceStatus><Hash>0</Hash><HashControl>0</HashControl>
      <Period>1</Period><InvoiceDate>2010-01-02</InvoiceDate><InvoiceType>FT</InvoiceType>
      <SelfBillingIndicator>0</SelfBillingIndicator><SystemEntryDate>2010-01-02T09:00:00</SystemEntryDate>
      <CustomerID>500100144</CustomerID>
      <ShipTo>
        <DeliveryID>Cais</DeliveryID><DeliveryDate>2010-01-03</DeliveryDate>
        <Address>
          <BuildingNumber>1</BuildingNumber><StreetName>Rua A</StreetName><AddressDetail>Rua A, 1</AddressDetail>
          <City>Lisboa</City><PostalCode>1000-001</PostalCode><Region>LX</Region><Country>PT</Country>
        </Address>
      </ShipTo>
      <ShipFrom>
        <Address><AddressDetail/><City>Porto</City><PostalCode>4000-001</PostalCode><Country>PT</Country></Address>
      </ShipFrom>
      <Line>
        <LineNumber>1</LineNumber>
        <OrderReferences><OriginatingON>ENCO 2010/9</OriginatingON><OrderDate>2010-01-01</OrderDate></OrderReferences>
        <ProductCode>P1</ProductCode><ProductDescription>Pão</ProductDescription><Quantity>2.5</Quantity>
        <UnitOfMeasure>Uni</UnitOfMeasure><UnitPrice>1234.57</UnitPrice><TaxPointDate>2010-01-02</TaxPointDate>
        <References><CreditNote><Reference>FT 2009/7</Reference><Reason>Troca</Reason></CreditNote></References>
        <Description>Pão de trigo</Description><CreditAmount>1234.50</CreditAmount>
        <Tax>
          <TaxType>IVA</TaxType><TaxCountryRegion>PT</TaxCountryRegion><TaxCode>ISE</TaxCode>
          <TaxPercentage>0.00</TaxPercentage>
        </Tax>
        <TaxExemptionReason>Artigo 9</TaxExemptionReason><SettlementAmount>1.50</SettlementAmount>
      </Line>
      <DocumentTotals>
        <TaxPayable>0.00</TaxPayable><NetTotal>1234.50</NetTotal><GrossTotal>1234.50</GrossTotal>
        <Currency><CurrencyCode>USD</CurrencyCode><CurrencyCreditAmount>1500.00</CurrencyCreditAmount></Currency>
        <Settlement><SettlementDate>2010-02-01</SettlementDate><PaymentMechanism>NU</PaymentMechanism></Settlement>
      </DocumentTotals>
    </Invoice>
  </SalesInvoices>
</SourceDocuments></AuditFile>)";

TEST(Documents, AFullDocumentByteForByte) {
  StagedCompany company;
  company.AddHeader("F");
  company.AddDocument("FT 2010/1", "00001",
                      {{"NumberOfEntries", " 2x"},
                       {"TotalCredit", "1.234,50"},
                       {"TransactionID", "2010-01-02 1 1"},
                       {"ShipTo_DeliveryId", "Cais"},
                       {"ShipTo_DeliveryDate", "2010-01-03"},
                       {"ShipTo_BuildingNo", "1"},
                       {"ShipTo_StreetName", "Rua A"},
                       {"ShipTo_AddressDetail", "Rua A, 1"},
                       {"ShipTo_Region", "LX"},
                       {"ShipFrom_AddressDetail", nullptr},
                       {"OriginatingON", "ENCO 2010/9"},
                       {"OrderDate", "2010-01-01"},
                       {"Quantity", "2.5"},
                       {"UnitPrice", "1.234,5678"},
                       {"References", "FT 2009/7"},
                       {"Reason", "Troca"},
                       {"CreditAmount", "1.234,50"},
                       {"Description", "Pão de trigo"},
                       {"TaxCode", "ISE"},
                       {"TaxPercentage", "0"},
                       {"TaxExemptionReason", "Artigo 9"},
                       {"SettlementAmount", "1,5"},
                       {"TaxPayable", "0,00"},
                       {"NetTotal", "1234,5"},
                       {"GrossTotal", "1234,5"},
                       {"CurrencyCode", "USD"},
                       {"CurrencyCreditAmount", "1.500"},
                       {"SettlementDiscount", "9"},
                       {"SettlementAmount1", "9"},
                       {"SettlementDate", "2010-02-01"},
                       {"PaymentMechanism", "NU"}});
  const std::string file = company.Exported(DocumentsAlone(company));
  EXPECT_EQ(Between(file, "<SourceDocuments>", "</AuditFile>"), OneLine(kDocument));
}

TEST(Documents, ElementsByTheirRules) {
  const struct {
    Cells cells;
    std::string_view from, to;
    std::string_view expected;
    int decimals = 2;
  } cases[] = {
      {{{"OrderDate", "2010-01-01"}},
       "<LineNumber>",
       "<ProductCode>",
       "<LineNumber>1</LineNumber><OrderReferences><OrderDate>2010-01-01</OrderDate></"
       "OrderReferences><ProductCode>"},
      {{{"OriginatingON", "  "}, {"LineNumber", " 12x"}},
       "<LineNumber>",
       "<ProductCode>",
       "<LineNumber>12</LineNumber><ProductCode>"},
      {{{"Reason", "R"}},
       "<TaxPointDate>",
       "<Description>",
       "<TaxPointDate>2010-01-02</TaxPointDate><References><CreditNote><Reason>R</Reason></CreditNote></"
       "References>"
       "<Description>"},
      {{{"References", " "}, {"Reason", nullptr}},
       "<TaxPointDate>",
       "<Description>",
       "<TaxPointDate>2010-01-02</TaxPointDate><Description>"},
      {{{"DebitAmount", "0.00"}, {"CreditAmount", " "}},
       "<DebitAmount>",
       "<Tax>",
       "<DebitAmount>0.00</DebitAmount><Tax>"},
      {{{"DebitAmount", "x"}, {"CreditAmount", "1"}},
       "<DebitAmount>",
       "<Tax>",
       "<DebitAmount>0.00</DebitAmount><CreditAmount>1.00</CreditAmount><Tax>"},
      {{{"DebitAmount", nullptr}, {"CreditAmount", nullptr}},
       "<Description>",
       "<Tax>",
       "<Description>Linha</Description><Tax>"},
      {{{"SettlementAmount", "1,5"}, {"TaxPercentage", "5,5"}},
       "<TaxPercentage>",
       "</Line>",
       "<TaxPercentage>5.500</TaxPercentage></Tax><SettlementAmount>1.50</SettlementAmount></Line>",
       3},
      {{{"SettlementAmount", "0,00"}, {"TaxExemptionReason", " "}}, "</Tax>", "</Line>", "</Tax></Line>"},
      {{{"SettlementAmount", nullptr}}, "</Tax>", "</Line>", "</Tax></Line>"},
      {{{"CurrencyCode", " "}, {"CurrencyCreditAmount", "1"}, {"CurrencyDebitAmount", "2"}},
       "<GrossTotal>",
       "</Invoice>",
       "<GrossTotal>12.30</GrossTotal></DocumentTotals></Invoice>"},
      {{{"CurrencyCode", "USD"}, {"CurrencyDebitAmount", "0"}},
       "<Currency>",
       "</Invoice>",
       "<Currency><CurrencyCode>USD</CurrencyCode><CurrencyDebitAmount>0.00</CurrencyDebitAmount></Currency>"
       "</DocumentTotals></Invoice>"},
      {{{"PaymentMechanism", "  "}},
       "</GrossTotal>",
       "</Invoice>",
       "</GrossTotal><Settlement/></DocumentTotals></Invoice>"},
      {{{"SettlementDate", "  "}, {"PaymentMechanism", ""}},
       "</GrossTotal>",
       "</Invoice>",
       "</GrossTotal></DocumentTotals></Invoice>"},
      {{{"SettlementDate", "2010-02-01"}, {"PaymentMechanism", nullptr}},
       "<Settlement>",
       "</Invoice>",
       "<Settlement><SettlementDate>2010-02-01</SettlementDate></Settlement></DocumentTotals></Invoice>"},
      {{{"TaxPayable", nullptr}, {"NetTotal", "-1,005"}},
       "<DocumentTotals>",
       "<GrossTotal>",
       "<DocumentTotals><TaxPayable>0.00</TaxPayable><NetTotal>-1.01</NetTotal><GrossTotal>"},
      {{{"LineNumber", "0"}}, "</ShipFrom>", "<TaxPayable>", "</ShipFrom><DocumentTotals><TaxPayable>"},
      {{{"LineNumber", nullptr}}, "</ShipFrom>", "<TaxPayable>", "</ShipFrom><DocumentTotals><TaxPayable>"},
      {{{"Hash", ""}, {"HashControl", nullptr}, {"CustomerID", " "}},
       "<Hash/>",
       "<Period>",
       "<Hash/><HashControl/><Period>"},
  };
  StagedCompany company;
  company.AddHeader("F");
  for (const auto& each : cases) {
    company.Run(company.session.gBaseDados, "delete from TabSourceDocumentsGEST");
    company.AddDocument("FT 2010/1", "00001", each.cells);
    company.session.gCasasDec = each.decimals;
    EXPECT_EQ(Between(company.Exported(DocumentsAlone(company)), each.from, each.to), each.expected);
  }
}

TEST(Documents, AnIntegratedFileIsValidAndNamesTheTransactions) {
  StagedCompany company;
  company.AddHeader("I");
  company.Add("TabCustomerGEST", {{"CustomerID", "500100144"},
                                  {"AccountID", "211"},
                                  {"CustomerTaxID", "500100144"},
                                  {"CompanyName", "Forno"},
                                  {"AddressDetail", "Rua A"},
                                  {"City", "Lisboa"},
                                  {"PostalCode", "1000-001"},
                                  {"Country", "PT"},
                                  {"Ship_AddressDetail", "Rua A"},
                                  {"Ship_City", "Lisboa"},
                                  {"Ship_PostalCode", "1000-001"},
                                  {"Ship_Country", "PT"},
                                  {"SelfBillingIndicator", "0"}});
  company.Add("TabProductGEST", {{"ProductType", "P"},
                                 {"ProductCode", "P1"},
                                 {"ProductGroup", "Pão"},
                                 {"ProductDescription", "Pão"},
                                 {"ProductNumberCode", "P1"}});
  company.AddLine("01", "2010-01-02 01 7", "1", "1");
  company.AddDocument("FT 2010/1", "00001",
                      {{"TransactionID", "2010-01-02 01 7"}, {"PaymentMechanism", "NU"}});
  company.AddDocument("FT 2010/1", "00002");
  company.AddDocument("NC 2010/1", "00001",
                      {{"TransactionID", "2010-01-02 01 8"},
                       {"InvoiceType", "NC"},
                       {"References", "FT 2010/1"},
                       {"CreditAmount", ""},
                       {"DebitAmount", "1"}});
  const std::string file = company.Exported(company.Options(Basis::Integrated));
  EXPECT_THAT(test::SchemaCheck().Faults(file), testing::IsEmpty());
  EXPECT_EQ(CountOf(file, "</SystemEntryDate><TransactionID>2010-01-02 01 7</TransactionID><CustomerID>"),
            1u);
  EXPECT_EQ(CountOf(file, "</GeneralLedgerEntries><SourceDocuments>"), 1u);

  company.Run(company.session.gBaseDados, "Update TabHeader set TaxAccountingBasis='F'");
  const std::string billing = company.Exported(company.Options(Basis::Billing));
  EXPECT_EQ(CountOf(billing, "<TransactionID>"), 0u);
  EXPECT_EQ(Outline(billing), "FT 2010/1: 1 2; NC 2010/1: 1");
}

TEST(Documents, LinesStandInTheTextOrderOfTheirNumbers) {
  StagedCompany company;
  company.AddHeader("F");
  for (const char* line : {"2", "10", "1", "2"}) company.AddDocument("FT 2010/1", line);
  company.AddDocument("ft 2010/1 ", "3", {{"InvoiceDate", "2010-01-05"}, {"CustomerID", "second"}});
  const std::string file = company.Exported(DocumentsAlone(company));
  EXPECT_EQ(Outline(file), "FT 2010/1: 1 10 2 2 3");
  EXPECT_EQ(CountOf(file, "second"), 0u) << "the first row gives the document's values";
}

TEST(Documents, NeighboursOfOneNumberMerge) {
  StagedCompany company;
  company.AddHeader("F");
  company.AddDocument("A 2010/1", "1", {{"SalesInvoices", "1"}, {"CustomerID", "first"}});
  company.AddDocument("A 2010/1", "2", {{"SalesInvoices", "1"}});
  company.AddDocument("a 2010/1", "3", {{"SalesInvoices", "2"}, {"CustomerID", "merged"}});
  company.AddDocument("B 2010/1", "4", {{"SalesInvoices", "2"}});
  company.AddDocument("A 2010/1", "5", {{"SalesInvoices", "3"}, {"CustomerID", "apart"}});
  const std::string file = company.Exported(DocumentsAlone(company));
  EXPECT_EQ(Outline(file), "A 2010/1: 1 2; B 2010/1: 4; A 2010/1: 5");
  EXPECT_EQ(CountOf(file, "<CustomerID>first<"), 1u);
  EXPECT_EQ(CountOf(file, "merged"), 0u);
  EXPECT_EQ(CountOf(file, "<CustomerID>apart<"), 1u);
}

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
    company.Run(company.session.gBaseDados,
                "Update TabHeader set TaxAccountingBasis='" + std::string(basis) + "'");
    ExportOptions options = DocumentsAlone(company);
    options.chkPOCGeneralLedgerEntries = ledger;
    options.chkPorMeses = months;
    const ExportResult result =
        ExportaSaft(company.Context(), options, {"2010", "2010-01-01", "2010-02-28"}, "", true);
    ASSERT_TRUE(result.ok) << result.error;
    std::string outline = Outline(test::ReadFile(result.files.front()));
    if (months) outline += "; " + Outline(test::ReadFile(result.files.back()));
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
    ExportOptions options = DocumentsAlone(company);
    options.chkPOCGeneralLedgerEntries = options.chkPorMeses = true;
    options.chkFacturacaoAcum = billing;
    options.chkContabilAcum = accounting;
    const ExportResult result =
        ExportaSaft(company.Context(), options, {"2010", "2010-01-01", "2010-03-31"}, "", true);
    EXPECT_TRUE(result.ok) << result.error;
    std::vector<std::string> files;
    for (const std::string& name : result.files) {
      const std::string file = test::ReadFile(name);
      files.push_back(Outline(file) + " +" + std::to_string(CountOf(file, "<Transaction>")));
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
  ExportOptions options = DocumentsAlone(company);
  options.chkPorMeses = true;
  EXPECT_FALSE(ExportaSaft(company.Context(), options, {"2010", "2010-01-01", "2010-03-31"}, "", true).ok);
}

TEST(Documents, ABlankTaxPayableIsRepairedInTheFirstRow) {
  StagedCompany company;
  company.AddHeader("F");
  company.AddDocument("FT 2010/1", "2", {{"TaxPayable", "  "}});
  company.AddDocument("FT 2010/1", "1", {{"TaxPayable", ""}});
  company.AddDocument("FT 2010/2", "1", {{"TaxPayable", "2,5"}});
  company.AddDocument("FT 2010/3", "1", {{"TaxPayable", nullptr}});
  company.AddDocument("FT 2009/3", "1", {{"TaxPayable", ""}, {"FiscalYear", "2009"}});
  EXPECT_EQ(CountOf(company.Exported(DocumentsAlone(company)), "<TaxPayable>0.00</TaxPayable>"), 2u);
  EXPECT_THAT(company.Rows(company.session.gBaseDados,
                           "Select TaxPayable from TabSourceDocumentsGEST order by NumRegisto"),
              ElementsAre("0", "", "2,5", "0", ""));
}

TEST(Documents, ARepairThatFailsEndsTheRunBeforeTheFileStands) {
  StagedCompany company;
  company.AddHeader("F");
  company.AddDocument("FT 2010/1", "1", {{"TaxPayable", ""}});
  company.servers.observer = [](std::string_view statement) {
    if (statement.starts_with("Update TabSourceDocumentsGEST")) {
      throw data::Error(data::Failure::Permission, "no right to write");
    }
  };
  const ExportResult result = company.Export(DocumentsAlone(company));
  EXPECT_EQ(result.error, "no right to write");
  EXPECT_TRUE(std::filesystem::is_empty(company.target.Path()));
}

std::size_t StatementsOf(StagedCompany& company, const ExportOptions& options) {
  company.statements.clear();
  EXPECT_TRUE(company.Export(options).ok);
  return company.statements.size();
}

TEST(Documents, StatementsDoNotGrowWithThem) {
  StagedCompany company;
  company.AddHeader("F");
  const ExportOptions options = DocumentsAlone(company);
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
  company.Run(company.session.gBaseDados, "begin tran " + more + " commit");
  EXPECT_EQ(StatementsOf(company, options), few + 2) << "1200 repairs in three batches of 500";
  EXPECT_EQ(StatementsOf(company, options), few - 1) << "nothing left to repair";
}

}  // namespace
}  // namespace korvel::auditfile
