#pragma once

#include <cstdint>

namespace korvel::benchmarks {

/// Extraction and export of about so many ledger lines.
void BenchmarkLedger(std::int64_t lines);
/// Extraction and export of sales documents of five lines each.
void BenchmarkDocuments(std::int64_t documents);

}  // namespace korvel::benchmarks
