#include "company.h"

#include <cstdlib>
#include <stdexcept>

#include "demo/demo_company.h"
#include "measure.h"
#include "toolkit/text.h"

namespace korvel::benchmarks {

namespace fs = std::filesystem;

namespace {
constexpr int kYear = 2025;
}  // namespace

void Require(bool ok, std::string_view what) {
  if (!ok) throw std::runtime_error("failed: " + std::string(what));
}

Company::Company(periods::Basis basis, std::int64_t lines) : basis_(basis) {
  demo::BooksOptions books;
  books.year = kYear;
  books.lines = lines;
  Require(demo::MakeDemoCompany(server_.Context(), books).has_value(), "demo");
  const std::string letter(1, static_cast<char>(basis));
  Open()->Execute("Update TabHeader set TaxAccountingBasis=? where " + period_.Condition(), {letter});
}

void Company::Clear(std::string_view table) {
  Open()->Execute("delete from " + std::string(table));
}

void Company::Export() {
  auditfile::ExportOptions options = auditfile::OptionsFor(basis_);
  options.txtPastaExportacao = Out();
  const auto result = auditfile::ExportaSaft(server_.Context(), options, period_, "", true);
  Require(result.ok, result.error);
}

long Company::ExportMemory() const {
  setenv("KORVEL_DADOS", server_.folder.Path().c_str(), 1);
  return PeakMemoryOf({KORVELCTL, "--servidor", server_.Name(), "--empresa", server_.session.gCodEmpresa,
                       "exportar", "--ano", period_.fiscalYear, "--inicio", period_.startDate, "--fim",
                       period_.endDate, "--pasta", Out()});
}

std::string Company::Statement(std::string_view table, std::string_view order) const {
  std::string statement = "Select * from ";
  statement.append(table).append(" where NumRegisto>0  And ").append(period_.Condition());
  return statement.append(" order by ").append(order);
}

fs::path Company::Database() const {
  return server_.folder.Path() / "TESTE" / "data" / (toolkit::Upper(Name()) + ".mdf");
}

fs::path Company::Scratch() const {
  const fs::path scratch = server_.folder.Path() / "scratch.db";
  for (const char* ending : {"", "-wal", "-shm"}) fs::remove(scratch.string() + ending);
  return scratch;
}

std::string Company::Out() const {
  const fs::path folder = server_.folder.Path() / "out";
  fs::create_directories(folder);
  return folder.string();
}

}  // namespace korvel::benchmarks
