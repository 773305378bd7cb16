#include "staged_company.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "data/sql_text.h"
#include "databases/company_upgrade.h"
#include "toolkit/code_page.h"

namespace korvel::test {

namespace {

using Row = std::map<std::string_view, std::string>;

void Put(Row& row, std::initializer_list<Cell> cells) {
  for (const Cell& cell : cells) row[cell.column] = cell.value ? data::Quoted(cell.value) : "NULL";
}

/// The cells of "A=1;B=2".
void Put(Row& row, std::string_view cells) {
  while (!cells.empty()) {
    const std::string_view cell = cells.substr(0, cells.find(';'));
    const auto equals = cell.find('=');
    row[cell.substr(0, equals)] = data::Quoted(cell.substr(equals + 1));
    cells.remove_prefix(std::min(cells.size(), cell.size() + 1));
  }
}

std::string InsertStatement(std::string_view table, const Row& row) {
  std::string columns;
  std::string values;
  for (const auto& [column, value] : row) {
    columns.append(columns.empty() ? "[" : ",[").append(column).append("]");
    values.append(values.empty() ? "" : ",").append(value);
  }
  return "Insert into " + std::string(table) + " (" + columns + ") values (" + values + ")";
}

}  // namespace

StagedCompany::StagedCompany(const char* basis) {
  UseCompany("0001");
  EXPECT_TRUE(databases::ActDBaseExecuta(Context(), session.gBaseDados).ran);
  if (basis != nullptr) AddHeader(basis);
  dialogs.Clear();
}

void StagedCompany::Insert(std::string_view table, std::string_view cells, std::initializer_list<Cell> others,
                           std::initializer_list<Cell> last) {
  Row row{{"FiscalYear", "'2010'"}, {"StartDate", "'2010-01-01'"}, {"EndDate", "'2010-12-31'"}};
  Put(row, cells);
  Put(row, others);
  Put(row, last);
  Run(session.gBaseDados, InsertStatement(table, row));
}

void StagedCompany::Add(std::string_view table, std::initializer_list<Cell> cells) {
  Insert(table, "", cells);
}

void StagedCompany::AddRow(std::string_view table, std::string_view cells) {
  Insert(table, cells, {});
}

void StagedCompany::AddHeader(const char* basis, std::initializer_list<Cell> cells) {
  Insert("TabHeader",
         "AuditFileVersion=1.01_01;CompanyID=508123453;TaxRegistrationNumber=508123453;"
         "CompanyName=Pão & Filhos, Lda;AddressDetail=Rua d'Além, 1;City=Ponta Delgada;PostalCode=9500-053;"
         "Country=PT;CurrencyCode=EUR;DateCreated=2010-12-31;TaxEntity=Sede;ProductCompanyTaxId=508123453;"
         "SoftwareCertificateNumber=0;ProductID=Korvel/Morvane;ProductVersion=1.0.0",
         {{"TaxAccountingBasis", basis}}, cells);
}

void StagedCompany::AddLine(const char* journal, const char* transaction, const char* record,
                            const char* month, std::initializer_list<Cell> cells) {
  Insert("TabGeneralLedgerEntriesPOC",
         "NumberOfEntries=3;TotalDebit=1.234,50;TotalCredit=0;JournalDescription=Caixa;"
         "TransactionDate=2010-01-02;SourceID=ANA;Description=Venda;DocArchivalNumber=7;TransactionType=N;"
         "GLPostingDate=2010-01-02T09:00:00;AccountID=111;SystemEntryDate=2010-01-02T09:00:00;"
         "LineDescription=Linha;DebitAmount=10;CreditAmount=0",
         {{"JournalID", journal}, {"TransactionID", transaction}, {"RecordID", record}, {"Period", month}},
         cells);
}

void StagedCompany::AddDocument(const char* number, const char* line, std::initializer_list<Cell> cells) {
  Insert("TabSourceDocumentsGEST",
         "SalesInvoices=;NumberOfEntries=1;TotalDebit=0;TotalCredit=12,3;Invoice=;InvoiceStatus=N;Hash=0;"
         "HashControl=0;Period=1;InvoiceDate=2010-01-02;InvoiceType=FT;SelfBillingIndicator=0;"
         "SystemEntriedate=2010-01-02T09:00:00;CustomerID=500100144;ShipTo_AddressDetail=Rua A;"
         "ShipTo_City=Lisboa;ShipTo_PostalCode=1000-001;ShipTo_Country=PT;ShipFrom_AddressDetail=Rua B;"
         "ShipFrom_City=Porto;ShipFrom_PostalCode=4000-001;ShipFrom_Country=PT;ProductCode=P1;"
         "ProductDescription=Pão;Quantity=1;UnitOfMeasure=Uni;UnitPrice=10;TaxPointDate=2010-01-02;"
         "Description=Linha;DebitAmount=;CreditAmount=10;TaxType=IVA;TaxCountryRegion=PT;TaxCode=NOR;"
         "TaxPercentage=23;TaxPayable=2,3;NetTotal=10;GrossTotal=12,3",
         {{"InvoiceNo", number}, {"LineNumber", line}}, cells);
}

auditfile::ExportOptions StagedCompany::Options(periods::Basis basis) const {
  auditfile::ExportOptions options = auditfile::OptionsFor(basis);
  options.txtPastaExportacao = target.Path().string();
  return options;
}

auditfile::ExportOptions StagedCompany::DocumentsAlone() const {
  auditfile::ExportOptions options;
  options.txtPastaExportacao = target.Path().string();
  options.chkGESTSourceDocuments = true;
  return options;
}

auditfile::ExportResult StagedCompany::Export(const auditfile::ExportOptions& options) {
  return auditfile::ExportaSaft(Context(), options, period, "", true);
}

std::string StagedCompany::Exported(const auditfile::ExportOptions& options) {
  const auditfile::ExportResult result = Export(options);
  EXPECT_TRUE(result.ok) << result.error;
  return result.files.empty() ? std::string() : ReadFile(result.files.back());
}

std::string OneLine(std::string_view layout) {
  std::string text;
  bool lineBegins = true;
  for (const char c : layout) {
    if (c == '\n') lineBegins = true;
    if (c == '\n' || (c == ' ' && lineBegins)) continue;
    lineBegins = false;
    text += c;
  }
  return toolkit::ToCodePage(text).bytes;
}

std::string DocumentOutline(std::string_view file) {
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

std::size_t CountOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string_view::npos; at += part.size()) ++count;
  return count;
}

}  // namespace korvel::test
