// What is fast, as ratios against what SQLite's own interface takes for the same rows in the same run. Arguments: how many
// ledger lines and how many sales documents; 0 leaves that side out.

#include <fmt/format.h>

#include <cstdlib>
#include <exception>

#include "benchmarks.h"

int main(int argc, char** argv) {
  using namespace korvel::benchmarks;
  try {
    const std::int64_t lines = argc > 1 ? std::atoll(argv[1]) : 1'000'000;
    const std::int64_t documents = argc > 2 ? std::atoll(argv[2]) : 200'000;
    if (lines > 0) BenchmarkLedger(lines);
    if (documents > 0) BenchmarkDocuments(documents);
    return 0;
  } catch (const std::exception& failure) {
    fmt::print(stderr, "{}\n", failure.what());
    return 1;
  }
}
