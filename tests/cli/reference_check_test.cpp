#include "support/reference_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvel::test {
namespace {

/// A small file in which all holds: an invoice, a removed one, and the entry of the first.
constexpr std::string_view kSound = R"(<AuditFile><MasterFiles>
<GeneralLedger><AccountID>2111</AccountID></GeneralLedger><GeneralLedger><AccountID>711</AccountID></GeneralLedger>
<Customer><CustomerID>501</CustomerID><AccountID>2111</AccountID></Customer>
<Customer><CustomerID>999999990</CustomerID><AccountID>Desconhecido</AccountID></Customer>
<Product><ProductCode>PAO</ProductCode></Product>
<TaxTable><TaxTableEntry><TaxType>IVA</TaxType><TaxCountryRegion>PT</TaxCountryRegion><TaxCode>NOR</TaxCode>
<TaxPercentage>23</TaxPercentage></TaxTableEntry></TaxTable></MasterFiles>
<GeneralLedgerEntries><NumberOfEntries>2</NumberOfEntries><TotalDebit>12.30</TotalDebit><TotalCredit>12.30</TotalCredit>
<Journal><Transaction><TransactionID>2025-01-02 01 1FAC</TransactionID><CustomerID>501</CustomerID>
<Line><AccountID>2111</AccountID><DebitAmount>12.30</DebitAmount></Line>
<Line><AccountID>711</AccountID><CreditAmount>12.30</CreditAmount></Line></Transaction></Journal></GeneralLedgerEntries>
<SourceDocuments><SalesInvoices><NumberOfEntries>1</NumberOfEntries><TotalDebit>0.00</TotalDebit><TotalCredit>10.00</TotalCredit>
<Invoice><InvoiceNo>FAC 2025/1</InvoiceNo><InvoiceStatus>N</InvoiceStatus><TransactionID>2025-01-02 01 1FAC</TransactionID>
<CustomerID>501</CustomerID><Line><ProductCode>PAO</ProductCode><CreditAmount>10.00</CreditAmount><Tax><TaxType>IVA</TaxType>
<TaxCountryRegion>PT</TaxCountryRegion><TaxCode>NOR</TaxCode><TaxPercentage>23.00</TaxPercentage></Tax></Line>
<DocumentTotals><TaxPayable>2.30</TaxPayable><NetTotal>10.00</NetTotal><GrossTotal>12.30</GrossTotal></DocumentTotals></Invoice>
<Invoice><InvoiceNo>FAC 2025/2</InvoiceNo><InvoiceStatus>A</InvoiceStatus><CustomerID>999999990</CustomerID>
<Line><ProductCode>PAO</ProductCode><CreditAmount>1.00</CreditAmount><Tax><TaxType>IVA</TaxType>
<TaxCountryRegion>PT</TaxCountryRegion><TaxCode>NOR</TaxCode><TaxPercentage>23.00</TaxPercentage></Tax></Line>
<DocumentTotals><TaxPayable>0.23</TaxPayable><NetTotal>1.00</NetTotal><GrossTotal>1.23</GrossTotal></DocumentTotals></Invoice>
</SalesInvoices></SourceDocuments></AuditFile>)";

TEST(ReferenceCheck, FindsNothingInASoundFile) {
  EXPECT_EQ(BrokenReferences(kSound, FileScope::Whole), std::vector<std::string>{});
  EXPECT_EQ(BrokenReferences("<AuditFile>", FileScope::Whole), std::vector<std::string>{"not well-formed"});
}

TEST(ReferenceCheck, ListsEveryViolation) {
  std::string broken(kSound);
  const auto change = [&](std::string_view from, std::string_view to) {
    const auto at = broken.find(from);
    ASSERT_NE(at, broken.npos) << from;
    broken.replace(at, from.size(), to);
  };
  change("<AccountID>711</AccountID></GeneralLedger>", "<AccountID>712</AccountID></GeneralLedger>");
  change("<Product><ProductCode>PAO", "<Product><ProductCode>BROA");
  change("<TaxPercentage>23<", "<TaxPercentage>22<");
  change("1FAC</TransactionID><CustomerID>501", "1FAC</TransactionID><CustomerID>502");
  change("<DebitAmount>12.30", "<DebitAmount>12.40");
  change("<TransactionID>2025-01-02 01 1FAC</TransactionID>\n<CustomerID>501",
         "<TransactionID>2025-01-02 01 2FAC</TransactionID>\n<CustomerID>503");
  change("<NetTotal>10.00", "<NetTotal>10.01");
  change("<NumberOfEntries>1<", "<NumberOfEntries>2<");
  const std::vector<std::string> references{
      "2025-01-02 01 1FAC: no customer \"502\"",
      "2025-01-02 01 1FAC: no account \"711\"",
      "2025-01-02 01 1FAC does not balance",
      "the ledger does not balance",
      "FAC 2025/1: no customer \"503\"",
      "FAC 2025/1: no transaction \"2025-01-02 01 2FAC\"",
      "FAC 2025/1: no product \"PAO\"",
      "FAC 2025/1: no tax \"IVA PT NOR 23\"",
      "FAC 2025/1: NetTotal is not that of its lines",
      "FAC 2025/1: GrossTotal is not NetTotal and TaxPayable",
      "FAC 2025/2: no product \"PAO\"",
      "FAC 2025/2: no tax \"IVA PT NOR 23\"",
  };
  EXPECT_EQ(BrokenReferences(broken, FileScope::Part), references);
  const auto whole = BrokenReferences(broken, FileScope::Whole);
  EXPECT_EQ(whole.size(), references.size() + 2);
  EXPECT_THAT(whole, testing::IsSupersetOf({"GeneralLedgerEntries TotalDebit is 12.30, the file holds 12.4",
                                            "SalesInvoices NumberOfEntries is 2, the file holds 1"}));
}

}  // namespace
}  // namespace korvel::test
