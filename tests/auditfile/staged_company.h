#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "auditfile/export_run.h"
#include "support/scripted_world.h"

namespace korvel::test {

/// A column's value in a test row: quoted text, or NULL.
struct Cell {
  std::string_view column;
  const char* value;  // nullptr: NULL
};

/// A company with its tables and nothing in them but a header of that kind, if one is given, and a folder to export
/// to.
class StagedCompany : public TestServer {
 public:
  explicit StagedCompany(const char* basis = nullptr);

  /// Inserts a row of a staged table for the period 2010, other values as given; later cells replace earlier ones.
  void Add(std::string_view table, std::initializer_list<Cell> cells);
  /// The same with the values as texts: "AccountID=21;AccountDescription=Clientes".
  void AddRow(std::string_view table, std::string_view cells);
  void Script(std::string_view script) { Run(session.gBaseDados, script); }
  std::string Value(std::string_view query) { return One(session.gBaseDados, query); }
  void SetBasis(std::string_view basis) {
    Script("Update TabHeader set TaxAccountingBasis='" + std::string(basis) + "'");
  }
  /// A header of that kind with a value in every column that the file always shows.
  void AddHeader(const char* basis, std::initializer_list<Cell> cells = {});
  /// A ledger line: journal, transaction, line number and month, with a debit.
  void AddLine(const char* journal, const char* transaction, const char* record, const char* month,
               std::initializer_list<Cell> cells = {});
  /// A document line of January: number of the document and of the line, with a credit.
  void AddDocument(const char* number, const char* line, std::initializer_list<Cell> cells = {});

  auditfile::ExportOptions Options(periods::Basis basis = periods::Basis::Accounting) const;
  /// Of `SourceDocuments` and nothing else, the header included.
  auditfile::ExportOptions DocumentsAlone() const;
  auditfile::ExportResult Export(const auditfile::ExportOptions& options);
  /// Exports silently and gives the file's bytes; fails the test when the run does.
  std::string Exported(const auditfile::ExportOptions& options);

  const periods::PeriodKey period{"2010", "2010-01-01", "2010-12-31"};
  const TempFolder target;

 private:
  void Insert(std::string_view table, std::string_view cells, std::initializer_list<Cell> others,
              std::initializer_list<Cell> last = {});
};

/// A text laid out over lines, without its line breaks and the blanks that begin a line, in the file's code page.
std::string OneLine(std::string_view layout);
/// The documents of a file and their lines, as their numbers show them: "FT 2010/1: 1 10 2; FT 2010/2: 1".
std::string DocumentOutline(std::string_view file);
/// How often a text stands in another.
std::size_t CountOf(std::string_view text, std::string_view part);

}  // namespace korvel::test
