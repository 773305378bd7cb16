#pragma once

#include "toolkit/dates.h"
#include "toolkit/numbers.h"
#include "toolkit/ports.h"

namespace korvel::toolkit {

/// The user's regional values from the section "Regional" of the store (keys sDecimal, sThousand, sGrouping,
/// sShortDate, sDate, sTime), Portuguese ones where a key is missing. Of the grouping only the first
/// character counts.
Regional ReadRegional(const Settings& settings);

/// The values that the system can work with: a date format in one of the six orders of day, month and year
/// joined by the separator, else "dd-MM-yyyy" ("dd-MM-aaaa" for a format without "Y"); no "-" as a number
/// symbol; two different number symbols; a date separator that is neither a digit nor blank.
Regional NormaliseRegional(Regional values);

/// Reads, normalises, and keeps what was changed in the store, as all programs of this user see it.
/// Throws std::runtime_error when the store cannot be written.
Regional LoadRegional(Settings& settings);

inline Marks NumberMarks(const Regional& values) {
  return {values.decimalSeparator, values.thousandsSeparator, values.grouping};
}
inline DateMarks DateMarksOf(const Regional& values) {
  return {values.shortDate, values.dateSeparator};
}

}  // namespace korvel::toolkit
