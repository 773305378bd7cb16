#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "billing/billing_period.h"
#include "data/connection.h"
#include "data/date_time.h"
#include "periods/period.h"
#include "periods/staged_tables.h"

/// Staged rows of `TabSourceDocumentsGEST`: one a document line, with the values of the document and of the section
/// on each.
namespace korvel::billing {

inline constexpr std::string_view kDocumentsTable = "TabSourceDocumentsGEST";
inline constexpr periods::PeriodTable kStagedDocuments{kDocumentsTable, true};

/// The columns of a mapped row, in the order in which they are checked and counted in messages.
// clang-format off
enum class Col : std::size_t {
  SalesInvoices, NumberOfEntries, TotalDebit, TotalCredit, Invoice, InvoiceNo, InvoiceStatus, Hash, HashControl,
  Period, InvoiceDate, InvoiceType, SelfBillingIndicator, SystemEntriedate, TransactionID, CustomerID, ShipTo,
  ShipTo_DeliveryId, ShipTo_DeliveryDate, ShipTo_Address, ShipTo_BuildingNo, ShipTo_StreetName,
  ShipTo_AddressDetail, ShipTo_City, ShipTo_PostalCode, ShipTo_Region, ShipTo_Country, ShipFrom,
  ShipFrom_DeliveryId, ShipFrom_DeliveryDate, ShipFrom_Address, ShipFrom_BuildingNo, ShipFrom_StreetName,
  ShipFrom_AddressDetail, ShipFrom_City, ShipFrom_PostalCode, ShipFrom_Region, ShipFrom_Country, Line, LineNumber,
  OrderReferences, OriginatingON, OrderDate, ProductCode, ProductDescription, Quantity, UnitOfMeasure, UnitPrice,
  TaxPointDate, References, CreditNote, Reference, Reason, Description, DebitAmount, CreditAmount, Tax, TaxType,
  TaxCountryRegion, TaxCode, TaxPercentage, TaxAmount, TaxExemptionReason, SettlementAmount, DocumentTotals,
  TaxPayable, NetTotal, GrossTotal, Currency, CurrencyCode, CurrencyCreditAmount, CurrencyDebitAmount, Settlement,
  SettlementDiscount, SettlementAmount1, SettlementDate, PaymentMechanism,
};
// clang-format on
inline constexpr std::size_t kMappedColumns = static_cast<std::size_t>(Col::PaymentMechanism) + 1;

/// A row under construction, used again for the next one: what is not assigned keeps its value. Texts are UTF-8,
/// amounts number text with the session's decimal mark, `Quantity` with ".".
class StagedRow {
 public:
  std::string& operator[](Col column) { return values_[static_cast<std::size_t>(column)]; }
  const std::string& operator[](Col column) const { return values_[static_cast<std::size_t>(column)]; }
  const std::array<std::string, kMappedColumns>& Values() const { return values_; }

 private:
  std::array<std::string, kMappedColumns> values_;
};

/// When a column may not be blank, and what is done with it before it is stored.
enum class Required { No, Always, Integrated, ZeroRate };
enum class Repair { None, Unknown, UnknownPostalCode, First60 };

struct MappedColumn {
  std::string_view name;
  std::string_view label = {};  // in the message of an empty column
  Required required = Required::No;
  Repair repair = Repair::None;
};
/// One a Col, in their order.
const std::array<MappedColumn, kMappedColumns>& MappedColumns();

/// An empty column that the row may not have: `label` and its position from 1.
struct EmptyColumn {
  std::string_view label;
  std::size_t position;
};

/// Completes the row (unknown places, the length of references) and finds its first empty required column.
std::optional<EmptyColumn> CompleteRow(StagedRow& row, std::optional<periods::Basis> basis);

/// "O Campo [<nome>-(<n>) ] está Vazio!" and so on.
std::string EmptyColumnText(const EmptyColumn& empty, const StagedRow& row);

/// Writes complete rows in batches. Belongs inside a transaction; nothing counts before Finish.
class DocumentRowWriter {
 public:
  /// `now` goes to `DataSys` of every row, `user` to `Utilizador`.
  DocumentRowWriter(data::Connection& company, const BillingPeriod& period, std::string_view user,
                    const data::DateTime& now);
  DocumentRowWriter(const DocumentRowWriter&) = delete;
  DocumentRowWriter& operator=(const DocumentRowWriter&) = delete;

  /// Throws data::Error.
  void Add(const StagedRow& row);
  void Finish() { batch_->Finish(); }

 private:
  static constexpr std::size_t kKeyColumns = 3;    // in front
  static constexpr std::size_t kStampColumns = 3;  // behind

  std::array<std::string, kKeyColumns + 2> constants_;
  std::array<data::Parameter, kKeyColumns + kMappedColumns + kStampColumns> values_;
  std::unique_ptr<data::BatchInsert> batch_;
};

}  // namespace korvel::billing
