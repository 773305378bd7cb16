#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "data/collated_map.h"
#include "data/currency.h"
#include "data/date_time.h"
#include "toolkit/numbers.h"

namespace korvel::accounting {

/// The values of a staged line, in the order of MovimentosTable().
namespace ledger {
enum : std::size_t {
  kNumRegisto,
  kNumberOfEntries,
  kTotalDebit,
  kTotalCredit,
  kJournal,
  kJournalId,
  kJournalDescription,
  kTransaction,
  kTransactionId,
  kPeriod,
  kTransactionDate,
  kSourceId,
  kDescription,
  kDocArchivalNumber,
  kTransactionType,
  kGLPostingDate,
  kCustomerId,
  kSupplierId,
  kLine,
  kRecordId,
  kAccountId,
  kSourceDocumentId,
  kSystemEntryDate,
  kLineDescription,
  kDebitAmount,
  kCreditAmount,
  kColumnCount
};
}  // namespace ledger

using LedgerLine = std::array<std::string, ledger::kColumnCount>;

/// A line of Lunder's journal; texts are views, NULL reads as "" or 0.
struct JournalLine {
  std::int64_t numRegisto = 0;
  std::string_view contaSp;
  std::string_view afecta;
  std::string_view diario;
  std::string_view data;  // YYYY-MM-DD
  std::string_view numero;
  std::string_view descricao;
  std::string_view utilizador;
  std::string_view contribuinte;
  std::string_view cliFor;
  std::string_view rcrf;
  std::string_view tipoMovSaft;
  std::int64_t integracao = 0;
  data::Currency valor;
  data::Currency valRecap;
  bool hasDataSys = false;
  data::DateTime dataSys;
};

/// What the role of a journal puts in the place of a line's own values.
struct JournalRole {
  std::string_view period;
  std::string_view description;
};

struct Journal {
  std::string description;
  const JournalRole* role = nullptr;  // null for a journal without one
};
using Journals = data::CollatedMap<Journal>;

/// What the verification of a period's journal counts: lines of staged accounts, those without a value too.
struct LedgerTotals {
  std::int64_t entries = 0;
  data::Currency debit;
  data::Currency credit;
};

/// What a run of the mapper depends on beside the line.
struct LedgerRun {
  bool integrated = false;  // the period joins books and billing
  int casas = 2;
  toolkit::Marks marks;
  LedgerTotals totals;
};

/// Makes staged lines of journal lines. What depends on the document alone is made anew only when the document
/// changes, so lines are best given in its order; the result does not depend on it.
class LedgerMapper {
 public:
  /// `journals` must outlive the mapper.
  LedgerMapper(LedgerRun run, const Journals& journals);

  /// The staged line, good until the next call.
  const LedgerLine& Map(const JournalLine& line);

 private:
  void EnterDocument(const JournalLine& line);
  void MapDescriptions(const JournalLine& line);
  void MapPostingDate(const JournalLine& line);
  void MapTaxpayer(const JournalLine& line);
  void MapAmounts(const JournalLine& line);

  LedgerRun run_;
  const Journals& journals_;
  LedgerLine staged_;
  bool inDocument_ = false;
  std::string numero_;  // as it stands in the journal; the other parts of the document's key are in staged_
  std::string sourceDocument_;
  const JournalRole* role_ = nullptr;
  bool hasPostingDate_ = false;
  data::DateTime postingDate_;
};

}  // namespace korvel::accounting
