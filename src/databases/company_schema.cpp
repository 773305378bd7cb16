#include "databases/company_schema.h"

#include <algorithm>
#include <array>

namespace korvel::databases {

namespace {

using Column = ColumnDefinition;

/// Lists one behind the other.
template <std::size_t... N>
constexpr auto Join(const std::array<Column, N>&... lists) {
  std::array<Column, (N + ...)> all{};
  auto at = all.begin();
  ((at = std::copy(lists.begin(), lists.end(), at)), ...);
  return all;
}

template <typename... Name>
constexpr std::array<Column, sizeof...(Name)> Columns(std::string_view type, Name... names) {
  return {Column{names, type}...};
}

/// The columns of a table that is made in a later stage than the first.
template <std::size_t N>
constexpr std::array<Column, N> MadeIn(Stage stage, std::array<Column, N> columns) {
  for (Column& column : columns) {
    if (column.added < stage) column.added = stage;
  }
  return columns;
}

constexpr std::string_view kText100 = "varchar(100)";

constexpr auto kPeriod =
    Join(Columns("varchar(4)", "FiscalYear"), Columns("varchar(10)", "StartDate", "EndDate"));
constexpr auto kWritten = Join(Columns("varchar(128)", "Utilizador"), Columns("smalldatetime", "DataSys"));
constexpr std::array<Column, 1> kCliente{{{"Cliente", "varchar(10)", Stage::Customers, "''"}}};

constexpr auto kParamGeral =
    Join(Columns("varchar(50)", "Servidor_Brevant", "Login_Brevant", "Password_Brevant", "DBase_Brevant",
                 "Servidor_Lunder", "Login_Lunder", "Password_Lunder", "DBase_Lunder"),
         Columns("smallint", "CasasDec"), kWritten,
         std::array<Column, 21>{{
             {"Header_ApenasDiarioSI", "varchar(1)", Stage::Parameters},
             {"Header_SaldoDiaAnterior", "varchar(1)", Stage::Parameters},
             {"Header_ContaInicial", "varchar(50)", Stage::Parameters},
             {"Header_ContaFinal", "varchar(50)", Stage::Parameters},
             {"Product_Grupo", "varchar(3)", Stage::Parameters},
             {"Product_Familia", "varchar(3)", Stage::Parameters},
             {"Product_SubFamilia", "varchar(3)", Stage::Parameters},
             {"Product_Situacao", "varchar(1)", Stage::Parameters},
             {"Product_Patamar", "varchar(50)", Stage::Parameters},
             {"SourceDocuments_DescLinhaDoc", "varchar(20)", Stage::Parameters},
             {"SourceDocuments_ContaCompras", "varchar(50)", Stage::Parameters},
             {"SourceDocuments_ContaVendas", "varchar(50)", Stage::Parameters},
             {"IncluirDocumentosAnulados", "varchar(1)", Stage::Cancelled, "'N'"},
             {"EquivCliente", "varchar(20)", Stage::Mapping, "'ContaContabil'"},
             {"AgrupaContasClientes", "smallint", Stage::Mapping, "1"},
             {"AgrupaIvas", "smallint", Stage::Mapping, "1"},
             {"ProductDescriptionDefault", "varchar(50)", Stage::Customers, "'Sem Descrição'"},
             {"GeneralLedgerEntries_IncluirSI", "smallint", Stage::Customers, "0"},
             {"PeriodicidadeEnvio", "varchar(10)", Stage::Customers, "''"},
             {"PeriodoDados", "varchar(10)", Stage::Customers, "''"},
             {"MensagensActualizacao", "text", Stage::Sending, "''"},
         }});

constexpr auto kTabHeader = Join(
    kPeriod,
    Columns(kText100, "AuditFileVersion", "CompanyID", "TaxRegistrationNumber", "TaxAccountingBasis",
            "CompanyName", "CompanyAddress", "BuildingNumber", "StreetName", "AddressDetail", "City",
            "PostalCode", "Region", "Country", "CurrencyCode", "DateCreated", "ProductID", "ProductVersion"),
    std::array<Column, 1>{{{"HeaderComment", "varchar(255)", Stage::Base, {}, kText100, Stage::Customers}}},
    Columns(kText100, "Telephone", "Fax", "Email", "WebSite"), kWritten,
    std::array<Column, 4>{{
        {"BusinessName", "varchar(60)", Stage::Mapping, "''"},
        {"TaxEntity", "varchar(20)", Stage::Mapping, "''"},
        {"ProductCompanyTaxId", "varchar(20)", Stage::Mapping, "'508123453'"},
        {"SoftwareCertificateNumber", "varchar(20)", Stage::Mapping, "'0'"},
    }},
    kCliente);

constexpr auto kTabGeneralLedger =
    Join(kPeriod, Columns("varchar(50)", "AccountID", "AccountDescription"),
         Columns("money", "OpeningDebitBalance", "OpeningCreditBalance"), kWritten,
         std::array<Column, 1>{{{"TipoConta", "varchar(1)", Stage::Cancelled, "''"}}});

constexpr auto kTabGeneralLedgerEntriesPOC =
    MadeIn(Stage::Documents,
           Join(kPeriod,
                Columns(kText100, "NumberOfEntries", "TotalDebit", "TotalCredit", "Journal", "JournalID",
                        "JournalDescription", "Transaction", "TransactionID", "Period", "TransactionDate",
                        "SourceID", "Description", "GLPostingDate", "CustomerID", "SupplierID", "Line",
                        "RecordID", "AccountID", "SourceDocumentID", "SystemEntryDate", "LineDescription",
                        "DebitAmount", "CreditAmount"),
                kWritten,
                std::array<Column, 2>{{
                    {"DocArchivalNumber", "varchar(20)", Stage::Mapping, "''"},
                    {"TransactionType", "varchar(1)", Stage::Mapping, "'0'"},
                }}));

constexpr auto kAddresses =
    Columns(kText100, "CompanyName", "Contact", "BilingAddress", "BuildingNumber", "StreetName",
            "AddressDetail", "City", "PostalCode", "Region", "Country", "ShipToAddress",
            "Ship_BuildingNumber", "Ship_StreetName", "Ship_AddressDetail", "Ship_City", "Ship_PostalCode",
            "Ship_Region", "Ship_Country", "Telephone", "Fax", "Email", "Website");
// Suppliers have no CustomerID: filling their AccountID fails and is passed over, so it stays NULL, deliberately.
constexpr std::array<Column, 2> kAccount{{
    {"AccountID", "varchar(30)", Stage::Mapping, "CustomerID"},
    {"SelfBillingIndicator", "varchar(1)", Stage::Mapping, "'0'"},
}};
constexpr auto kTabCustomerPOC =
    Join(kPeriod, Columns(kText100, "CustomerID", "CustomerTaxID"), kAddresses, kWritten, kAccount);
constexpr auto kTabSupplierPOC =
    Join(kPeriod, Columns(kText100, "SupplierID", "SupplierTaxID"), kAddresses, kWritten, kAccount);
constexpr auto kTabCustomerGEST = Join(kTabCustomerPOC, kCliente);

constexpr auto kTabProductGEST =
    Join(kPeriod, Columns("varchar(10)", "ProductType"), Columns("varchar(15)", "ProductCode"),
         Columns(kText100, "ProductGroup", "ProductDescription", "ProductNumberCode"), kWritten, kCliente);

/// The tax table of a source product, whose name stands in the column that says where a tax comes from.
constexpr auto TaxColumns(std::string_view describedIn) {
  return Join(kPeriod, Columns("varchar(10)", "TaxType"),
              Columns(kText100, "Description", "TaxCodeDetails", "TaxCode", "TaxDescription"),
              Columns("money", "TaxPercentage"), Columns(kText100, describedIn), kWritten,
              std::array<Column, 3>{{
                  {"TaxCountryRegion", "varchar(5)", Stage::Mapping, "''"},
                  {"TaxExpirationDate", "varchar(10)", Stage::Mapping, "''"},
                  {"TaxAmount", "money", Stage::Mapping, "0"},
              }});
}
constexpr auto kTabTaxTablePOC = TaxColumns("DescricaoLunder");
constexpr auto kTabTaxTableGEST =
    Join(TaxColumns("DescricaoBrevant"),
         std::array<Column, 1>{{{"CodigoBrevant", "varchar(2)", Stage::Mapping, "''"}}}, kCliente);

constexpr auto kTabSourceDocumentsGEST = MadeIn(
    Stage::Documents,
    Join(kPeriod,
         Columns(kText100, "SalesInvoices", "NumberOfEntries", "TotalDebit", "TotalCredit", "Invoice",
                 "InvoiceNo", "Period", "InvoiceDate", "InvoiceType", "SystemEntriedate", "TransactionID",
                 "CustomerID", "ShipTo", "ShipTo_DeliveryId", "ShipTo_DeliveryDate", "ShipTo_Address",
                 "ShipTo_BuildingNo", "ShipTo_StreetName", "ShipTo_AddressDetail", "ShipTo_City",
                 "ShipTo_PostalCode", "ShipTo_Region", "ShipTo_Country", "ShipFrom", "ShipFrom_DeliveryId",
                 "ShipFrom_DeliveryDate", "ShipFrom_Address", "ShipFrom_BuildingNo", "ShipFrom_StreetName",
                 "ShipFrom_AddressDetail", "ShipFrom_City", "ShipFrom_PostalCode", "ShipFrom_Region",
                 "ShipFrom_Country", "Line", "LineNumber", "OrderReferences", "OriginatingON", "OrderDate",
                 "ProductCode", "ProductDescription", "Quantity", "UnitOfMeasure", "UnitPrice",
                 "TaxPointDate", "References", "CreditNote", "Reference", "Reason"),
         std::array<Column, 1>{
             {{"Description", "varchar(1000)", Stage::Documents, {}, kText100, Stage::Cancelled}}},
         Columns(kText100, "DebitAmount", "CreditAmount", "Tax", "TaxType", "TaxCode", "TaxPercentage",
                 "SettlementAmount", "DocumentTotals", "TaxPayable", "NetTotal", "GrossTotal", "Currency",
                 "CurrencyCode", "CurrencyCreditAmount", "CurrencyDebitAmount", "Settlement",
                 "SettlementDiscount", "SettlementAmount1", "SettlementDate", "PaymentMechanism"),
         kWritten,
         std::array<Column, 8>{{
             {"DocAnulado", "varchar(1)", Stage::Cancelled, "'N'"},
             {"InvoiceStatus", "varchar(1)", Stage::Mapping, "''"},
             {"Hash", "text", Stage::Mapping, "''", "varchar(40)", Stage::Customers},
             {"HashControl", "varchar(40)", Stage::Mapping, "''"},
             {"SelfBillingIndicator", "varchar(10)", Stage::Mapping, "''"},
             {"TaxCountryRegion", "varchar(10)", Stage::Mapping, "''"},
             {"TaxExemptionReason", "varchar(60)", Stage::Mapping, "''"},
             {"TaxAmount", "varchar(30)", Stage::Mapping, "''"},
         }},
         kCliente));

constexpr auto kTabArmazens =
    MadeIn(Stage::Customers, Join(Columns("varchar(3)", "Armazem"), Columns("varchar(30)", "Classificacao")));

constexpr auto kHistoricoEnvio =
    MadeIn(Stage::Sending,
           Join(Columns("varchar(10)", "DataEnvio"), Columns("varchar(5)", "HoraEnvio"),
                Columns("varchar(10)", "DataInicial", "DataFinal"), Columns("varchar(200)", "Ficheiro"),
                Columns(kText100, "Observa"), Columns("varchar(5)", "Status")));

constexpr auto kCompanyActualiza = MadeIn(Stage::Version, Columns("varchar(50)", "Versao"));

constexpr std::array<TableDefinition, 14> kCompanyTables{{
    {"ParamGeral", Stage::Base, kParamGeral, "PK_ParamGeral"},
    {"TabHeader", Stage::Base, kTabHeader, "PRK_TabHeader"},
    {"TabGeneralLedger", Stage::Base, kTabGeneralLedger, "PRK_TabGeneralLedger"},
    {"TabCustomerPOC", Stage::Base, kTabCustomerPOC, "PRK_TabCustomerPOC"},
    {"TabCustomerGEST", Stage::Base, kTabCustomerGEST, "PRK_TabCustomerGEST"},
    {"TabSupplierPOC", Stage::Base, kTabSupplierPOC, "PRK_TabSupplierPOC"},
    {"TabProductGEST", Stage::Base, kTabProductGEST, "PRK_TabProductGEST"},
    {"TabTaxTablePOC", Stage::Base, kTabTaxTablePOC, "PRK_TabTaxTablePOC"},
    {"TabTaxTableGEST", Stage::Base, kTabTaxTableGEST, "PRK_TabTaxTableGEST"},
    {"TabSourceDocumentsGEST", Stage::Documents, kTabSourceDocumentsGEST, "PRK_TabSourceDocumentsGEST"},
    {"TabGeneralLedgerEntriesPOC", Stage::Documents, kTabGeneralLedgerEntriesPOC,
     "PRK_TabGeneralLedgerEntriesPOC"},
    {"TabArmazens", Stage::Customers, kTabArmazens, "PRK_TabArmazens"},
    {"HistoricoEnvio", Stage::Sending, kHistoricoEnvio, {}, true},
    {"Actualiza", Stage::Version, kCompanyActualiza, {}, true},
}};

}  // namespace

std::span<const TableDefinition> CompanySchema() {
  return kCompanyTables;
}

}  // namespace korvel::databases
