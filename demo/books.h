#pragma once

#include <cstdint>

#include "data/connection.h"
#include "demo/money.h"
#include "toolkit/ports.h"

namespace korvel::demo {

struct BooksOptions {
  int year = 2025;
  /// About how many ledger lines the year has, and as many lines of sales documents; fewer than what every
  /// year has give that alone. The year before comes on top, with a tenth.
  std::int64_t lines = 2000;
};

/// What was written: people and accounts, and of the year itself entries and documents.
struct BooksSummary {
  std::int64_t accounts = 0;
  std::int64_t customers = 0;
  std::int64_t suppliers = 0;
  std::int64_t products = 0;
  std::int64_t entries = 0;
  std::int64_t lines = 0;
  data::Currency totalDebit;   // and credit: all entries balance
  std::int64_t documents = 0;  // of sale
  std::int64_t documentLines = 0;
};

/// Makes the tables of the accounting product and of the billing product in two empty databases and fills
/// both with two years of the same business, in one transaction each. The same options give the same rows
/// everywhere. Memory stays flat whatever the number of lines. Throws data::Error and toolkit::Cancelled;
/// both databases are as before then, but for a failure of the very last step, the billing product's commit.
BooksSummary FillBooks(data::Connection& lunder, data::Connection& brevant, const BooksOptions& options,
                       toolkit::Progress& progress);

}  // namespace korvel::demo
