#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "staged_company.h"
#include "support/schema_check.h"

namespace korvel::auditfile {
namespace {

using periods::Basis;
using test::CountOf;
using test::OneLine;
using test::StagedCompany;

constexpr std::string_view kFirstLine = "<?xml version=\"1.0\" encoding=\"windows-1252\"?>\r\n";

void StageSmallPeriod(StagedCompany& company) {
  company.AddHeader(
      "C", {{"BuildingNumber", "1"}, {"HeaderComment", "  "}, {"Region", nullptr}, {"Email", "a@b.pt"}});
  company.AddRow("TabGeneralLedger",
                 "AccountID=21;AccountDescription=Clientes <c/c>;OpeningDebitBalance=12.345;"
                 "OpeningCreditBalance=0");
  company.AddRow("TabGeneralLedger",
                 "AccountID=11;AccountDescription=Caixa;OpeningDebitBalance=5;OpeningCreditBalance=-0.001");
  company.AddRow("TabCustomerPOC",
                 "CustomerID=500100144;AccountID=211;CustomerTaxID=500100144;CompanyName=D'Ávila € \"Ω\";"
                 "AddressDetail=Rua A;City=Lisboa;PostalCode=1000-001;Country=PT;Ship_StreetName=Rua B;"
                 "Ship_AddressDetail=Rua B;Ship_City=Porto;Ship_PostalCode=4000-001;Ship_Country=PT;"
                 "Telephone=1;SelfBillingIndicator=0");
  company.AddRow(
      "TabSupplierPOC",
      "SupplierID=500100155;SupplierTaxID=500100155;CompanyName=Forno;AccountID=221;"
      "AddressDetail=Rua C;City=Faro;PostalCode=8000-001;Country=PT;Ship_AddressDetail=Rua C;"
      "Ship_City=Faro;Ship_PostalCode=8000-001;Ship_Country=PT;Website=w.pt;SelfBillingIndicator=0");
  for (const char* tax : {"TaxCode=RED;Description=Reduzida;TaxPercentage=5.5",
                          "TaxCode=NOR;Description=Normal;TaxPercentage=23",
                          "TaxCode=NOR;Description=Normal;TaxPercentage=23"}) {
    company.AddRow("TabTaxTablePOC", std::string("TaxType=IVA;TaxCountryRegion=PT;") + tax);
  }
  company.AddLine("01", "2010-01-02 01 7", "2", "1",
                  {{"DebitAmount", "1.234,5"}, {"SourceDocumentID", "FT 7"}});
  company.AddLine("01", "2010-01-02 01 7", "10", "1",
                  {{"DebitAmount", "0,00"}, {"CreditAmount", "1234,5"}, {"AccountID", "71"}});
}

const char* const kSmallPeriod = R"(
<AuditFile  xmlns ="urn:OECD:StandardAuditFile-Tax:PT_1.01_01">
  <Header>
    <AuditFileVersion>1.01_01</AuditFileVersion><CompanyID>508123453</CompanyID>
    <TaxRegistrationNumber>508123453</TaxRegistrationNumber><TaxAccountingBasis>C</TaxAccountingBasis>
    <CompanyName>Pão &amp; Filhos, Lda</CompanyName>
    <CompanyAddress>
      <BuildingNumber>1</BuildingNumber><AddressDetail>Rua d'Além, 1</AddressDetail><City>Ponta Delgada</City>
      <PostalCode>9500-053</PostalCode><Country>PT</Country>
    </CompanyAddress>
    <FiscalYear>2010</FiscalYear><StartDate>2010-01-01</StartDate><EndDate>2010-12-31</EndDate>
    <CurrencyCode>EUR</CurrencyCode><DateCreated>2026-01-15</DateCreated><TaxEntity>Sede</TaxEntity>
    <ProductCompanyTaxID>508123453</ProductCompanyTaxID><SoftwareCertificateNumber>0</SoftwareCertificateNumber>
    <ProductID>Korvel/Morvane</ProductID><ProductVersion>1.0.0</ProductVersion><Email>a@b.pt</Email>
  </Header>
  <MasterFiles>
    <GeneralLedger>
      <AccountID>11</AccountID><AccountDescription>Caixa</AccountDescription>
      <OpeningDebitBalance>5.00</OpeningDebitBalance><OpeningCreditBalance>0.00</OpeningCreditBalance>
    </GeneralLedger>
    <GeneralLedger>
      <AccountID>21</AccountID><AccountDescription>Clientes &lt;c/c&gt;</AccountDescription>
      <OpeningDebitBalance>12.35</OpeningDebitBalance><OpeningCreditBalance>0.00</OpeningCreditBalance>
    </GeneralLedger>
    <Customer>
      <CustomerID>500100144</CustomerID><AccountID>211</AccountID><CustomerTaxID>500100144</CustomerTaxID>
      <CompanyName>D'Ávila € "&#937;"</CompanyName>
      <BillingAddress>
        <AddressDetail>Rua A</AddressDetail><City>Lisboa</City><PostalCode>1000-001</PostalCode><Country>PT</Country>
      </BillingAddress>
      <ShipToAddress>
        <StreetName>Rua B</StreetName><AddressDetail>Rua B</AddressDetail><City>Porto</City>
        <PostalCode>4000-001</PostalCode><Country>PT</Country>
      </ShipToAddress>
      <Telephone>1</Telephone><SelfBillingIndicator>0</SelfBillingIndicator>
    </Customer>
    <Supplier>
      <SupplierID>500100155</SupplierID><AccountID>221</AccountID><SupplierTaxID>500100155</SupplierTaxID>
      <CompanyName>Forno</CompanyName>
      <BillingAddress>
        <AddressDetail>Rua C</AddressDetail><City>Faro</City><PostalCode>8000-001</PostalCode><Country>PT</Country>
      </BillingAddress>
      <ShipFromAddress>
        <AddressDetail>Rua C</AddressDetail><City>Faro</City><PostalCode>8000-001</PostalCode><Country>PT</Country>
      </ShipFromAddress>
      <Website>w.pt</Website><SelfBillingIndicator>0</SelfBillingIndicator>
    </Supplier>
    <TaxTable>
      <TaxTableEntry>
        <TaxType>IVA</TaxType><TaxCountryRegion>PT</TaxCountryRegion><TaxCode>RED</TaxCode>
        <Description>Reduzida</Description><TaxPercentage>5.5</TaxPercentage>
      </TaxTableEntry>
      <TaxTableEntry>
        <TaxType>IVA</TaxType><TaxCountryRegion>PT</TaxCountryRegion><TaxCode>NOR</TaxCode>
        <Description>Normal</Description><TaxPercentage>23</TaxPercentage>
      </TaxTableEntry>
    </TaxTable>
  </MasterFiles>
  <GeneralLedgerEntries>
    <NumberOfEntries>3</NumberOfEntries><TotalDebit>1234.50</TotalDebit><TotalCredit>0.00</TotalCredit>
    <Journal>
      <JournalID>01</JournalID><Description>Caixa</Description>
      <Transaction>
        <TransactionID>2010-01-02 01 7</TransactionID><Period>1</Period><TransactionDate>2010-01-02</TransactionDate>
        <SourceID>ANA</SourceID><Description>Venda</Description><DocArchivalNumber>7</DocArchivalNumber>
        <TransactionType>N</TransactionType><GLPostingDate>2010-01-02T09:00:00</GLPostingDate>
        <Line>
          <RecordID>10</RecordID><AccountID>71</AccountID><SystemEntryDate>2010-01-02T09:00:00</SystemEntryDate>
          <Description>Linha</Description><CreditAmount>1234.50</CreditAmount>
        </Line>
        <Line>
          <RecordID>2</RecordID><AccountID>111</AccountID><SourceDocumentID>FT 7</SourceDocumentID>
          <SystemEntryDate>2010-01-02T09:00:00</SystemEntryDate><Description>Linha</Description>
          <DebitAmount>1234.50</DebitAmount>
        </Line>
      </Transaction>
    </Journal>
  </GeneralLedgerEntries>
</AuditFile>)";

TEST(Sections, ASmallPeriodByteForByteAndValid) {
  StagedCompany company;
  StageSmallPeriod(company);
  const std::string file = company.Exported(company.Options());
  EXPECT_EQ(file, std::string(kFirstLine) + OneLine(kSmallPeriod));
  EXPECT_THAT(test::SchemaCheck().Faults(file), testing::IsEmpty());
}

// What the schema does not allow and the system's file has all the same.
TEST(Sections, TheListedExceptionsAreTheSchemasOnlyFaults) {
  StagedCompany company("C");
  company.AddLine("01", "2010-01-02 01 7", "1", "1", {{"DebitAmount", "0"}});
  company.AddLine("01", "2010-01-02 01 7", "2", "1", {{"CreditAmount", "2"}});
  ExportOptions options = company.Options();
  options.chkHeader = false;
  std::string faults;
  for (const std::string& fault : test::SchemaCheck().Faults(company.Exported(options)))
    faults += fault + "\n";
  EXPECT_EQ(CountOf(faults, "}Header': Missing child element"), 1u) << faults;
  EXPECT_EQ(CountOf(faults, "}MasterFiles': Missing child element"), 1u) << faults;
  EXPECT_EQ(CountOf(faults, "}Line': Missing child element"), 1u) << faults;
  EXPECT_EQ(CountOf(faults, "}CreditAmount': This element is not expected"), 1u) << faults;
  EXPECT_EQ(CountOf(faults, "\n"), 4u) << faults;
}

TEST(Sections, HeaderValuesAndOmissions) {
  StagedCompany company;
  company.AddHeader("C",
                    {{"City", "  "}, {"AddressDetail", nullptr}, {"BusinessName", " Pão "}, {"Region", ""}});
  const std::string file = company.Exported(company.Options());
  EXPECT_EQ(CountOf(file, "<AddressDetail/><City>  </City>"), 1u);
  EXPECT_EQ(CountOf(file, OneLine("<BusinessName> Pão </BusinessName>")), 1u);
  EXPECT_EQ(CountOf(file, "<Region"), 0u);
  EXPECT_EQ(company.Value("Select DateCreated from TabHeader"), "2026-01-15");
}

TEST(Sections, TheFilesBasisByPrecedence) {
  StagedCompany company("I");
  ExportOptions options = company.Options(Basis::Integrated);
  const auto basisOf = [&](std::string_view cliente) {
    const ExportResult result = ExportaSaft(company.Context(), options, company.period, cliente, true);
    const std::string file = test::ReadFile(result.files.at(0));
    return file.substr(file.find("<TaxAccountingBasis>") + 20, 1);
  };
  EXPECT_EQ(basisOf(""), "I");
  EXPECT_EQ(basisOf("  "), "I");
  EXPECT_EQ(basisOf("123"), "S");
  options.chkPorMeses = true;
  EXPECT_EQ(basisOf("123"), "P");
}

// Which table each section comes from, told by a name that is unique to each.
TEST(Sections, BoxesAndBasisChooseTheSections) {
  const ExportOptions all = [] {
    ExportOptions options = OptionsFor(Basis::Integrated);
    options.chkPOCCustomer = options.chkPOCTaxTable = true;
    return options;
  }();
  ExportOptions accountingCustomers = all;
  accountingCustomers.chkGESTCustomer = accountingCustomers.chkGESTTaxTable = false;
  const struct {
    std::string_view basis;
    ExportOptions options;
    std::string_view sections;
  } cases[] = {
      {"C", all, "accounts customersPOC suppliers taxesPOC ledger "},
      {"I", all, "accounts customersGEST suppliers products taxesGEST ledger "},
      {"I", accountingCustomers, "accounts customersPOC suppliers products taxesPOC ledger "},
      {"F", all, "customersGEST products taxesGEST "},
      {"F", accountingCustomers, "products "},
      {"Contabilidade", all, ""},
      {"C", ExportOptions(), ""},
  };
  StagedCompany company("C");
  company.Add("TabGeneralLedger", {{"AccountID", "accounts"}});
  company.Add("TabCustomerPOC", {{"CustomerID", "customersPOC"}});
  company.Add("TabCustomerGEST", {{"CustomerID", "customersGEST"}});
  company.Add("TabSupplierPOC", {{"SupplierID", "suppliers"}});
  company.Add("TabProductGEST", {{"ProductCode", "products"}});
  company.Add("TabTaxTablePOC", {{"TaxCode", "taxesPOC"}});
  company.Add("TabTaxTableGEST", {{"TaxCode", "taxesGEST"}});
  company.AddLine("ledger", "1", "1", "1");
  for (const auto& [basis, options, sections] : cases) {
    company.SetBasis(basis);
    ExportOptions here = options;
    here.txtPastaExportacao = company.target.Path().string();
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(company.target.Path());  // where a file of an unknown kind goes
    const std::string file = company.Exported(here);
    std::filesystem::current_path(before);
    std::string found;
    for (std::string_view name : {"accounts", "customersPOC", "customersGEST", "suppliers", "products",
                                  "taxesPOC", "taxesGEST", "ledger"}) {
      if (CountOf(file, ">" + std::string(name) + "<") > 0) found.append(name).append(" ");
    }
    EXPECT_EQ(found, sections) << basis;
  }
}

TEST(Sections, MasterFilesAtTheirEdges) {
  StagedCompany company("I");
  EXPECT_EQ(CountOf(company.Exported(company.Options(Basis::Integrated)), "<MasterFiles/></AuditFile>"), 1u)
      << "no rows: no section, no tax table";

  company.Add("TabCustomerGEST", {{"CustomerID", "1"}});
  company.Add("TabCustomerGEST", {{"CustomerID", "1"}, {"Region", " "}});
  company.Add("TabProductGEST", {{"ProductType", "P"}, {"ProductCode", "1"}, {"ProductNumberCode", ""}});
  for (const char* expiry : {"", "2010-06-30", "2010-06-30"}) {
    company.Add("TabTaxTableGEST",
                {{"TaxType", "IVA"}, {"TaxPercentage", "0"}, {"TaxExpirationDate", expiry}});
  }
  company.Add("TabTaxTableGEST", {{"TaxType", "IVA"}});
  const std::string file = company.Exported(company.Options(Basis::Integrated));
  EXPECT_EQ(CountOf(file,
                    "<Customer><CustomerID>1</CustomerID><AccountID/><CustomerTaxID/><CompanyName/>"
                    "<BillingAddress><AddressDetail/><City/><PostalCode/><Country/></BillingAddress>"
                    "<ShipToAddress><AddressDetail/><City/><PostalCode/><Country/></ShipToAddress>"
                    "<SelfBillingIndicator/></Customer>"),
            2u);
  EXPECT_EQ(CountOf(file, "<ProductDescription/><ProductNumberCode/></Product>"), 1u);
  EXPECT_EQ(CountOf(file, "<TaxTableEntry>"), 3u);
  EXPECT_EQ(CountOf(file, "<Description/><TaxExpirationDate>2010-06-30</TaxExpirationDate><TaxPercentage>0<"),
            1u);
  EXPECT_EQ(CountOf(file, "<Description/><TaxPercentage/>"), 1u);
}

std::string LedgerOf(std::string_view file) {
  const auto begin = file.find("<Journal>");
  return std::string(file.substr(begin, file.find("</GeneralLedgerEntries>") - begin));
}

/// The nesting of a ledger alone: "J01(T1(L1 L2) T2(L3)) ".
std::string Outline(std::string_view ledger) {
  std::string outline;
  const struct {
    std::string_view tag, sign;
    bool withText;
  } kTags[] = {{"<JournalID>", "J", true},
               {"<TransactionID>", "(T", true},
               {"<RecordID>", "-", true},
               {"</Transaction>", ")", false},
               {"</Journal>", " ", false}};
  for (std::size_t at = 0; at < ledger.size(); ++at) {
    for (const auto& [tag, sign, withText] : kTags) {
      if (!ledger.substr(at).starts_with(tag)) continue;
      const std::size_t from = at + tag.size();
      outline += sign;
      if (withText) outline += ledger.substr(from, ledger.find('<', from) - from);
    }
  }
  return outline;
}

TEST(Sections, LedgerGroupsByJournalAndTransaction) {
  StagedCompany company("C");
  company.AddLine("02", "A1", "1", "1");
  company.AddLine("01", "a1 ", "1", "1");
  company.AddLine("01", "A1", "2", "1");
  company.AddLine("01", "A1", "10", "1");
  company.AddLine("01", "B", "3", "1");
  company.AddLine("ca", "B", "4", "1");
  company.AddLine("CA", "b", "5", "1");
  company.AddLine("XXXXXXXXXXXXXXXXXXXX", "XXXXXXXXXXXXXXXXXXXX", "6", "1");
  EXPECT_EQ(Outline(LedgerOf(company.Exported(company.Options()))),
            "J01(Ta1 -1-10-2)(TB-3) J02(TA1-1) Jca(TB-4-5) JXXXXXXXXXXXXXXXXXXXX(TXXXXXXXXXXXXXXXXXXXX-6) ");
}

TEST(Sections, LedgerValues) {
  StagedCompany company("C");
  company.AddLine(
      "01", "1", "1", "1",
      {{"TransactionType", " "}, {"CustomerID", "C"}, {"SupplierID", "S"}, {"NumberOfEntries", " 12x"}});
  company.AddLine("01", "2", "2", "1",
                  {{"TransactionType", "A"}, {"DebitAmount", "abc"}, {"CreditAmount", "-1,005"}});
  company.AddLine("01", "3", "3", "1",
                  {{"TransactionType", nullptr}, {"DebitAmount", nullptr}, {"CreditAmount", "2"}});
  company.AddLine("01", "4", "4", "1", {{"DebitAmount", "0,001"}, {"CreditAmount", "1.000"}});
  const std::string file = company.Exported(company.Options());
  EXPECT_EQ(CountOf(file, "<NumberOfEntries>12</NumberOfEntries>"), 1u);
  EXPECT_EQ(CountOf(file, "<TransactionType>N</TransactionType>"), 3u);
  EXPECT_EQ(CountOf(file, "<TransactionType>A</TransactionType>"), 1u);
  EXPECT_EQ(CountOf(file, "<CustomerID>C</CustomerID><SupplierID>S</SupplierID><Line>"), 1u);
  EXPECT_EQ(CountOf(file, "<Description>Linha</Description><CreditAmount>-1.01</CreditAmount>"), 1u);
  EXPECT_EQ(CountOf(file, "<Description>Linha</Description><CreditAmount>2.00</CreditAmount>"), 1u);
  EXPECT_EQ(CountOf(file, "<DebitAmount>0.00</DebitAmount><CreditAmount>1000.00</CreditAmount>"), 1u)
      << "what is not 0 is written, whatever its decimals leave of it";
}

TEST(Sections, AmountsFollowTheSession) {
  StagedCompany company("C");
  company.AddLine("01", "1", "1", "1", {{"DebitAmount", "1,234.5678"}, {"TotalDebit", "0.5"}});
  company.session.gSepDecimal = ".";
  company.session.gSepMilhar = ",";
  const std::pair<int, std::string_view> cases[] = {
      {0, "1235"}, {1, "1234.6"}, {4, "1234.5678"}, {9, "1234.5678"}};
  for (const auto& [decimals, amount] : cases) {
    company.session.gCasasDec = decimals;
    EXPECT_EQ(CountOf(company.Exported(company.Options()), ">" + std::string(amount) + "</DebitAmount>"), 1u)
        << decimals;
  }
}

}  // namespace
}  // namespace korvel::auditfile
