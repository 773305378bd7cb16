#include "auditfile/ledger_section.h"

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "auditfile/sections.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

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

/// The key of a running group of lines: compared without regard to case and outer blanks.
class GroupKey {
 public:
  explicit GroupKey(std::size_t column) : column_(column) {}

  /// True when the current row begins another group. Most rows repeat the text of the row before, which is
  /// seen without making a key.
  bool Changes(const data::Recordset& rows) {
    const std::string_view text = rows.Text(column_);
    if (key_ && text == text_) return false;
    text_.assign(text);
    std::string key = toolkit::Upper(toolkit::Trim(text));
    if (key_ == key) return false;
    key_ = std::move(key);
    return true;
  }
  /// The next row begins a group whatever its text.
  void Reset() { key_.reset(); }

 private:
  std::size_t column_;
  std::string text_;
  std::optional<std::string> key_;
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
        journalKey_(rows.IndexOf("JournalID")),
        transactionKey_(rows.IndexOf("TransactionID")) {}

  void WriteRow() {
    if (journalKey_.Changes(rows_)) BeginJournal();
    if (transactionKey_.Changes(rows_)) BeginTransaction();
    xml_.Element("Line", [&] { line_.Write(xml_, rows_); });
  }
  /// Closes what the last row left open.
  void Finish() {
    CloseTransaction();
    if (inJournal_) xml_.CloseElement();
    inJournal_ = false;
  }

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
  GroupKey journalKey_;
  GroupKey transactionKey_;
  bool inJournal_ = false;
  bool inTransaction_ = false;
};

/// The sort columns are text, so line 10 stands before line 2; that order is the file's.
std::string Statement(const SectionContext& context, std::string_view monthFilter) {
  std::string statement = "Select * from TabGeneralLedgerEntriesPOC where NumRegisto>0 ";
  statement.append(context.PeriodFilter()).append(monthFilter);
  return statement.append(" order by JournalID,TransactionID,RecordID,NumRegisto");
}

void WriteRows(XmlWriter& xml, data::Recordset& rows, const SectionContext& context) {
  toolkit::ProgressScope progress(context.progress, sections::kPOCGeneralLedgerEntries.caption, 0);
  LedgerWriter ledger(xml, rows, context.format);
  for (; !rows.Eof(); rows.MoveNext()) {
    progress.Step();
    ledger.WriteRow();
  }
  ledger.Finish();
}

}  // namespace

void WriteLedgerEntries(XmlWriter& xml, const SectionContext& context, std::string_view monthFilter) {
  if (!context.options.chkPOCGeneralLedgerEntries || !context.HasAccounting()) return;
  data::Recordset rows = context.company.Query(Statement(context, monthFilter));
  if (rows.Eof()) return;
  xml.Element("GeneralLedgerEntries", [&] {
    ElementList(kTotals, rows, context.format).Write(xml, rows);
    WriteRows(xml, rows, context);
  });
}

}  // namespace korvel::auditfile
