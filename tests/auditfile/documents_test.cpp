#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "staged_company.h"
#include "support/schema_check.h"

namespace korvel::auditfile {
namespace {

using periods::Basis;
using test::Cell;
using test::CountOf;
using test::DocumentOutline;
using test::OneLine;
using test::StagedCompany;

using Cells = std::initializer_list<Cell>;

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
  StagedCompany company("F");
  company.AddDocument("FT 2010/1", "00001");
  company.Script(
      "Update TabSourceDocumentsGEST set "
      "NumberOfEntries=' 2x',TotalCredit='1.234,50',TransactionID='2010-01-02 1 1',"
      "ShipTo_DeliveryId='Cais',ShipTo_DeliveryDate='2010-01-03',ShipTo_BuildingNo='1',"
      "ShipTo_StreetName='Rua A',ShipTo_AddressDetail='Rua A, 1',ShipTo_Region='LX',"
      "ShipFrom_AddressDetail=null,OriginatingON='ENCO 2010/9',OrderDate='2010-01-01',Quantity='2.5',"
      "UnitPrice='1.234,5678',[References]='FT 2009/7',Reason='Troca',CreditAmount='1.234,50',"
      "Description='Pão de trigo',TaxCode='ISE',TaxPercentage='0',TaxExemptionReason='Artigo 9',"
      "SettlementAmount='1,5',TaxPayable='0,00',NetTotal='1234,5',GrossTotal='1234,5',"
      "CurrencyCode='USD',CurrencyCreditAmount='1.500',SettlementDiscount='9',SettlementAmount1='9',"
      "SettlementDate='2010-02-01',PaymentMechanism='NU'");
  const std::string file = company.Exported(company.DocumentsAlone());
  EXPECT_EQ(file.substr(file.find("<SourceDocuments>")), OneLine(kDocument));
}

TEST(Documents, ElementsByTheirRules) {
  const struct {
    Cells cells;
    std::string expected;  // which the file holds once
    int decimals = 2;
  } cases[] = {
      {{{"OrderDate", "2010-01-01"}},
       "<LineNumber>1</LineNumber><OrderReferences><OrderDate>2010-01-01</OrderDate></"
       "OrderReferences><ProductCode>"},
      {{{"OriginatingON", "  "}, {"LineNumber", " 12x"}}, "<LineNumber>12</LineNumber><ProductCode>"},
      {{{"Reason", "R"}},
       "<TaxPointDate>2010-01-02</TaxPointDate><References><CreditNote><Reason>R</Reason></CreditNote></"
       "References><Description>"},
      {{{"References", " "}, {"Reason", nullptr}}, "<TaxPointDate>2010-01-02</TaxPointDate><Description>"},
      {{{"DebitAmount", "0.00"}, {"CreditAmount", " "}}, "<DebitAmount>0.00</DebitAmount><Tax>"},
      {{{"DebitAmount", "x"}, {"CreditAmount", "1"}},
       "<DebitAmount>0.00</DebitAmount><CreditAmount>1.00</CreditAmount><Tax>"},
      {{{"DebitAmount", nullptr}, {"CreditAmount", nullptr}}, "<Description>Linha</Description><Tax>"},
      {{{"SettlementAmount", "1,5"}, {"TaxPercentage", "5,5"}},
       "<TaxPercentage>5.500</TaxPercentage></Tax><SettlementAmount>1.50</SettlementAmount></Line>",
       3},
      {{{"SettlementAmount", "0,00"}, {"TaxExemptionReason", " "}}, "</Tax></Line>"},
      {{{"SettlementAmount", nullptr}}, "</Tax></Line>"},
      {{{"CurrencyCode", " "}, {"CurrencyCreditAmount", "1"}, {"CurrencyDebitAmount", "2"}},
       "<GrossTotal>12.30</GrossTotal></DocumentTotals></Invoice>"},
      {{{"CurrencyCode", "USD"}, {"CurrencyDebitAmount", "0"}},
       "<Currency><CurrencyCode>USD</CurrencyCode><CurrencyDebitAmount>0.00</CurrencyDebitAmount></"
       "Currency></DocumentTotals></Invoice>"},
      {{{"PaymentMechanism", "  "}}, "</GrossTotal><Settlement/></DocumentTotals></Invoice>"},
      {{{"SettlementDate", "  "}, {"PaymentMechanism", ""}}, "</GrossTotal></DocumentTotals></Invoice>"},
      {{{"SettlementDate", "2010-02-01"}, {"PaymentMechanism", nullptr}},
       "<Settlement><SettlementDate>2010-02-01</SettlementDate></Settlement></DocumentTotals></Invoice>"},
      {{{"TaxPayable", nullptr}, {"NetTotal", "-1,005"}},
       "<DocumentTotals><TaxPayable>0.00</TaxPayable><NetTotal>-1.01</NetTotal><GrossTotal>"},
      {{{"LineNumber", "0"}}, "</ShipFrom><DocumentTotals><TaxPayable>"},
      {{{"LineNumber", nullptr}}, "</ShipFrom><DocumentTotals><TaxPayable>"},
      {{{"Hash", ""}, {"HashControl", nullptr}, {"CustomerID", " "}}, "<Hash/><HashControl/><Period>"},
  };
  StagedCompany company("F");
  for (const auto& each : cases) {
    company.Script("delete from TabSourceDocumentsGEST");
    company.AddDocument("FT 2010/1", "00001", each.cells);
    company.session.gCasasDec = each.decimals;
    const std::string file = company.Exported(company.DocumentsAlone());
    EXPECT_EQ(CountOf(file, each.expected), 1u) << each.expected << "\n" << file;
  }
}

/// What the documents of StagedCompany refer to.
void StageMasters(StagedCompany& company) {
  company.AddRow("TabCustomerGEST",
                 "CustomerID=500100144;AccountID=211;CustomerTaxID=500100144;CompanyName=Forno;"
                 "AddressDetail=Rua A;City=Lisboa;PostalCode=1000-001;Country=PT;Ship_AddressDetail=Rua A;"
                 "Ship_City=Lisboa;Ship_PostalCode=1000-001;Ship_Country=PT;SelfBillingIndicator=0");
  company.AddRow("TabProductGEST",
                 "ProductType=P;ProductCode=P1;ProductGroup=Pão;ProductDescription=Pão;ProductNumberCode=P1");
}

TEST(Documents, AnIntegratedFileIsValidAndNamesTheTransactions) {
  StagedCompany company("I");
  StageMasters(company);
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

  company.SetBasis("F");
  const std::string billing = company.Exported(company.Options(Basis::Billing));
  EXPECT_EQ(CountOf(billing, "<TransactionID>"), 0u);
  EXPECT_EQ(DocumentOutline(billing), "FT 2010/1: 1 2; NC 2010/1: 1");
}

// What the schema does not allow and the system's file has all the same.
TEST(Documents, TheListedExceptionsAreTheSchemasOnlyFaults) {
  const struct {
    Cells cells;
    std::string_view fault;  // element and beginning of what is said of it
  } cases[] = {
      {{}, ""},
      {{{"ShipTo_Country", "Desconhecido"}, {"ShipFrom_Country", "Desconhecido"}}, ""},
      {{{"PaymentMechanism", "  "}}, ""},
      {{{"CurrencyCode", "USD"}}, ""},
      {{{"Hash", ""}}, "}Hash': [facet 'minLength']"},
      {{{"HashControl", ""}}, "}HashControl': [facet 'minLength']"},
      {{{"UnitOfMeasure", ""}}, "}UnitOfMeasure': [facet 'minLength']"},
      {{{"InvoiceStatus", ""}}, "}InvoiceStatus': [facet 'enumeration']"},
      {{{"SelfBillingIndicator", ""}}, "}SelfBillingIndicator': '' is not a valid value"},
      {{{"TaxCountryRegion", ""}}, "}TaxCountryRegion': [facet 'pattern']"},
      {{{"TaxCode", "NS"}}, "}TaxCode': [facet 'pattern']"},
      {{{"PaymentMechanism", "XX"}}, "}PaymentMechanism': [facet 'enumeration']"},
      {{{"InvoiceNo", "FT 2010/1A"}}, "}InvoiceNo': [facet 'pattern']"},
      {{{"Period", "13"}}, "}Period': [facet 'maxInclusive']"},
      {{{"ShipTo_Country", "DESCONHECIDO"}}, "}Country': [facet 'pattern']"},
      {{{"DebitAmount", ""}, {"CreditAmount", ""}}, "}Tax': This element is not expected"},
      {{{"DebitAmount", "1"}, {"CreditAmount", "1"}}, "}CreditAmount': This element is not expected"},
      {{{"LineNumber", "0"}}, "}DocumentTotals': This element is not expected"},
      {{{"CurrencyCode", "USD"}, {"CurrencyCreditAmount", "1"}, {"CurrencyDebitAmount", "1"}},
       "}CurrencyDebitAmount': This element is not expected"},
      {{{"CustomerID", "1"}}, "}Invoice': No match found for key-sequence ['1']"},
      {{{"ProductCode", "P2"}}, "}Line': No match found for key-sequence ['P2']"},
  };
  const test::SchemaCheck schema;
  StagedCompany company("F");
  StageMasters(company);
  for (const auto& [cells, fault] : cases) {
    company.Script("delete from TabSourceDocumentsGEST");
    company.AddDocument("FT 2010/1", "1", cells);
    std::string faults;
    for (const std::string& each : schema.Faults(company.Exported(company.Options(Basis::Billing)))) {
      faults += each + "\n";
    }
    EXPECT_EQ(faults.empty(), fault.empty()) << faults;
    EXPECT_EQ(CountOf(faults, fault.empty() ? "none" : fault), fault.empty() ? 0u : 1u) << fault << "\n"
                                                                                        << faults;
  }
}

}  // namespace
}  // namespace korvel::auditfile
