#include "demo/lunder_database.h"

#include <fmt/format.h>

#include <algorithm>

#include "demo/chart_of_accounts.h"
#include "demo/code_tables.h"
#include "demo/lunder_schema.h"
#include "demo/year_book.h"
#include "toolkit/progress_scope.h"

namespace korvel::demo {

namespace {

constexpr std::uint64_t kTaxpayerSeed = 508123453;
constexpr std::int64_t kMonthlyLines = 15;  // of wages and VAT, with what the year's end adds
constexpr std::int64_t kMonths = 12;

std::int64_t TaxpayerCount(std::int64_t lines, std::int64_t linesEach, std::int64_t most) {
  return std::clamp<std::int64_t>(lines / linesEach, 8, most);
}

/// Documents day by day until the year has its lines, each month closed when its last day is over.
void WriteYear(YearBook& book, const Ledger& ledger, const LunderOptions& options,
               toolkit::Progress& progress) {
  toolkit::ProgressScope scope(progress, "A gerar movimentos", options.lines);
  book.OpenYear();
  const std::int64_t first = ledger.Lines();
  const std::int64_t wanted = options.lines - first - kMonthlyLines * kMonths;
  const std::int64_t yearStart = data::DaysFromCivil(options.year, 1, 1);
  const std::int64_t days = data::DaysFromCivil(options.year + 1, 1, 1) - yearStart;
  std::int64_t counted = 0;
  std::int64_t documentLines = 0;
  for (int month = 1; month <= kMonths; ++month) {
    const std::int64_t monthEnd =
        data::DaysFromCivil(options.year, month, data::DaysInMonth(options.year, month)) - yearStart;
    while (documentLines < wanted) {
      const std::int64_t day = documentLines * days / wanted;
      if (day > monthEnd) break;
      const std::int64_t before = ledger.Lines();
      book.PostDocument(static_cast<int>(day));
      documentLines += ledger.Lines() - before;
      for (; counted < ledger.Lines(); ++counted) scope.Step();
    }
    book.CloseMonth(month);
  }
  book.CloseYear();
}

}  // namespace

LunderSummary FillLunder(data::Connection& lunder, const LunderOptions& options,
                         toolkit::Progress& progress) {
  data::Transaction transaction(lunder);
  for (const auto* table : LunderTables()) lunder.Execute(databases::CreateTableStatement(*table));
  Random random(kTaxpayerSeed);
  const auto customers = MakeTaxpayers(Kind::Customer, TaxpayerCount(options.lines, 150, 5000), random);
  const auto suppliers = MakeTaxpayers(Kind::Supplier, TaxpayerCount(options.lines, 300, 2000), random);
  LunderSummary summary;
  summary.accounts = WriteChartOfAccounts(lunder, customers, suppliers);
  summary.customers = static_cast<std::int64_t>(customers.size());
  summary.suppliers = static_cast<std::int64_t>(suppliers.size());
  WriteCodeTables(lunder);
  Ledger ledger(lunder);
  YearBook book(ledger, options.year, customers, suppliers);
  WriteYear(book, ledger, options, progress);
  ledger.Finish();
  transaction.Commit();
  summary.entries = ledger.Entries();
  summary.lines = ledger.Lines();
  summary.totalDebit = FromCents(ledger.TotalDebit());
  return summary;
}

}  // namespace korvel::demo
