#pragma once

#include <string>
#include <variant>

#include "accounting/ledger_mapper.h"
#include "data/collated_map.h"
#include "data/connection.h"
#include "periods/period.h"

namespace korvel::accounting {

/// The accounts staged for a period. Throws data::Error, as all below.
using AccountSet = data::CollatedMap<std::monostate>;
AccountSet ReadStagedAccounts(data::Connection& company, const periods::PeriodKey& period);

/// The journals of Lunder with the roles that `Configura` gives them.
Journals ReadJournals(data::Connection& lunder);

/// " And MovDiario.Data>='..' and MovDiario.Data<='..'", and the exclusion of the journal of opening balances when the
/// company's parameters do not include it.
std::string JournalClause(data::Connection& lunder, data::Connection& company,
                          const periods::PeriodKey& period);

/// Whether the period's `TaxAccountingBasis` is "I".
bool IsIntegrated(data::Connection& company, const periods::PeriodKey& period);

}  // namespace korvel::accounting
