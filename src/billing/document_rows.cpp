#include "billing/document_rows.h"

#include <fmt/format.h>

#include <algorithm>

#include "billing/audit_codes.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

constexpr std::array<MappedColumn, kMappedColumns> kRowColumns{{
    {"SalesInvoices"},
    {"NumberOfEntries", "Nº Total de Documentos", Required::Always},
    {"TotalDebit"},
    {"TotalCredit"},
    {"Invoice"},
    {"InvoiceNo", "Nº do Documento", Required::Always},
    {"InvoiceStatus", "Estado do Documento", Required::Always},
    {"Hash", "Assinatura do Documento - HASH", Required::Always},
    {"HashControl"},
    // The trailing words belong to the label; they stay, deliberately.
    {"Period", "Período Contabilistico:  intCampo = 10: GoTo SaidaForcada", Required::Always},
    {"InvoiceDate", "Data do Documento", Required::Always},
    {"InvoiceType", "Tipo de Documento", Required::Always},
    {"SelfBillingIndicator"},
    {"SystemEntriedate", "Data de Gravação", Required::Always},
    {"TransactionID", "Identificador da Transacção (Data+Diário+Número)", Required::Integrated},
    {"CustomerID", "Contribuinte/Cliente", Required::Always},
    {"ShipTo"},
    {"ShipTo_DeliveryId"},
    {"ShipTo_DeliveryDate"},
    {"ShipTo_Address"},
    {"ShipTo_BuildingNo"},
    {"ShipTo_StreetName"},
    {"ShipTo_AddressDetail", {}, Required::No, Repair::Unknown},
    {"ShipTo_City", {}, Required::No, Repair::Unknown},
    {"ShipTo_PostalCode", {}, Required::No, Repair::UnknownPostalCode},
    {"ShipTo_Region"},
    {"ShipTo_Country", {}, Required::No, Repair::Unknown},
    {"ShipFrom"},
    {"ShipFrom_DeliveryId"},
    {"ShipFrom_DeliveryDate"},
    {"ShipFrom_Address"},
    {"ShipFrom_BuildingNo"},
    {"ShipFrom_StreetName"},
    {"ShipFrom_AddressDetail", {}, Required::No, Repair::Unknown},
    {"ShipFrom_City", {}, Required::No, Repair::Unknown},
    {"ShipFrom_PostalCode", {}, Required::No, Repair::UnknownPostalCode},
    {"ShipFrom_Region"},
    {"ShipFrom_Country", {}, Required::No, Repair::Unknown},
    {"Line"},
    {"LineNumber", "Nº de Linha", Required::Always},
    {"OrderReferences"},
    {"OriginatingON"},
    {"OrderDate"},
    {"ProductCode", "Código do Produto", Required::Always},
    {"ProductDescription", "Descrição do Produto", Required::Always},
    {"Quantity", "Quantidade", Required::Always},
    {"UnitOfMeasure"},
    {"UnitPrice", "Preço", Required::Always},
    {"TaxPointDate", "Data Envio", Required::Always},
    {"References", {}, Required::No, Repair::First60},
    {"CreditNote"},
    {"Reference"},
    {"Reason"},
    {"Description", "Descrição da linha do documento", Required::Always},
    {"DebitAmount"},
    {"CreditAmount"},
    {"Tax"},
    {"TaxType", "Tipo de Taxa de IVA", Required::Always},
    {"TaxCountryRegion", "Região do Imposto", Required::Always},
    {"TaxCode", "Codigo da Taxa de IVA", Required::Always},
    {"TaxPercentage", "Taxa de IVA", Required::Always},
    {"TaxAmount"},
    {"TaxExemptionReason", "Motivo da Isenção de IVA", Required::ZeroRate},
    {"SettlementAmount"},
    {"DocumentTotals"},
    {"TaxPayable"},
    {"NetTotal", "Total do Documento sem IVA", Required::Always},
    {"GrossTotal", "Total do Documento com IVA", Required::Always},
    {"Currency"},
    {"CurrencyCode"},
    {"CurrencyCreditAmount"},
    {"CurrencyDebitAmount"},
    {"Settlement"},
    {"SettlementDiscount"},
    {"SettlementAmount1"},
    {"SettlementDate"},
    {"PaymentMechanism"},
}};
static_assert(kRowColumns.back().name == "PaymentMechanism" &&
              kRowColumns[static_cast<std::size_t>(Col::TaxExemptionReason)].name == "TaxExemptionReason");

