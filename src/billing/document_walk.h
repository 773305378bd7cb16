#pragma once

#include <string>

#include "billing/document_mapping.h"
#include "billing/document_reader.h"
#include "billing/document_totals.h"
#include "toolkit/progress_scope.h"

namespace korvel::billing {

struct WalkChoice {
  ReaderChoice documents;
  bool removed = false;  // numbers that are missing are looked for among the removed documents
};

/// Walks the documents of a period class by class, follows their numbering, and has each one mapped. Its arguments
/// must outlive it.
class DocumentWalk {
 public:
  DocumentWalk(SourceLink& source, const WalkChoice& choice, const DocumentLookups& lookups,
               DocumentMapper& mapper, toolkit::ProgressScope& progress)
      : source_(source), choice_(choice), lookups_(lookups), mapper_(mapper), progress_(progress) {}

  /// False as soon as the sink refused a row. Throws data::Error, and toolkit::Cancelled when the user cancels.
  bool Run(const ClassFilters& filters, const SectionTotals& totals, const DocumentMapper::Sink& sink);

 private:
  bool WalkClass(const ClassFilter& filter, const DocumentMapper::Sink& sink);
  bool WalkYear(DocumentReader& reader, const DocumentMapper::Sink& sink);
  bool MapGap(DocumentReader& reader, const NumberedDocuments::Name& next, const NumberGap& gap,
              const DocumentMapper::Sink& sink);
  bool MapDocuments(DocumentReader& reader, NumberedDocuments& documents, const DocumentMapper::Sink& sink);
  bool RefersToOthers(const std::string& tipo) const;

  SourceLink& source_;
  const WalkChoice& choice_;
  const DocumentLookups& lookups_;
  DocumentMapper& mapper_;
  toolkit::ProgressScope& progress_;
  NumberingWalk numbering_;  // of the class at hand
  MappedClass class_;
  bool classNamed_ = false;
  SourceDocument document_;
};

}  // namespace korvel::billing
