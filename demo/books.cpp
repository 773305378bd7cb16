#include "demo/books.h"

#include <algorithm>

#include "demo/billing_cards.h"
#include "demo/brevant_schema.h"
#include "demo/chart_of_accounts.h"
#include "demo/code_tables.h"
#include "demo/lunder_schema.h"
#include "demo/year_book.h"
#include "toolkit/progress_scope.h"

namespace korvel::demo {

namespace {

constexpr std::uint64_t kTaxpayerSeed = 508123453;
constexpr std::int64_t kMonthlyLines = 25;  // of wages, VAT and rare sales, with what the year's end adds
constexpr std::int64_t kMonths = 12;
constexpr std::int64_t kShareOfYearBefore = 10;

std::int64_t CountFor(std::int64_t lines, std::int64_t linesEach, std::int64_t least, std::int64_t most) {
  return std::clamp<std::int64_t>(lines / linesEach, least, most);
}

People MakePeople(std::int64_t lines) {
  Random random(kTaxpayerSeed);
  return {MakeTaxpayers(Kind::Customer, CountFor(lines, 150, 8, 5000), random),
          MakeTaxpayers(Kind::Supplier, CountFor(lines, 300, 8, 2000), random),
          MakePersons(Kind::Customer, "FR"), MakePersons(Kind::Supplier, "ES")};
}

/// The tables and what stands in them before any business is done. Returns the number of accounts.
std::int64_t PrepareLunder(data::Connection& lunder, const People& people) {
  for (const auto* table : LunderTables()) lunder.Execute(databases::CreateTableStatement(*table));
  WriteCodeTables(lunder);
  return WriteChartOfAccounts(lunder, people.customers, people.suppliers);
}

void PrepareBrevant(data::Connection& brevant, const People& people, const Catalogue& catalogue) {
  CreateBrevantTables(brevant);
  WriteDocumentTypes(brevant);
  WriteBillingVat(brevant);
  WriteBillingCodes(brevant);
  WriteCatalogue(brevant, catalogue);
  WriteCustomers(brevant, people.customers, people.buyers);
}

/// Documents day by day until the year has its lines, each month closed when its last day is over. The year
/// is open.
void WriteYear(YearBook& book, const Ledger& ledger, int year, std::int64_t lines,
               toolkit::ProgressScope& progress) {
  std::int64_t counted = ledger.Lines();
  const std::int64_t wanted = lines - counted - kMonthlyLines * kMonths;
  const std::int64_t yearStart = data::DaysFromCivil(year, 1, 1);
  const std::int64_t days = data::DaysFromCivil(year + 1, 1, 1) - yearStart;
  std::int64_t documentLines = 0;
  for (int month = 1; month <= kMonths; ++month) {
    const std::int64_t monthEnd =
        data::DaysFromCivil(year, month, data::DaysInMonth(year, month)) - yearStart;
    while (documentLines < wanted) {
      const std::int64_t day = documentLines * days / wanted;
      if (day > monthEnd) break;
      const std::int64_t before = ledger.Lines();
      book.PostDocument(static_cast<int>(day));
      documentLines += ledger.Lines() - before;
      for (; counted < ledger.Lines(); ++counted) progress.Step();
    }
    book.CloseMonth(month);
  }
  book.CloseYear();
}

/// The year before, then the year itself, of which the summary tells.
void WriteYears(Ledger& ledger, BillingBook& billing, const People& people, const Catalogue& catalogue,
                const BooksOptions& options, toolkit::Progress& progress, BooksSummary& summary) {
  const std::int64_t linesBefore = options.lines / kShareOfYearBefore;
  toolkit::ProgressScope scope(progress, "A gerar movimentos", options.lines + linesBefore);
  YearBook before(ledger, billing, options.year - 1, people, catalogue);
  before.OpenYear();
  WriteYear(before, ledger, options.year - 1, linesBefore, scope);
  summary.documents = -billing.Documents();
  summary.documentLines = -billing.Lines();
  YearBook book(ledger, billing, options.year, people, catalogue);
  book.CarryForward();
  WriteYear(book, ledger, options.year, options.lines, scope);
  summary.documents += billing.Documents();
  summary.documentLines += billing.Lines();
  summary.entries = ledger.Entries();
  summary.lines = ledger.Lines();
  summary.totalDebit = FromCents(ledger.TotalDebit());
}

}  // namespace

BooksSummary FillBooks(data::Connection& lunder, data::Connection& brevant, const BooksOptions& options,
                       toolkit::Progress& progress) {
  const People people = MakePeople(options.lines);
  const Catalogue catalogue(CountFor(options.lines, 1000, 20, 1000));
  BooksSummary summary;
  summary.customers = static_cast<std::int64_t>(people.customers.size());
  summary.suppliers = static_cast<std::int64_t>(people.suppliers.size());
  summary.products = static_cast<std::int64_t>(catalogue.Products().size());

  data::Transaction accounts(lunder);
  data::Transaction bills(brevant);
  summary.accounts = PrepareLunder(lunder, people);
  PrepareBrevant(brevant, people, catalogue);
  Ledger ledger(lunder);
  BillingBook billing(brevant);
  WriteYears(ledger, billing, people, catalogue, options, progress, summary);
  ledger.Finish();
  billing.Finish();
  accounts.Commit();
  bills.Commit();
  return summary;
}

}  // namespace korvel::demo
