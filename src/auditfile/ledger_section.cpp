#include "auditfile/ledger_section.h"

#include <array>
#include <string>

#include "auditfile/sections.h"
#include "toolkit/progress_scope.h"

namespace korvel::auditfile {
namespace {

constexpr std::array kTotals{
    Element{"NumberOfEntries", "NumberOfEntries", Rule::Count},
    Element{"TotalDebit", "TotalDebit", Rule::Amount},
    Element{"TotalCredit", "TotalCredit", Rule::Amount},
};

constexpr std::array kJournal{Plain("JournalID"), Element{"Description", "JournalDescription"}};

constexpr std::array kTransaction{
    Plain("TransactionID"),
    Plain("Period"),
    Plain("TransactionDate"),
    Plain("SourceID"),
    Plain("Description"),
    Plain("DocArchivalNumber"),
    Element{"TransactionType", "TransactionType", Rule::NormalIfBlank},
    Plain("GLPostingDate"),
    Optional("CustomerID"),
    Optional("SupplierID"),
};

constexpr std::array kLine{
    Plain("RecordID"),
    Plain("AccountID"),
    Optional("SourceDocumentID"),
    Plain("SystemEntryDate"),
    Element{"Description", "LineDescription"},
    Element{"DebitAmount", "DebitAmount", Rule::AmountIfAny},
    Element{"CreditAmount", "CreditAmount", Rule::AmountIfAny},
};

/// Makes nested elements of the flat rows, which come ordered by journal, transaction and line.
class LedgerWriter {
 public:
  LedgerWriter(XmlWriter& xml, const data::Recordset& rows, const AmountFormat& format)
      : xml_(xml),
        rows_(rows),
        journal_(kJournal, rows, format),
        transaction_(kTransaction, rows, format),
        line_(kLine, rows, format),
        journalId_(rows.IndexOf("JournalID")),
        transactionId_(rows.IndexOf("TransactionID")) {}

  void WriteRow() {
    if (journalKey_.Changes(rows_.Text(journalId_))) BeginJournal();
    if (transactionKey_.Changes(rows_.Text(transactionId_))) BeginTransaction();
    xml_.Element("Line", [&] { line_.Write(xml_, rows_); });
  }
  /// Closes what the last row left open.
  void Finish() {
    CloseTransaction();
    if (inJournal_) xml_.CloseElement();
    inJournal_ = false;
  }
  /// Of the last row's transaction.
  const RunningKey& Key() const { return transactionKey_; }

 private:
  void BeginJournal() {
    Finish();
    // A transaction number that repeats in another journal is another transaction.
    transactionKey_.Reset();
    xml_.OpenElement("Journal");
    inJournal_ = true;
    journal_.Write(xml_, rows_);
  }
  void BeginTransaction() {
    CloseTransaction();
    xml_.OpenElement("Transaction");
    inTransaction_ = true;
    transaction_.Write(xml_, rows_);
  }
  void CloseTransaction() {
    if (inTransaction_) xml_.CloseElement();
    inTransaction_ = false;
  }

  XmlWriter& xml_;
  const data::Recordset& rows_;
  ElementList journal_;
  ElementList transaction_;
  ElementList line_;
  std::size_t journalId_;
  std::size_t transactionId_;
  RunningKey journalKey_;
  RunningKey transactionKey_;
  bool inJournal_ = false;
  bool inTransaction_ = false;
};

/// The sort columns are text, so line 10 stands before line 2; that order is the file's.
std::string Statement(const SectionContext& context, std::string_view monthFilter) {
  std::string statement = "Select * from TabGeneralLedgerEntriesPOC where NumRegisto>0 ";
  statement.append(context.PeriodFilter()).append(monthFilter);
  return statement.append(" order by JournalID,TransactionID,RecordID,NumRegisto");
}

RunningKey WriteRows(XmlWriter& xml, data::Recordset& rows, const SectionContext& context) {
  toolkit::ProgressScope progress(context.progress, sections::kPOCGeneralLedgerEntries.caption, 0);
  LedgerWriter ledger(xml, rows, context.format);
  for (; !rows.Eof(); rows.MoveNext()) {
    progress.Step();
    ledger.WriteRow();
  }
  ledger.Finish();
  return ledger.Key();
}

}  // namespace

RunningKey WriteLedgerEntries(XmlWriter& xml, const SectionContext& context, std::string_view monthFilter) {
  RunningKey key;
  if (!context.options.chkPOCGeneralLedgerEntries || !context.HasAccounting()) return key;
  data::Recordset rows = context.company.Query(Statement(context, monthFilter));
  if (rows.Eof()) return key;
  xml.Element("GeneralLedgerEntries", [&] {
    ElementList(kTotals, rows, context.format).Write(xml, rows);
    key = WriteRows(xml, rows, context);
  });
  return key;
}

}  // namespace korvel::auditfile
