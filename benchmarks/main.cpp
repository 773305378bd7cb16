// What is fast, as ratios against what SQLite's own interface takes for the same rows in the same run.

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "accounting/chart_of_accounts.h"
#include "accounting/ledger_entries.h"
#include "auditfile/export_run.h"
#include "bare_sqlite.h"
#include "demo/demo_company.h"
#include "measure.h"
#include "periods/filters.h"
#include "support/scripted_world.h"
#include "toolkit/text.h"

namespace korvel::benchmarks {
namespace {

namespace fs = std::filesystem;

constexpr int kRounds = 3;
constexpr std::string_view kStagedLedger = "TabGeneralLedgerEntriesPOC";

/// A demonstration company of a given size with its accounts staged.
class Company {
 public:
  explicit Company(std::int64_t lines) {
    const auto made = demo::MakeDemoCompany(server_.Context(), {kYear, lines});
    Require(made.has_value(), "demo");
    const auto filter = periods::FiltrosLunder(server_.Context());
    const auto accounts = accounting::CalcularContas(server_.Context(), period_, filter);
    Require(accounts && accounting::GravarContas(server_.Context(), period_, *accounts), "accounts");
  }

  void Clear() { server_.Run(Name(), "delete from " + std::string(kStagedLedger)); }
  void Extract() {
    Require(accounting::CalcularMovimentos(server_.Context(), period_, accounting::Confirmation::Skip),
            "ledger");
  }
  void Export() {
    auditfile::ExportOptions options = auditfile::OptionsFor(periods::Basis::Accounting);
    options.txtPastaExportacao = Out();
    const auto result = auditfile::ExportaSaft(server_.Context(), options, period_, "", true);
    Require(result.ok, result.error);
  }

  /// Of the program itself, exporting the period.
  long ExportMemory() const {
    setenv("KORVEL_DADOS", server_.folder.Path().c_str(), 1);
    return PeakMemoryOf({KORVELCTL, "--servidor", server_.Name(), "--empresa", server_.session.gCodEmpresa,
                         "exportar", "--ano", period_.fiscalYear, "--inicio", period_.startDate, "--fim",
                         period_.endDate, "--pasta", Out()});
  }

  std::string LedgerStatement() const {
    return "Select * from " + std::string(kStagedLedger) + " where NumRegisto>0  And " + period_.Condition() +
           " order by JournalID,TransactionID,RecordID,NumRegisto";
  }
  fs::path Database() const { return server_.folder.Path() / "TESTE" / (toolkit::Upper(Name()) + ".db"); }
  fs::path Scratch() const { return server_.folder.Path() / "scratch.db"; }

 private:
  static constexpr int kYear = 2025;

  static void Require(bool ok, std::string_view what) {
    if (!ok) throw std::runtime_error("failed: " + std::string(what));
  }
  const std::string& Name() const { return server_.session.gBaseDados; }
  std::string Out() const {
    const fs::path folder = server_.folder.Path() / "out";
    fs::create_directories(folder);
    return folder.string();
  }

  test::TestServer server_;
  periods::PeriodKey period_{"2025", "2025-01-01", "2025-12-31"};
};

void Print(std::string_view what, const Comparison& times, double mark) {
  fmt::print("{:<28} {:7.2f} s  bare {:7.2f} s  ratio {:.2f}  mark {:.1f}  {}\n", what,
             Median(times.ours).count(), Median(times.bare).count(), times.Ratio(), mark,
             times.Ratio() <= mark ? "met" : "MISSED");
}

Comparison MeasureExtraction(Company& company) {
  Comparison times;
  company.Extract();
  const TableCopy rows(company.Database(), kStagedLedger);
  for (int round = 0; round < kRounds; ++round) {
    company.Clear();
    times.ours.push_back(TimeOf([&] { company.Extract(); }));
    times.bare.push_back(TimeOf([&] { rows.InsertInto(company.Scratch()); }));
    for (const char* ending : {"", "-wal", "-shm"}) fs::remove(company.Scratch().string() + ending);
  }
  return times;
}

Comparison MeasureExport(Company& company) {
  Comparison times;
  for (int round = 0; round < kRounds; ++round) {
    times.bare.push_back(TimeOf([&] { BareScan(company.Database(), company.LedgerStatement()); }));
    times.ours.push_back(TimeOf([&] { company.Export(); }));
  }
  return times;
}

long ExportMemory(std::int64_t lines) {
  Company company(lines);
  company.Extract();
  return company.ExportMemory();
}

void Benchmark(std::int64_t lines) {
  fmt::print("{} ledger lines\n", lines);
  const long small = ExportMemory(lines / 10);
  Company company(lines);
  company.Extract();
  const long large = company.ExportMemory();
  fmt::print("{:<28} {} MB, of a tenth of the lines {} MB  mark 160\n", "export, peak memory", large >> 20,
             small >> 20);
  Print("export / bare ordered scan", MeasureExport(company), 1.3);
  Print("extraction / bare insert", MeasureExtraction(company), 2.5);
}

}  // namespace
}  // namespace korvel::benchmarks

int main(int argc, char** argv) {
  try {
    korvel::benchmarks::Benchmark(argc > 1 ? std::atoll(argv[1]) : 1'000'000);
    return 0;
  } catch (const std::exception& failure) {
    fmt::print(stderr, "{}\n", failure.what());
    return 1;
  }
}
