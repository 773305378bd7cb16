#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "accounting/ledger_mapper.h"
#include "data/connection.h"
#include "data/date_time.h"
#include "periods/period.h"

namespace korvel::accounting {

/// A value that a line must have, with its label in the message of an empty one.
struct RequiredValue {
  std::size_t column;
  std::string_view label;
};

/// The first required value of a line that is blank; null when all are filled.
const RequiredValue* FirstEmpty(const LedgerLine& line);

/// Who stages a run, and when: the same for all its rows.
struct StagingStamp {
  std::string utilizador;
  data::DateTime dataSys;
};

/// Sends staged lines of one period in batches.
class LedgerWriter {
 public:
  /// All that is given must outlive the writer, which belongs inside a transaction. Throws data::Error.
  LedgerWriter(data::Connection& company, const periods::PeriodKey& period, const StagingStamp& stamp);

  /// Throws data::Error, as Finish does.
  void Add(const LedgerLine& line);
  void Finish() { batch_->Finish(); }

 private:
  std::unique_ptr<data::BatchInsert> batch_;
  std::vector<data::Parameter> row_;  // the period, the stamp, then one for each staged column
};

}  // namespace korvel::accounting
