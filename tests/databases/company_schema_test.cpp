#include <fmt/format.h>
#include <gtest/gtest.h>

#include "databases/company_upgrade.h"
#include "databases/table_columns.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

struct Expected {
  std::string_view table;
  std::string columns;  // as TableColumns writes them
};

const std::string kParty =
    "CompanyName Contact BilingAddress BuildingNumber StreetName AddressDetail City PostalCode Region "
    "Country ShipToAddress Ship_BuildingNumber Ship_StreetName Ship_AddressDetail Ship_City Ship_PostalCode "
    "Ship_Region Ship_Country Telephone Fax Email Website v128: Utilizador sd: DataSys v30: AccountID v1: "
    "SelfBillingIndicator";

/// The logins of the sources come out as wide as every login.
const Expected kExpected[] = {
    {"ParamGeral",
     "v50: Servidor_Brevant v128: Login_Brevant v50: Password_Brevant DBase_Brevant "
     "Servidor_Lunder v128: Login_Lunder v50: Password_Lunder DBase_Lunder si: CasasDec v128: "
     "Utilizador sd: DataSys v1: Header_ApenasDiarioSI Header_SaldoDiaAnterior v50: "
     "Header_ContaInicial Header_ContaFinal v3: Product_Grupo Product_Familia Product_SubFamilia "
     "v1: Product_Situacao v50: Product_Patamar v20: SourceDocuments_DescLinhaDoc v50: "
     "SourceDocuments_ContaCompras SourceDocuments_ContaVendas v1: IncluirDocumentosAnulados v20: "
     "EquivCliente si: AgrupaContasClientes AgrupaIvas v50: ProductDescriptionDefault si: "
     "GeneralLedgerEntries_IncluirSI v10: PeriodicidadeEnvio PeriodoDados t: MensagensActualizacao"},
    {"TabHeader",
     "v4: FiscalYear v10: StartDate EndDate v100: AuditFileVersion CompanyID TaxRegistrationNumber "
     "TaxAccountingBasis CompanyName CompanyAddress BuildingNumber StreetName AddressDetail City "
     "PostalCode Region Country CurrencyCode DateCreated ProductID ProductVersion v255: "
     "HeaderComment v100: Telephone Fax Email WebSite v128: Utilizador sd: DataSys v60: "
     "BusinessName v20: TaxEntity ProductCompanyTaxId SoftwareCertificateNumber v10: Cliente"},
    {"Actualiza", "v50: Versao"},
    {"HistoricoEnvio",
     "v10: DataEnvio v5: HoraEnvio v10: DataInicial DataFinal v200: Ficheiro v100: Observa v5: "
     "Status"},
    {"TabArmazens", "v3: Armazem v30: Classificacao"},
    {"TabGeneralLedger",
     "v4: FiscalYear v10: StartDate EndDate v50: AccountID AccountDescription m: "
     "OpeningDebitBalance OpeningCreditBalance v128: Utilizador sd: DataSys v1: TipoConta"},
    {"TabGeneralLedgerEntriesPOC",
     "v4: FiscalYear v10: StartDate EndDate v100: NumberOfEntries TotalDebit TotalCredit Journal "
     "JournalID JournalDescription Transaction TransactionID Period TransactionDate SourceID "
     "Description GLPostingDate CustomerID SupplierID Line RecordID AccountID SourceDocumentID "
     "SystemEntryDate LineDescription DebitAmount CreditAmount v128: Utilizador sd: DataSys v20: "
     "DocArchivalNumber v1: TransactionType"},
    {"TabCustomerPOC", "v4: FiscalYear v10: StartDate EndDate v100: CustomerID CustomerTaxID " + kParty},
    {"TabSupplierPOC", "v4: FiscalYear v10: StartDate EndDate v100: SupplierID SupplierTaxID " + kParty},
    {"TabTaxTablePOC",
     "v4: FiscalYear v10: StartDate EndDate TaxType v100: Description TaxCodeDetails TaxCode "
     "TaxDescription m: TaxPercentage v100: DescricaoLunder v128: Utilizador sd: DataSys v5: "
     "TaxCountryRegion v10: TaxExpirationDate m: TaxAmount"},
    {"TabCustomerGEST",
     "v4: FiscalYear v10: StartDate EndDate v100: CustomerID CustomerTaxID " + kParty + " v10: Cliente"},
    {"TabProductGEST",
     "v4: FiscalYear v10: StartDate EndDate ProductType v15: ProductCode v100: ProductGroup "
     "ProductDescription ProductNumberCode v128: Utilizador sd: DataSys v10: Cliente"},
    {"TabTaxTableGEST",
     "v4: FiscalYear v10: StartDate EndDate TaxType v100: Description TaxCodeDetails TaxCode "
     "TaxDescription m: TaxPercentage v100: DescricaoBrevant v128: Utilizador sd: DataSys v5: "
     "TaxCountryRegion v10: TaxExpirationDate m: TaxAmount v2: CodigoBrevant v10: Cliente"},
    {"TabSourceDocumentsGEST",
     "v4: FiscalYear v10: StartDate EndDate v100: SalesInvoices NumberOfEntries TotalDebit "
     "TotalCredit Invoice InvoiceNo Period InvoiceDate InvoiceType SystemEntriedate TransactionID "
     "CustomerID ShipTo ShipTo_DeliveryId ShipTo_DeliveryDate ShipTo_Address ShipTo_BuildingNo "
     "ShipTo_StreetName ShipTo_AddressDetail ShipTo_City ShipTo_PostalCode ShipTo_Region "
     "ShipTo_Country ShipFrom ShipFrom_DeliveryId ShipFrom_DeliveryDate ShipFrom_Address "
     "ShipFrom_BuildingNo ShipFrom_StreetName ShipFrom_AddressDetail ShipFrom_City "
     "ShipFrom_PostalCode ShipFrom_Region ShipFrom_Country Line LineNumber OrderReferences "
     "OriginatingON OrderDate ProductCode ProductDescription Quantity UnitOfMeasure UnitPrice "
     "TaxPointDate References CreditNote Reference Reason v1000: Description v100: DebitAmount "
     "CreditAmount Tax TaxType TaxCode TaxPercentage SettlementAmount DocumentTotals TaxPayable "
     "NetTotal GrossTotal Currency CurrencyCode CurrencyCreditAmount CurrencyDebitAmount "
     "Settlement SettlementDiscount SettlementAmount1 SettlementDate PaymentMechanism v128: "
     "Utilizador sd: DataSys v1: DocAnulado InvoiceStatus t: Hash v40: HashControl v10: "
     "SelfBillingIndicator TaxCountryRegion v60: TaxExemptionReason v30: TaxAmount v10: Cliente"},
};

