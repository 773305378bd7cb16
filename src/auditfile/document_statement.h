#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "auditfile/section_context.h"
#include "data/recordset.h"

namespace korvel::auditfile {

/// Which documents of the period stand in a file.
struct DocumentSelection {
  /// Condition on the rows that make documents, beginning with " and ", or empty. The lines of a document are all of
  /// the period's, inside the condition or not.
  std::string_view monthFilter;
  /// As DocumentsAreScattered says.
  bool scattered = false;
};

/// Whether rows of one document may stand apart in the documents' order, or on both sides of a month's filter: the
/// hand of a user has been there, for extraction never stages them so. Asked once a run. Throws data::Error.
bool DocumentsAreScattered(const SectionContext& context);

/// The one ordered statement that brings documents together with their lines. Every row says what it is for: with
/// `Drives` it may begin a document, with `Carries` it is a line. Rows come in runs, which have one document at the
/// most; in a run the driving row of the document comes first.
std::string DocumentStatement(const SectionContext& context, const DocumentSelection& selection);

/// A run of that statement's rows: those whose sales, invoice and number the server takes for equal.
class DocumentRun {
 public:
  DocumentRun(const data::Recordset& rows, const DocumentSelection& selection);

  /// The current row begins the run.
  void Begin();
  /// Whether the current row is of the run that was begun last.
  bool HoldsRow() const;

 private:
  struct Cell {
    std::size_t column = 0;
    bool isNull = false;
    std::string text;
  };

  const data::Recordset& rows_;
  std::array<Cell, 3> cells_;
};

}  // namespace korvel::auditfile
