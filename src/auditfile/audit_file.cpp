#include "auditfile/audit_file.h"

#include "auditfile/documents_section.h"
#include "auditfile/header_section.h"
#include "auditfile/ledger_section.h"
#include "auditfile/master_files.h"

namespace korvel::auditfile {
namespace {

/// The two blanks before the name and the one behind it are part of the format.
constexpr std::string_view kNamespace = "  xmlns =\"urn:OECD:StandardAuditFile-Tax:PT_1.01_01\"";

toolkit::ByteRange WriteMasterFilesElement(XmlWriter& xml, const SectionContext& context,
                                           const FileContent& content) {
  toolkit::ByteRange range{xml.Raw().Position(), 0};
  if (content.masterFiles) {
    content.masterFiles(xml.Raw());
  } else {
    xml.Element("MasterFiles", [&] { WriteMasterFiles(xml, context); });
  }
  range.end = xml.Raw().Position();
  return range;
}

}  // namespace

toolkit::ByteRange WriteAuditFile(toolkit::FileSink& sink, const SectionContext& context,
                                  const FileContent& content) {
  XmlWriter xml(sink);
  xml.Declaration();
  xml.OpenElement("AuditFile", kNamespace);
  xml.Element("Header", [&] {
    if (context.options.chkHeader) WriteHeader(xml, context);
  });
  const toolkit::ByteRange masterFiles = WriteMasterFilesElement(xml, context, content);
  // The documents' key goes on from the ledger's, which is deliberate: see WriteDocuments.
  const RunningKey key = WriteLedgerEntries(xml, context, content.ledgerFilter);
  WriteDocuments(xml, context, content.documents, key);
  xml.CloseElement();
  return masterFiles;
}

}  // namespace korvel::auditfile
