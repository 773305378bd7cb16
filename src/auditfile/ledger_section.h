#pragma once

#include <string_view>

#include "auditfile/running_key.h"
#include "auditfile/section_context.h"

namespace korvel::auditfile {

/// Writes `GeneralLedgerEntries`, or nothing when there is no line. `monthFilter` is appended to the condition as it
/// stands. Its three totals are those of the period, also in a monthly file. Returns the key of the last transaction,
/// none when there is none. Throws data::Error, FileError and toolkit::Cancelled.
RunningKey WriteLedgerEntries(XmlWriter& xml, const SectionContext& context, std::string_view monthFilter);

}  // namespace korvel::auditfile
