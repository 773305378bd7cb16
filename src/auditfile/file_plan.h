#pragma once

#include <string>
#include <string_view>

#include "periods/period.h"

namespace korvel::auditfile {

/// The month of a date text, from its sixth character on; 0 when there is none.
int MonthOf(std::string_view date);

/// Condition that leaves the rows of a month, or of all months from `first` on. Month 0 is the whole period: no
/// condition.
std::string MonthFilter(int month, int first, bool cumulative);

/// "<StartDate>_<EndDate>".
std::string NameStem(const periods::PeriodKey& period);

/// What the names of a run's files are made of.
struct FileNaming {
  std::string folder;     // as typed; a missing separator at its end is added
  std::string taxNumber;  // `TaxRegistrationNumber`
  std::string basis;      // `TaxAccountingBasis`
};

/// "<folder><tax number>_<first four of the stem>_<stem>[_<month>]_Saft_<kind>.XML", UTF-8. Of a basis other than "C", "F"
/// and "I" the name is the bare stem, without the folder: the forms offer these letters only.
std::string FilePath(const FileNaming& naming, std::string_view stem, int month);

}  // namespace korvel::auditfile