constexpr std::size_t kReferencesLength = 60;

void Complete(std::string& value, Repair repair) {
  switch (repair) {
    case Repair::None:
      return;
    case Repair::Unknown:
      if (toolkit::IsBlank(value)) value = kUnknown;
      return;
    case Repair::UnknownPostalCode:
      if (toolkit::IsBlank(value) || value == kNoPostalCode) value = kUnknown;
      return;
    case Repair::First60:
      value.resize(toolkit::CutTo(value, kReferencesLength).size());
      return;
  }
}

bool HasZeroRate(const StagedRow& row) {
  return row[Col::TaxPercentage].find_first_of("123456789") == std::string::npos;
}

bool IsRequired(Required required, const StagedRow& row, std::optional<periods::Basis> basis) {
  switch (required) {
    case Required::No:
      return false;
    case Required::Always:
      return true;
    case Required::Integrated:
      return basis == periods::Basis::Integrated;
    case Required::ZeroRate:
      return HasZeroRate(row);
  }
  return false;
}

}  // namespace

const std::array<MappedColumn, kMappedColumns>& MappedColumns() {
  return kRowColumns;
}

std::optional<EmptyColumn> CompleteRow(StagedRow& row, std::optional<periods::Basis> basis) {
  for (std::size_t i = 0; i < kRowColumns.size(); ++i) {
    std::string& value = row[static_cast<Col>(i)];
    Complete(value, kRowColumns[i].repair);
    if (toolkit::IsBlank(value) && IsRequired(kRowColumns[i].required, row, basis))
      return EmptyColumn{kRowColumns[i].label, i + 1};
  }
  return std::nullopt;
}

std::string EmptyColumnText(const EmptyColumn& empty, const StagedRow& row) {
  return fmt::format(
      "O Campo [{}-({}) ] está Vazio!\nNão pode Gravar\n Documento: {}  Contribuinte/Cliente: {}",
      empty.label, empty.position, row[Col::InvoiceNo], row[Col::CustomerID]);
}

DocumentRowWriter::DocumentRowWriter(data::Connection& company, const BillingPeriod& period,
                                     std::string_view user, const data::DateTime& now)
    : constants_{period.key.fiscalYear, period.key.startDate, period.key.endDate, std::string(user),
                 period.cliente} {
  std::array<std::string_view, std::tuple_size_v<decltype(values_)>> names{"FiscalYear", "StartDate",
                                                                           "EndDate"};
  std::transform(kRowColumns.begin(), kRowColumns.end(), names.begin() + kKeyColumns,
                 [](const MappedColumn& column) { return column.name; });
  constexpr std::size_t kStamp = kKeyColumns + kMappedColumns;
  names[kStamp] = "Utilizador";
  names[kStamp + 1] = "DataSys";
  names[kStamp + 2] = "Cliente";
  std::copy_n(constants_.begin(), kKeyColumns, values_.begin());
  values_[kStamp] = constants_[kKeyColumns];
  values_[kStamp + 1] = now;
  values_[kStamp + 2] = constants_[kKeyColumns + 1];
  batch_ = company.OpenBatch(kDocumentsTable, names);
}

void DocumentRowWriter::Add(const StagedRow& row) {
  std::copy(row.Values().begin(), row.Values().end(), values_.begin() + kKeyColumns);
  batch_->Add(values_);
}

}  // namespace korvel::billing