class CompanySchemaTest : public testing::Test {
 protected:
  CompanySchemaTest() {
    server.UseCompany("0001");
    result = ActDBaseExecuta(server.Context(), "Korvel0001");
  }

  test::TestServer server;
  UpgradeResult result;
};

TEST_F(CompanySchemaTest, HasEveryTableColumnAndType) {
  ASSERT_TRUE(result.ran);
  const auto company = server.Open("Korvel0001");
  for (const Expected& expected : kExpected) {
    EXPECT_EQ(test::TableColumns(*company, expected.table), expected.columns) << expected.table;
    const auto rows = company->Query(fmt::format("select * from {}", expected.table));
    EXPECT_EQ(rows.Fields().front().name, "NumRegisto");
    EXPECT_EQ(rows.Fields().front().precision, 18);
  }
  EXPECT_EQ(server.One("Korvel0001", "select count(*) from sysobjects where xtype='U'"),
            std::to_string(std::size(kExpected)));
}

TEST_F(CompanySchemaTest, KeysCountUpAndHaveTheirNames) {
  const auto company = server.Open("Korvel0001");
  constexpr std::string_view kShortNames = "ParamGeral Actualiza HistoricoEnvio";
  for (const Expected& expected : kExpected) {
    const std::string first =
        company->Query(fmt::format("select * from {}", expected.table)).Fields()[1].name;
    for (const int value : {1, 2}) {
      company->Execute(fmt::format("insert into {} ({}) values (?)", expected.table, first), {value});
    }
    const auto keys =
        company->Query(fmt::format("select a=max(NumRegisto)-min(NumRegisto) from {}", expected.table));
    EXPECT_GE(keys.Integer(0), 1) << expected.table;
    const bool shortName = kShortNames.find(expected.table) != std::string_view::npos;
    EXPECT_NO_THROW(server.Run("Korvel0001", fmt::format("alter table {0} drop constraint {1}_{0}",
                                                         expected.table, shortName ? "PK" : "PRK")));
  }
}

TEST_F(CompanySchemaTest, PeriodIsDefinedOnce) {
  const std::string insert = "insert into TabHeader (FiscalYear,StartDate,EndDate,Cliente) values ";
  server.Run("Korvel0001", insert + "('2010','2010-01-01','2010-12-31','')");
  server.Run("Korvel0001", insert + "('2010','2010-01-01','2010-06-30','')");
  try {
    server.Run("Korvel0001", insert + "('2010','2010-01-01','2010-12-31','C1')");
    ADD_FAILURE() << "the customer is no part of a period's key";
  } catch (const data::Error& error) {
    EXPECT_EQ(error.Kind(), data::Failure::Integrity);
  }
}

}  // namespace
}  // namespace korvel::databases
