#include "auditfile/documents_section.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "auditfile/document_elements.h"
#include "auditfile/piece_buffer.h"
#include "auditfile/sections.h"
#include "data/collation.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::auditfile {
namespace {

using Records = std::vector<std::int64_t>;  // of `NumRegisto`

/// A line of the running document, made already.
struct GatheredLine {
  bool hasNumber = false;
  std::string number;  // `LineNumber`
  std::int64_t record = 0;
  toolkit::ByteRange bytes;
};

/// The numbers are text, so line 10 stands before line 2; that order is the file's.
bool StandsBefore(const GatheredLine& a, const GatheredLine& b) {
  if (a.hasNumber != b.hasNumber) return b.hasNumber;
  const int order = data::Collate(a.number, b.number);
  return order != 0 ? order < 0 : a.record < b.record;
}

/// Makes nested elements of the flat rows. The first row of a document gives its values, all its rows are its lines.
class DocumentWriter {
 public:
  DocumentWriter(XmlWriter& xml, const data::Recordset& rows, const SectionContext& context,
                 const DocumentSelection& selection, RunningKey key)
      : xml_(xml),
        rows_(rows),
        integrated_(context.basis == "I"),
        invoice_(documents::kInvoice, rows, context.format),
        transaction_(documents::kTransaction, rows, context.format),
        customer_(documents::kCustomer, rows, context.format),
        shipTo_(documents::kShipTo, rows, context.format),
        shipFrom_(documents::kShipFrom, rows, context.format),
        line_(documents::kLine, rows, context.format),
        totals_(documents::kDocumentTotals, rows, context.format),
        drives_(rows.IndexOf("Drives")),
        carries_(rows.IndexOf("Carries")),
        record_(rows.IndexOf("NumRegisto")),
        invoiceNo_(rows.IndexOf("InvoiceNo")),
        lineNumber_(rows.IndexOf("LineNumber")),
        taxPayable_(rows.IndexOf("TaxPayable")),
        run_(rows, selection),
        key_(std::move(key)),
        waiting_(pieces_) {}

  void WriteRow() {
    const bool begins = rows_.Integer(drives_) != 0 && key_.Changes(rows_.Text(invoiceNo_));
    if (begins) BeginInvoice();
    if (takesLines_ && rows_.Integer(carries_) != 0 && run_.HoldsRow()) GatherLine();
  }
  /// Completes the last document.
  void Finish() {
    if (inInvoice_) FinishInvoice();
  }
  /// `NumRegisto` of the rows that gave a document no `TaxPayable`.
  const Records& WithoutTaxPayable() const { return withoutTaxPayable_; }

 private:
  void BeginInvoice() {
    Finish();
    inInvoice_ = true;
    run_.Begin();
    takesLines_ = toolkit::NumericPrefix(rows_.Text(lineNumber_)) > data::Currency();
    xml_.OpenElement("Invoice");
    invoice_.Write(xml_, rows_);
    if (integrated_) transaction_.Write(xml_, rows_);
    for (const ElementList* list : {&customer_, &shipTo_, &shipFrom_}) list->Write(xml_, rows_);
    documentTotals_ = Gather(totals_);
    if (toolkit::IsBlank(rows_.Text(taxPayable_))) withoutTaxPayable_.push_back(rows_.Integer(record_));
  }
  /// Makes elements from the current row that are written later.
  toolkit::ByteRange Gather(const ElementList& elements) {
    const std::uint64_t begin = pieces_.Position();
    elements.Write(waiting_, rows_);
    return {begin, pieces_.Position()};
  }
  void GatherLine() {
    GatheredLine line{
        !rows_.IsNull(lineNumber_), std::string(rows_.Text(lineNumber_)), rows_.Integer(record_), {}};
    line.bytes = Gather(line_);
    lines_.push_back(std::move(line));
  }
  void FinishInvoice() {
    if (!std::ranges::is_sorted(lines_, StandsBefore)) std::ranges::sort(lines_, StandsBefore);
    for (const GatheredLine& line : lines_) xml_.Raw().Append(pieces_.Bytes(line.bytes));
    xml_.Raw().Append(pieces_.Bytes(documentTotals_));
    xml_.CloseElement();
    lines_.clear();
    pieces_.Clear();
    inInvoice_ = false;
  }

