#pragma once

#include "auditfile/section_context.h"

namespace korvel::auditfile {

/// Writes what stands in `MasterFiles`: accounts, customers, suppliers, products and taxes, each as far as the boxes and
/// the period's basis ask for it. Throws data::Error, FileError and toolkit::Cancelled.
void WriteMasterFiles(XmlWriter& xml, const SectionContext& context);

}  // namespace korvel::auditfile
