#include <fmt/format.h>

#include "accounting/chart_of_accounts.h"
#include "accounting/ledger_entries.h"
#include "bare_sqlite.h"
#include "benchmarks.h"
#include "company.h"
#include "measure.h"
#include "periods/filters.h"

namespace korvel::benchmarks {
namespace {

constexpr std::string_view kStaged = "TabGeneralLedgerEntriesPOC";

/// Its accounts are staged.
class LedgerCompany : public Company {
 public:
  explicit LedgerCompany(std::int64_t lines) : Company(periods::Basis::Accounting, lines) {
    const auto filter = periods::FiltrosLunder(Context());
    const auto accounts = accounting::CalcularContas(Context(), Period(), filter);
    Require(accounts && accounting::GravarContas(Context(), Period(), *accounts), "accounts");
  }

  void Extract() {
    Require(accounting::CalcularMovimentos(Context(), Period(), accounting::Confirmation::Skip), "ledger");
  }
};

long ExportMemory(std::int64_t lines) {
  LedgerCompany company(lines);
  company.Extract();
  return company.ExportMemory();
}

}  // namespace

void BenchmarkLedger(std::int64_t lines) {
  fmt::print("{} ledger lines\n", lines);
  const long small = ExportMemory(lines / 10);
  LedgerCompany company(lines);
  company.Extract();
  PrintMemory(company.ExportMemory(), small);
  const std::string ordered = company.Statement(kStaged, "JournalID,TransactionID,RecordID,NumRegisto");
  Print("export / bare ordered scan", 1.3,
        Compare([&] { company.Export(); }, [&] { BareScan(company.Database(), ordered); }));
  const TableCopy rows(company.Database(), kStaged);
  Print("extraction / bare insert", 2.5,
        Compare([&] { company.Extract(); }, [&] { rows.InsertInto(company.Scratch()); },
                [&] { company.Clear(kStaged); }));
}

}  // namespace korvel::benchmarks
