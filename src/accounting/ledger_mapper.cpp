#include "accounting/ledger_mapper.h"

#include <charconv>
#include <utility>

#include "accounting/document_codes.h"
#include "toolkit/text.h"

namespace korvel::accounting {
namespace {

using namespace ledger;  // the columns

constexpr std::size_t kSourceIdLength = 30;
constexpr std::size_t kDescriptionLength = 60;
constexpr std::string_view kNoDescription = "Sem Descrição";
constexpr std::int64_t kFromBilling = 1;  // `Integracao` of a line that comes from the billing product

void WriteNumber(std::string& target, std::int64_t number) {
  std::array<char, 24> digits;
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  target.assign(digits.data(), written.ptr);
}

/// The plain number of a date's month; "" for a text that is no date.
std::string MonthOf(std::string_view date) {
  const auto day = data::DateTime::FromText(date);
  return day ? std::to_string(day->month) : std::string();
}

}  // namespace

LedgerMapper::LedgerMapper(LedgerRun run, const Journals& journals)
    : run_(std::move(run)), journals_(journals) {
  const auto total = [&](data::Currency amount) {
    return toolkit::FDNum(toolkit::ArredondaVal(amount, run_.casas), run_.casas, toolkit::kNoGrouping, {},
                          run_.marks);
  };
  WriteNumber(staged_[kNumberOfEntries], run_.totals.entries);
  staged_[kTotalDebit] = total(run_.totals.debit);
  staged_[kTotalCredit] = total(run_.totals.credit);
}

const LedgerLine& LedgerMapper::Map(const JournalLine& line) {
  EnterDocument(line);
  WriteNumber(staged_[kNumRegisto], line.numRegisto);
  staged_[kRecordId] = staged_[kNumRegisto];
  staged_[kAccountId] = line.contaSp;
  staged_[kSourceId] = toolkit::CutTo(line.utilizador, kSourceIdLength);
  staged_[kTransactionType] = line.tipoMovSaft;
  const bool fromBilling = run_.integrated && line.integracao == kFromBilling;
  staged_[kSourceDocumentId] = fromBilling ? std::string_view(sourceDocument_) : std::string_view();
  MapDescriptions(line);
  MapPostingDate(line);
  MapTaxpayer(line);
  MapAmounts(line);
  return staged_;
}

void LedgerMapper::EnterDocument(const JournalLine& line) {
  if (inDocument_ && line.numero == numero_ && line.data == staged_[kTransactionDate] &&
      line.diario == staged_[kJournalId]) {
    return;
  }
  inDocument_ = true;
  numero_ = line.numero;
  const Journal* journal = journals_.Find(line.diario);
  role_ = journal ? journal->role : nullptr;
  staged_[kJournalId] = line.diario;
  staged_[kJournalDescription] = journal ? std::string_view(journal->description) : std::string_view();
  staged_[kDocArchivalNumber] = CleanNumber(line.numero);
  sourceDocument_ = SourceDocumentOf(staged_[kDocArchivalNumber]);
  staged_[kTransactionDate] = line.data;
  staged_[kPeriod] = role_ ? std::string(role_->period) : MonthOf(line.data);
  std::string& key = staged_[kTransactionId];
  key.assign(line.data).append(" ").append(line.diario).append(" ").append(staged_[kDocArchivalNumber]);
}

void LedgerMapper::MapDescriptions(const JournalLine& line) {
  const std::string_view own = toolkit::CutTo(line.descricao, kDescriptionLength);
  const std::string_view shown = toolkit::IsBlank(own) ? kNoDescription : own;
  staged_[kLineDescription] = shown;
  staged_[kDescription] = role_ ? role_->description : shown;
}

void LedgerMapper::MapPostingDate(const JournalLine& line) {
  if (hasPostingDate_ == line.hasDataSys && postingDate_ == line.dataSys) return;
  hasPostingDate_ = line.hasDataSys;
  postingDate_ = line.dataSys;
  staged_[kGLPostingDate] = hasPostingDate_ ? postingDate_.IsoText() : std::string();
  staged_[kSystemEntryDate] = staged_[kGLPostingDate];
}

void LedgerMapper::MapTaxpayer(const JournalLine& line) {
  staged_[kCustomerId].clear();
  staged_[kSupplierId].clear();
  if (line.valRecap.IsZero()) return;
  if (line.cliFor == "C" || line.rcrf == "RC") {
    staged_[kCustomerId] = toolkit::LimpaContribuinte_str(line.contribuinte);
  } else if (line.cliFor == "F" || line.rcrf == "RF") {
    staged_[kSupplierId] = toolkit::LimpaContribuinte_str(line.contribuinte);
  }
}

void LedgerMapper::MapAmounts(const JournalLine& line) {
  const std::string amount =
      toolkit::NumberText(toolkit::ArredondaVal(line.valor, run_.casas), run_.marks.decimal);
  staged_[kDebitAmount] = line.afecta == "D" ? std::string_view(amount) : "0";
  staged_[kCreditAmount] = line.afecta == "C" ? std::string_view(amount) : "0";
}

}  // namespace korvel::accounting
