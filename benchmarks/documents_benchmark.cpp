#include <fmt/format.h>

#include <array>

#include "bare_sqlite.h"
#include "benchmarks.h"
#include "billing/document_rows.h"
#include "billing/documents.h"
#include "billing/tax_table.h"
#include "company.h"
#include "measure.h"

namespace korvel::benchmarks {
namespace {

using billing::Col;

constexpr std::string_view kStaged = billing::kDocumentsTable;
constexpr int kLinesPerDocument = 5;

/// A signature has 172 characters.
constexpr std::size_t kHashLength = 172;

/// A staged row as extraction leaves it; what differs between rows is set for each.
billing::StagedRow RowOfAllDocuments(std::int64_t documents) {
  billing::StagedRow row;
  const std::pair<Col, std::string> values[] = {{Col::NumberOfEntries, std::to_string(documents)},
                                                {Col::TotalDebit, "0,00"},
                                                {Col::TotalCredit, "123456789,00"},
                                                {Col::InvoiceStatus, "N"},
                                                {Col::Hash, std::string(kHashLength, 'h')},
                                                {Col::HashControl, "1"},
                                                {Col::SelfBillingIndicator, "0"},
                                                {Col::ShipTo_DeliveryId, "Morada do cliente"},
                                                {Col::ShipFrom_DeliveryId, "Armazém da sede"},
                                                {Col::UnitOfMeasure, "Uni"},
                                                {Col::UnitPrice, "12,5"},
                                                {Col::CreditAmount, "31,25"},
                                                {Col::TaxType, "IVA"},
                                                {Col::TaxCountryRegion, "PT"},
                                                {Col::TaxCode, "NOR"},
                                                {Col::TaxPercentage, "23"},
                                                {Col::SettlementAmount, "0"},
                                                {Col::TaxPayable, "35,94"},
                                                {Col::NetTotal, "156,25"},
                                                {Col::GrossTotal, "192,19"},
                                                {Col::Quantity, "2.5"},
                                                {Col::PaymentMechanism, "NU"}};
  for (const auto& [column, value] : values) row[column] = value;
  return row;
}

void SetDocument(billing::StagedRow& row, std::int64_t number) {
  constexpr std::array<std::string_view, 4> kTypes{"FT", "NC", "VD", "TV"};
  const auto type = kTypes[static_cast<std::size_t>(number) % kTypes.size()];
  const std::int64_t month = number % 12 + 1;
  const std::string date = fmt::format("2025-{:02}-{:02}", month, number % 28 + 1);
  row[Col::InvoiceNo] = fmt::format("{}1 2025/{:08}", type, number);
  row[Col::InvoiceType] = type;
  row[Col::Period] = std::to_string(month);
  for (const Col column : {Col::InvoiceDate, Col::ShipTo_DeliveryDate, Col::ShipFrom_DeliveryDate,
                           Col::TaxPointDate, Col::SettlementDate}) {
    row[column] = date;
  }
  row[Col::SystemEntriedate] = date + "T09:30:00";
  row[Col::CustomerID] = row[Col::ShipTo] = std::to_string(500000000 + number % 5000);
}

void SetLine(billing::StagedRow& row, std::int64_t document, int line) {
  row[Col::LineNumber] = fmt::format("{:05}", line);
  row[Col::ProductCode] = fmt::format("ART{:05}", document * line % 2000);
  row[Col::ProductDescription] = row[Col::Description] =
      "Artigo de consumo corrente " + row[Col::ProductCode];
}

/// Documents as staged, made here.
class StagedCompany : public Company {
 public:
  explicit StagedCompany(std::int64_t documents) : Company(periods::Basis::Billing, 0) {
    const auto connection = Open();
    data::Transaction transaction(*connection);
    billing::DocumentRowWriter writer(*connection, {Period(), ""}, "sa", data::DateTime{2025, 12, 31});
    billing::StagedRow row = RowOfAllDocuments(documents);
    for (std::int64_t document = 1; document <= documents; ++document) {
      SetDocument(row, document);
      for (int line = 1; line <= kLinesPerDocument; ++line) {
        SetLine(row, document, line);
        billing::CompleteRow(row, periods::Basis::Billing);
        writer.Add(row);
      }
    }
    writer.Finish();
    transaction.Commit();
  }
};

void BenchmarkExport(std::int64_t documents) {
  const long small = StagedCompany(documents / 10).ExportMemory();
  StagedCompany company(documents);
  PrintMemory(company.ExportMemory(), small);
  const std::string ordered =
      company.Statement(kStaged, "SalesInvoices,Invoice,InvoiceNo,InvoiceDate,InvoiceType,ShipTo,NumRegisto");
  Print("export / bare ordered scan", 1.3,
        Compare([&] { company.Export(); }, [&] { BareScan(company.Database(), ordered); }));
}

/// The demonstration's own documents, so many lines of them.
class SourceCompany : public Company {
 public:
  explicit SourceCompany(std::int64_t lines) : Company(periods::Basis::Integrated, lines) {
    const auto taxes = billing::CalcularImpostos(Context(), Of());
    Require(taxes && billing::GravarImpostos(Context(), Of(), *taxes), "taxes");
  }

  void Extract() {
    Require(billing::CalcularDocumentos(Context(), Of(), billing::Caller::Command), "documents");
  }

 private:
  billing::BillingPeriod Of() const { return {Period(), ""}; }
};

void BenchmarkExtraction(std::int64_t lines) {
  SourceCompany company(lines);
  company.Extract();
  const TableCopy rows(company.Database(), kStaged);
  fmt::print("{} document lines in the demonstration\n", rows.Rows());
  Print("extraction / bare insert", 3.0,
        Compare([&] { company.Extract(); }, [&] { rows.InsertInto(company.Scratch()); },
                [&] { company.Clear(kStaged); }));
}

}  // namespace

void BenchmarkDocuments(std::int64_t documents) {
  fmt::print("{} documents of {} lines\n", documents, kLinesPerDocument);
  BenchmarkExport(documents);
  BenchmarkExtraction(documents * kLinesPerDocument);
}

}  // namespace korvel::benchmarks
