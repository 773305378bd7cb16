#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/connection.h"
#include "data/date_time.h"
#include "demo/money.h"

namespace korvel::demo {

enum class Side { Debit, Credit };

/// One line of an entry. `amount` is never negative.
struct Line {
  std::string account;
  Side side = Side::Debit;
  Cents amount = 0;
  Cents recapitulative = 0;  // taxable amount of the taxpayer's line, 0 on all others
  Cents vat = 0;
  std::string taxNumber;
  std::string country;
};

/// A line without a taxpayer.
Line PlainLine(std::string_view account, Side side, Cents amount);
/// The other side.
Side Opposite(Side side);

/// An entry of the journal: lines that balance.
struct Entry {
  data::DateTime posted;  // date of the entry and the time at which it was typed
  std::string_view journal;
  std::string number;
  std::string text;
  std::string_view saftType = "N";
  bool fromBilling = false;
  std::vector<Line> lines;
};

/// Writes entries to `MovDiario` and knows the balance of every account since the year's start. Memory grows
/// with the accounts used, not with the lines written.
class Ledger {
 public:
  explicit Ledger(data::Connection& lunder);

  /// Lines of amount 0 are left out. Throws std::logic_error for an entry that does not balance, data::Error.
  void Post(const Entry& entry);
  void Finish() { batch_->Finish(); }

  /// Debits less credits.
  Cents Balance(std::string_view account) const;
  /// Accounts whose code begins so and whose balance is not 0, sorted by code.
  std::vector<std::string> OpenAccounts(std::string_view prefix) const;
  /// Begins a year: balances count from here, and so do Lines, Entries and TotalDebit.
  void Restart();

  std::int64_t Lines() const { return lines_; }
  std::int64_t Entries() const { return entries_; }
  Cents TotalDebit() const { return totalDebit_; }

 private:
  void Write(const Entry& entry, const Line& line);

  std::unique_ptr<data::BatchInsert> batch_;
  std::unordered_map<std::string, Cents> balances_;
  std::int64_t lines_ = 0;
  std::int64_t entries_ = 0;
  Cents totalDebit_ = 0;
};

}  // namespace korvel::demo
