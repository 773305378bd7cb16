#include "billing/document_mapping.h"

#include <fmt/format.h>

#include <iterator>

#include "billing/audit_codes.h"
#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::billing {
namespace {

constexpr std::size_t kDescriptionLength = 60;
constexpr std::size_t kDeliveryIdLength = 30;
constexpr std::string_view kFirstSignedDay = "2011-01-01";
constexpr std::string_view kOneUnit = "Uni";
const std::string kEmpty;

/// Columns that every row leaves blank.
constexpr std::array kBlankColumns{Col::SalesInvoices,
                                   Col::Invoice,
                                   Col::ShipTo_Address,
                                   Col::ShipTo_BuildingNo,
                                   Col::ShipFrom,
                                   Col::ShipFrom_Address,
                                   Col::ShipFrom_BuildingNo,
                                   Col::Line,
                                   Col::OrderReferences,
                                   Col::CreditNote,
                                   Col::Reference,
                                   Col::Reason,
                                   Col::Tax,
                                   Col::TaxAmount,
                                   Col::DocumentTotals,
                                   Col::Currency,
                                   Col::CurrencyCode,
                                   Col::CurrencyCreditAmount,
                                   Col::CurrencyDebitAmount,
                                   Col::Settlement,
                                   Col::SettlementDiscount,
                                   Col::SettlementAmount1};

constexpr std::array kUnknownColumns{
    Col::ShipTo_StreetName, Col::ShipTo_AddressDetail, Col::ShipTo_City,         Col::ShipTo_PostalCode,
    Col::ShipTo_Region,     Col::ShipTo_Country,       Col::ShipFrom_StreetName, Col::ShipFrom_AddressDetail,
    Col::ShipFrom_City,     Col::ShipFrom_PostalCode,  Col::ShipFrom_Region,     Col::ShipFrom_Country};

std::string First60(std::string_view text) {
  return std::string(toolkit::CutTo(text, kDescriptionLength));
}

const std::string& OrElse(const std::string& text, const std::string& otherwise) {
  return toolkit::IsBlank(text) ? otherwise : text;
}

/// What is under `key`, "" when there is nothing.
template <typename Map>
const std::string& TextOf(const Map& map, std::string_view key) {
  const std::string* text = map.Find(key);
  return text ? *text : kEmpty;
}

std::string MonthOf(std::string_view data) {
  const Currency month = toolkit::NumericPrefix(data.size() < 7 ? std::string_view() : data.substr(5, 2));
  return month.IsZero() ? std::string() : month.ToText();
}

std::string WithoutLineBreaks(std::string_view text) {
  return toolkit::Tirar_Letras_e_Substituir_str(toolkit::Tirar_Letras_e_Substituir_str(text, "\r", " "), "\n",
                                                " ");
}

std::string JoinedLinks(const std::vector<DocumentLink>& links) {
  std::string joined;
  for (const DocumentLink& link : links) {
    if (!joined.empty()) joined += "; ";
    fmt::format_to(std::back_inserter(joined), "{} {}/{}", link.tipo, link.ano, link.numero);
  }
  return joined;
}

}  // namespace

/// What one row says beyond its document.
struct DocumentMapper::RowValues {
  std::string_view productCode;
  std::string productDescription;
  std::string description;
  Currency quantity = Currency::FromWhole(1);
  std::string_view unit = kOneUnit;
  Currency unitPrice;
  Currency amount;
  std::string_view taxPointDate;
  OriginatingOrder order = {};
  std::string_view taxTable;  // code of the source's tax table, may be blank
  Currency taxRate;
  std::string_view warehouse;  // whose region stands for a blank tax code
  Currency settlement = {};
};

DocumentMapper::DocumentMapper(const DocumentLookups& lookups, MappingConstants constants)
    : lookups_(lookups), constants_(std::move(constants)) {
  for (const Col column : kBlankColumns) row_[column].clear();
  row_[Col::NumberOfEntries] = std::to_string(constants_.numberOfEntries);
  row_[Col::TotalDebit] = constants_.totalDebit;
  row_[Col::TotalCredit] = constants_.totalCredit;
}

bool DocumentMapper::Map(const SourceDocument& document, const MappedClass& mappedClass, const Sink& sink) {
  static const DocumentType kNoType;
  const DocumentType* type = lookups_.types.Find(document.header.tipo);
  type_ = type ? type : &kNoType;
  sink_ = &sink;
  side_ = mappedClass.side;
  lineNumber_ = 0;
  FillDocument(document, mappedClass.classe);
  if (!document.lines.empty()) return MapLines(document);
  return document.freeText ? MapFreeText(document.header, *document.freeText)
                           : MapWithoutLines(document.header);
}

