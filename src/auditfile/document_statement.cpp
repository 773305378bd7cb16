#include "auditfile/document_statement.h"

#include <fmt/format.h>

#include <algorithm>

#include "auditfile/sections.h"
#include "data/collation.h"

namespace korvel::auditfile {
namespace {

constexpr std::string_view kTable = sections::kGESTSourceDocuments.table;

using RunColumns = std::array<std::string_view, 3>;
constexpr RunColumns kRun{"SalesInvoices", "Invoice", "InvoiceNo"};
constexpr RunColumns kScatteredRun{"RunSalesInvoices", "RunInvoice", "RunInvoiceNo"};

std::string Condition(const SectionContext& context, std::string_view monthFilter = {}) {
  return fmt::format("NumRegisto>0 {}{}", context.PeriodFilter(), monthFilter);
}

/// Every row is the document's and its line at once.
std::string TogetherStatement(const SectionContext& context, std::string_view monthFilter) {
  return fmt::format(
      "Select 1 as Drives,1 as Carries,* from {} where {}"
      " order by SalesInvoices,Invoice,InvoiceNo,InvoiceDate,InvoiceType,ShipTo,NumRegisto",
      kTable, Condition(context, monthFilter));
}

/// The rows that make documents, and behind those of each run once more all rows that are its document's lines.
std::string ScatteredStatement(const SectionContext& context, std::string_view monthFilter) {
  return fmt::format(
      "Select 1 as Drives,0 as Carries,SalesInvoices as RunSalesInvoices,Invoice as RunInvoice,"
      "InvoiceNo as RunInvoiceNo,* from {0} where {1}"
      " union all "
      "Select 0,1,R.SalesInvoices,R.Invoice,R.InvoiceNo,L.* from"
      " (Select distinct SalesInvoices,Invoice,InvoiceNo from {0} where {1}) R"
      " inner join {0} L on L.SalesInvoices=isnull(R.SalesInvoices,'') and L.InvoiceNo=isnull(R.InvoiceNo,'')"
      " where {2}"
      " order by RunSalesInvoices,RunInvoice,RunInvoiceNo,Drives "
      "desc,InvoiceDate,InvoiceType,ShipTo,NumRegisto",
      kTable, Condition(context, monthFilter), Condition(context));
}

}  // namespace

bool DocumentsAreScattered(const SectionContext& context) {
  std::string statement = fmt::format("Select count(*) from {} where {}", kTable, Condition(context));
  std::string apart =
      " having min(Invoice)<>max(Invoice) or count(Invoice)<>count(*) or count(SalesInvoices)<>count(*)"
      " or count(InvoiceNo)<>count(*)";
  if (context.options.chkPorMeses) {
    statement += " group by SalesInvoices,InvoiceNo";
    apart += " or min(Period)<>max(Period) or count(Period)<>count(*)";
  }
  return !context.company.Query(statement + apart).Eof();
}

std::string DocumentStatement(const SectionContext& context, const DocumentSelection& selection) {
  return selection.scattered ? ScatteredStatement(context, selection.monthFilter)
                             : TogetherStatement(context, selection.monthFilter);
}

DocumentRun::DocumentRun(const data::Recordset& rows, const DocumentSelection& selection) : rows_(rows) {
  const RunColumns& columns = selection.scattered ? kScatteredRun : kRun;
  for (std::size_t i = 0; i < cells_.size(); ++i) cells_[i].column = rows.IndexOf(columns[i]);
}

void DocumentRun::Begin() {
  for (Cell& cell : cells_) {
    cell.isNull = rows_.IsNull(cell.column);
    cell.text.assign(rows_.Text(cell.column));
  }
}

bool DocumentRun::HoldsRow() const {
  return std::ranges::all_of(cells_, [&](const Cell& cell) {
    return rows_.IsNull(cell.column) == cell.isNull && data::SameText(rows_.Text(cell.column), cell.text);
  });
}

}  // namespace korvel::auditfile
