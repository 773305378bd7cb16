#pragma once

#include <functional>
#include <string_view>

#include "auditfile/document_statement.h"
#include "auditfile/section_context.h"
#include "toolkit/file_sink.h"

namespace korvel::auditfile {

/// What stands in one file beside the sections of the whole period.
struct FileContent {
  /// Condition on the ledger lines, beginning with " and ", or empty.
  std::string_view ledgerFilter;
  DocumentSelection documents;
  /// Appends an earlier file's `MasterFiles` in place of reading it from the tables again; may be empty.
  std::function<void(toolkit::FileSink&)> masterFiles;
};

/// Writes one audit file: the declaration, the root and its sections in their order. Returns where
/// `MasterFiles` stands. The sink is not finished. Throws data::Error, FileError and toolkit::Cancelled.
toolkit::ByteRange WriteAuditFile(toolkit::FileSink& sink, const SectionContext& context,
                                  const FileContent& content);

}  // namespace korvel::auditfile