void DocumentMapper::FillDocument(const SourceDocument& document, const std::string& classe) {
  const DocumentHeader& header = document.header;
  row_[Col::InvoiceNo] = fmt::format("{} {}/{}", header.tipo, header.ano, header.numero);
  row_[Col::Period] = MonthOf(header.data);
  row_[Col::InvoiceDate] = header.data;
  row_[Col::InvoiceType] = classe;
  row_[Col::SystemEntriedate] =
      header.removed && toolkit::IsBlank(header.systemEntry) ? header.data + "T00:00:00" : header.systemEntry;
  row_[Col::TransactionID] =
      constants_.basis == periods::Basis::Integrated
          ? TextOf(lookups_.transactions, TransactionKey(header.data, "0" + header.numero + header.tipo))
          : kEmpty;
  FillCustomer(header, classe);
  FillSignature(header, classe);
  FillTotals(header);
  FillSettlement(header);
  FillReferences(document);
}

void DocumentMapper::FillCustomer(const DocumentHeader& header, const std::string& classe) {
  static const DocumentCustomer kNoCustomer;
  const DocumentCustomer* found = lookups_.customers.Find(header.codigo);
  const DocumentCustomer& customer = found ? *found : kNoCustomer;
  row_[Col::SelfBillingIndicator] = customer.autoFacturacao;
  row_[Col::InvoiceStatus] = header.removed                     ? "A"
                             : classe == "TD" || classe == "TV" ? "F"
                             : customer.autoFacturacao == "1"   ? "S"
                                                                : "N";
  row_[Col::CustomerID] = CustomerIdOf(header.contribuinte);
  row_[Col::ShipTo] = row_[Col::CustomerID];  // deliberate: says that the element exists
  row_[Col::ShipTo_DeliveryId] = toolkit::CutTo(header.descarga, kDeliveryIdLength);
  row_[Col::ShipTo_DeliveryDate] = header.data;
  row_[Col::ShipFrom_DeliveryId] = toolkit::CutTo(header.carga, kDeliveryIdLength);
  row_[Col::ShipFrom_DeliveryDate] = header.data;
}

void DocumentMapper::FillSignature(const DocumentHeader& header, const std::string& classe) {
  std::string& hash = row_[Col::Hash] = header.hash;
  std::string& control = row_[Col::HashControl] = header.hashControl;
  if (toolkit::IsBlank(hash) && !type_->signs) hash = control = "0";
  if (type_->copiesOriginal)
    control = fmt::format("{}-{}{} {}/{}", control, classe, type_->copiesManual ? "M" : "D",
                          header.serieRecuperado, header.numeroRecuperado);
  if (header.data < kFirstSignedDay) hash = control = "0";
}

void DocumentMapper::FillTotals(const DocumentHeader& header) {
  row_[Col::TaxPayable] = Amount(header.iva);
  row_[Col::NetTotal] = Amount(header.valor - header.desconto);
  row_[Col::GrossTotal] = Amount(header.totalDoc + header.valorIrs);
}

void DocumentMapper::FillSettlement(const DocumentHeader& header) {
  row_[Col::SettlementDate] = type_->Settles() ? header.dataVenc : kEmpty;
  const bool pays = type_->Pays() && !toolkit::IsBlank(header.pagaComo);
  row_[Col::PaymentMechanism] = pays ? TextOf(lookups_.paymentMechanisms, header.pagaComo) : kEmpty;
}

void DocumentMapper::FillReferences(const SourceDocument& document) {
  row_[Col::References] = type_->RefersToOthers() ? JoinedLinks(document.links) : kEmpty;
}

void DocumentMapper::FillTax(const RowValues& values) {
  const bool blank = toolkit::IsBlank(values.taxTable);
  const Currency rate = blank ? Currency() : values.taxRate;
  static const TaxKeys kNoTax;
  const TaxKeys* keys = blank ? nullptr : lookups_.taxes.Find(values.taxTable);
  if (!keys) keys = &kNoTax;
  row_[Col::TaxType] = blank ? "IVA" : keys->taxType;
  row_[Col::TaxCountryRegion] = blank ? TextOf(lookups_.regions, values.warehouse) : keys->countryRegion;
  row_[Col::TaxCode] = blank ? "ISE" : keys->taxCode;
  row_[Col::TaxPercentage] = Amount(rate);
  std::string& reason = row_[Col::TaxExemptionReason];
  reason = rate.IsZero() ? TextOf(lookups_.exemptionReasons, values.taxTable) : kEmpty;
  if (blank && toolkit::IsBlank(reason)) reason = kUnknown;
}

bool DocumentMapper::Emit(const RowValues& values) {
  for (const Col column : kUnknownColumns) row_[column] = kUnknown;
  row_[Col::LineNumber] = toolkit::Zerar(std::to_string(++lineNumber_), 5);
  row_[Col::OriginatingON] = values.order.number;
  row_[Col::OrderDate] = values.order.date;
  row_[Col::ProductCode] = values.productCode;
  row_[Col::ProductDescription] = values.productDescription;
  row_[Col::Quantity] = toolkit::ArredondaVal(values.quantity, constants_.casasDec).ToText();
  row_[Col::UnitOfMeasure] = values.unit;
  row_[Col::UnitPrice] = Amount(values.unitPrice);
  row_[Col::TaxPointDate] = values.taxPointDate;
  row_[Col::Description] = OrElse(values.description, values.productDescription);
  row_[Col::DebitAmount] = side_ == Side::Debit ? Amount(values.amount) : kEmpty;
  row_[Col::CreditAmount] = side_ == Side::Credit ? Amount(values.amount) : kEmpty;
  row_[Col::SettlementAmount] = Amount(values.settlement);
  FillTax(values);
  return (*sink_)(row_);
}

