#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "auditfile/export_run.h"
#include "periods/period.h"
#include "support/scripted_world.h"

namespace korvel::benchmarks {

/// Throws when a step of the preparation failed.
void Require(bool ok, std::string_view what);

/// The demonstration company with about so many ledger lines and as many lines of sales documents, its period set to one
/// kind of system.
class Company {
 public:
  Company(periods::Basis basis, std::int64_t lines);

  session::Context Context() { return server_.Context(); }
  std::unique_ptr<data::Connection> Open() { return server_.Open(Name()); }
  const periods::PeriodKey& Period() const { return period_; }

  void Clear(std::string_view table);
  /// The file of the period with the sections that its kind brings.
  void Export();
  /// Peak memory of the program itself, exporting the period.
  long ExportMemory() const;

  /// "Select * from <table> ... order by <order>" for the period.
  std::string Statement(std::string_view table, std::string_view order) const;
  std::filesystem::path Database() const;
  /// A database file that is not there yet.
  std::filesystem::path Scratch() const;

 private:
  const std::string& Name() const { return server_.session.gBaseDados; }
  std::string Out() const;

  test::TestServer server_;
  periods::Basis basis_;
  periods::PeriodKey period_{"2025", "2025-01-01", "2025-12-31"};
};

}  // namespace korvel::benchmarks
