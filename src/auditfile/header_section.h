#pragma once

#include "auditfile/section_context.h"

namespace korvel::auditfile {

/// Writes what stands in `Header`, from the period's row of `TabHeader`. False, with nothing written, when the row is
/// not there. Throws data::Error.
bool WriteHeader(XmlWriter& xml, const SectionContext& context);

/// Sets `DateCreated` of the period to today. Throws data::Error.
void StoreDateCreated(const SectionContext& context);

}  // namespace korvel::auditfile
