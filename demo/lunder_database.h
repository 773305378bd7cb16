#pragma once

#include <cstdint>

#include "data/connection.h"
#include "demo/ledger.h"
#include "toolkit/ports.h"

namespace korvel::demo {

struct LunderOptions {
  int year = 2025;
  /// About how many ledger lines; fewer than the year's fixed entries take give those alone.
  std::int64_t lines = 2000;
};

struct LunderSummary {
  std::int64_t accounts = 0;
  std::int64_t customers = 0;
  std::int64_t suppliers = 0;
  std::int64_t entries = 0;
  std::int64_t lines = 0;
  data::Currency totalDebit;  // and credit: all entries balance
};

/// Makes the accounting product's tables in an empty database and fills them with a year of a company's books, in one
/// transaction. The same options give the same rows everywhere. Memory stays flat whatever the number of lines.
/// Throws data::Error and toolkit::Cancelled; the database is as before then.
LunderSummary FillLunder(data::Connection& lunder, const LunderOptions& options, toolkit::Progress& progress);

}  // namespace korvel::demo
