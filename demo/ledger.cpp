#include "demo/ledger.h"

#include <algorithm>
#include <stdexcept>

#include "demo/lunder_schema.h"

namespace korvel::demo {

namespace {

constexpr std::string_view kUsers[] = {"ana.sousa", "JOÃO", "m.d'orey", "contabilidade"};

Cents Signed(const Line& line) {
  return line.side == Side::Debit ? line.amount : -line.amount;
}

}  // namespace

Line PlainLine(std::string_view account, Side side, Cents amount) {
  Line line;
  line.account = account;
  line.side = side;
  line.amount = amount;
  return line;
}

Side Opposite(Side side) {
  return side == Side::Debit ? Side::Credit : Side::Debit;
}

Ledger::Ledger(data::Connection& lunder)
    : batch_(lunder.OpenBatch(lunder::kMovDiario.name, ColumnNames(lunder::kMovDiario))) {}

void Ledger::Post(const Entry& entry) {
  Cents difference = 0;
  for (const Line& line : entry.lines) difference += Signed(line);
  if (difference != 0) throw std::logic_error("the entry " + entry.number + " does not balance");
  for (const Line& line : entry.lines) {
    if (line.amount != 0) Write(entry, line);
  }
  ++entries_;
}

void Ledger::Write(const Entry& entry, const Line& line) {
  const bool debit = line.side == Side::Debit;
  const int sign = debit ? 1 : -1;
  const std::string date = entry.posted.DateText();
  const std::string_view user = kUsers[static_cast<std::size_t>(entries_) % std::size(kUsers)];
  const data::Parameter values[] = {line.account,
                                    date,
                                    entry.journal,
                                    entry.number,
                                    FromCents(line.amount),
                                    FromCents(line.recapitulative),
                                    FromCents(line.vat),
                                    debit ? "D" : "C",
                                    sign,
                                    line.recapitulative != 0 ? sign : 0,
                                    line.taxNumber,
                                    line.country,
                                    entry.fromBilling,
                                    user,
                                    entry.posted,
                                    entry.text,
                                    entry.saftType};
  batch_->Add(values);
  balances_[line.account] += Signed(line);
  if (debit) totalDebit_ += line.amount;
  ++lines_;
}

Cents Ledger::Balance(std::string_view account) const {
  const auto found = balances_.find(std::string(account));
  return found == balances_.end() ? 0 : found->second;
}

std::vector<std::string> Ledger::OpenAccounts(std::string_view prefix) const {
  std::vector<std::string> open;
  for (const auto& [account, balance] : balances_) {
    if (balance != 0 && account.starts_with(prefix)) open.push_back(account);
  }
  std::ranges::sort(open);
  return open;
}

void Ledger::Restart() {
  balances_.clear();
  lines_ = entries_ = totalDebit_ = 0;
}

}  // namespace korvel::demo
