#pragma once

#include "auditfile/document_statement.h"
#include "auditfile/running_key.h"
#include "auditfile/section_context.h"

namespace korvel::auditfile {

/// Whether the boxes and the period's basis ask for `SourceDocuments`.
bool WantsDocuments(const SectionContext& context);

/// Writes `SourceDocuments`, or nothing when there is no document. Its totals are those of the period, also in a
/// monthly file. A first document whose number is the last transaction's of the ledger is left out, deliberately:
/// `key` is the one that the ledger section ended with.
///
/// A blank `TaxPayable` is repaired in the staged row that gave the document its values: it becomes 0. All of them are
/// repaired in one transaction when the section is written; nothing is when the section fails. Memory holds the lines of one
/// document. Throws data::Error, FileError and toolkit::Cancelled.
void WriteDocuments(XmlWriter& xml, const SectionContext& context, const DocumentSelection& selection,
                    RunningKey key);

}  // namespace korvel::auditfile