bool DocumentMapper::MapLines(const SourceDocument& document) {
  for (const DocumentLine& line : document.lines) {
    if (!MapLine(document.header, line)) return false;
    for (const ExtraCharge& charge : document.charges) {
      const bool ofLine =
          data::SameText(charge.identifica, line.identifica) && data::SameText(charge.produto, line.codigo);
      if (ofLine && !MapCharge(document.header, line, charge)) return false;
    }
  }
  return true;
}

bool DocumentMapper::MapLine(const DocumentHeader& header, const DocumentLine& line) {
  const Currency amount = line.valorIliq - line.totalDesconto;
  return Emit({.productCode = line.codigo,
               .productDescription = OrDefault(First60(line.descricao)),
               .description = line.descLinha ? First60(*line.descLinha) : std::string(),
               .quantity = line.quantNormal,
               .unit = line.unidade,
               .unitPrice = billing::UnitPrice(amount, line.quantNormal),
               .amount = amount,
               .taxPointDate = OrElse(line.dataGuia, header.data),
               .order = OrderOf(line),
               .taxTable = line.ivaTabela,
               .taxRate = line.ivaTaxa,
               .warehouse = line.armazem,
               .settlement = line.totalDesconto});
}

bool DocumentMapper::MapCharge(const DocumentHeader& header, const DocumentLine& line,
                               const ExtraCharge& charge) {
  const std::string name = First60(TextOf(lookups_.chargeNames, charge.codigoImposto));
  const std::string code = ChargeProduct(charge.codigoImposto);
  return Emit({.productCode = code,
               .productDescription = OrDefault(name),
               .description = name,
               .quantity = line.quantNormal,
               .unit = line.unidade,
               .unitPrice = charge.valorUnitario,
               .amount = charge.imposto,
               .taxPointDate = OrElse(line.dataGuia, header.data),
               .taxTable = charge.tabIva,
               .taxRate = charge.taxaIva,
               .warehouse = line.armazem});
}

bool DocumentMapper::MapWithoutLines(const DocumentHeader& header) {
  static const std::string kOmitted = "Omisso";
  const std::string observa = header.removed ? OrDefault(WithoutLineBreaks(header.observa)) : kEmpty;
  const std::string description =
      header.removed ? First60(observa) : OrElse(First60(header.observa), kOmitted);
  return Emit({.productCode = kNoProduct,
               .productDescription = header.removed ? description : constants_.productDescriptionDefault,
               .description = description,
               .unitPrice = header.valor - header.desconto,
               .amount = header.totalDoc - header.iva,
               .taxPointDate = header.data,
               .taxTable = header.tabIva1,
               .taxRate = header.taxIva1,
               .warehouse = header.armazem});
}

bool DocumentMapper::MapFreeText(const DocumentHeader& header, const FreeTextItem& item) {
  const Currency amount = item.valorInc - item.valorDesc;
  return Emit({.productCode = item.item,
               .productDescription = OrDefault(First60(item.itemDesc)),
               .description = First60(OrElse(item.texto, item.itemDesc)),
               .unitPrice = amount,
               .amount = amount,
               .taxPointDate = header.data,
               .taxTable = item.ivaTab,
               .taxRate = item.ivaTaxa,
               .warehouse = header.armazem});
}

/// A delivery note goes before an order; another line counts only without both.
OriginatingOrder DocumentMapper::OrderOf(const DocumentLine& line) const {
  if (!toolkit::IsBlank(line.numGuia))
    return {fmt::format("{} {}/{}", line.tipoGuia, toolkit::CutTo(line.dataGuia, 4), line.numGuia),
            line.dataGuia};
  if (!toolkit::IsBlank(line.numEncomenda)) {
    const std::string& date = TextOf(lookups_.orderDates, line.numEncomenda);
    return {fmt::format("ENCO {}/{}", toolkit::CutTo(date, 4), line.numEncomenda), date};
  }
  if (toolkit::IsBlank(line.identificaRelacionado)) return {};
  const OriginatingOrder* related = lookups_.relatedLines.Find(line.identificaRelacionado);
  return related ? *related : OriginatingOrder{};
}

std::string DocumentMapper::Amount(Currency value) const {
  return toolkit::NumberText(toolkit::ArredondaVal(value, constants_.casasDec), constants_.decimal);
}

const std::string& DocumentMapper::OrDefault(const std::string& description) const {
  return OrElse(description, constants_.productDescriptionDefault);
}

}  // namespace korvel::billing
