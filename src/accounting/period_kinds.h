#pragma once

#include <string_view>

namespace korvel::accounting {

/// Which periods an extraction offers, as conditions to append to the choice of periods.
inline constexpr std::string_view kAccountingPeriods = " and TaxAccountingBasis='C' ";
inline constexpr std::string_view kAccountingOrIntegratedPeriods =
    " and (TaxAccountingBasis='C' or TaxAccountingBasis='I') ";

}  // namespace korvel::accounting