  XmlWriter& xml_;
  const data::Recordset& rows_;
  const bool integrated_;
  const ElementList invoice_, transaction_, customer_, shipTo_, shipFrom_, line_, totals_;
  const std::size_t drives_, carries_, record_, invoiceNo_, lineNumber_, taxPayable_;
  DocumentRun run_;
  RunningKey key_;
  bool inInvoice_ = false;
  bool takesLines_ = false;
  PieceBuffer pieces_;
  XmlWriter waiting_;
  std::vector<GatheredLine> lines_;
  toolkit::ByteRange documentTotals_;
  Records withoutTaxPayable_;
};

constexpr std::size_t kRepairsAtOnce = 500;

/// Somebody may have filled a value in meanwhile; it stays.
void RepairSome(data::Connection& company, std::span<const std::int64_t> records) {
  std::string statement =
      fmt::format("Update {} set TaxPayable=? where isnull(TaxPayable,'')='' and NumRegisto in (",
                  sections::kGESTSourceDocuments.table);
  std::vector<data::Parameter> values{"0"};
  for (const std::int64_t record : records) {
    statement += values.size() == 1 ? "?" : ",?";
    values.emplace_back(record);
  }
  company.Execute(statement + ")", values);
}

/// The documents' rows get the 0 that the file shows.
void RepairTaxPayable(data::Connection& company, std::span<const std::int64_t> records) {
  if (records.empty()) return;
  data::Transaction transaction(company);
  for (std::size_t done = 0; done < records.size(); done += kRepairsAtOnce) {
    RepairSome(company, records.subspan(done, std::min(kRepairsAtOnce, records.size() - done)));
  }
  transaction.Commit();
}

/// Returns which rows want their `TaxPayable` repaired.
Records WriteRows(XmlWriter& xml, data::Recordset& rows, const SectionContext& context,
                  const DocumentSelection& selection, RunningKey key) {
  toolkit::ProgressScope progress(context.progress, sections::kGESTSourceDocuments.caption, 0);
  DocumentWriter documents(xml, rows, context, selection, std::move(key));
  for (; !rows.Eof(); rows.MoveNext()) {
    progress.Step();
    documents.WriteRow();
  }
  documents.Finish();
  return documents.WithoutTaxPayable();
}

Records WriteSection(XmlWriter& xml, const SectionContext& context, const DocumentSelection& selection,
                     RunningKey key) {
  Records withoutTaxPayable;
  data::Recordset rows = context.company.Query(DocumentStatement(context, selection));
  if (rows.Eof()) return withoutTaxPayable;
  xml.OpenElement("SourceDocuments");
  xml.OpenElement("SalesInvoices");
  ElementList(documents::kTotals, rows, context.format).Write(xml, rows);
  withoutTaxPayable = WriteRows(xml, rows, context, selection, std::move(key));
  xml.CloseElement();
  xml.CloseElement();
  return withoutTaxPayable;
}

}  // namespace

bool WantsDocuments(const SectionContext& context) {
  return context.options.chkGESTSourceDocuments && context.HasBilling();
}

void WriteDocuments(XmlWriter& xml, const SectionContext& context, const DocumentSelection& selection,
                    RunningKey key) {
  if (!WantsDocuments(context)) return;
  // The rows are read to their end before the connection can write.
  const Records withoutTaxPayable = WriteSection(xml, context, selection, std::move(key));
  RepairTaxPayable(context.company, withoutTaxPayable);
}

}  // namespace korvel::auditfile
