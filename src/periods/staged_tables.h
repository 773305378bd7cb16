#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "periods/period.h"

namespace korvel::periods {

/// A table with rows of a period.
struct PeriodTable {
  std::string_view name;
  bool byCustomer = false;  // rows belong to the period's `Cliente` too
};

inline constexpr std::string_view kHeaderTable = "TabHeader";

/// All tables of a period in the order in which they are cleared: nine staged ones, and the period itself.
inline constexpr std::array<PeriodTable, 10> kPeriodTables{{
    {"TabCustomerGEST", true},
    {"TabCustomerPOC"},
    {"TabGeneralLedger"},
    {"TabGeneralLedgerEntriesPOC"},
    {kHeaderTable, true},
    {"TabProductGEST", true},
    {"TabSourceDocumentsGEST", true},
    {"TabSupplierPOC"},
    {"TabTaxTableGEST", true},
    {"TabTaxTablePOC"},
}};

/// "Delete from <table> where <period>", with the customer for the tables that have it.
std::string DeleteStatement(const PeriodTable& table, const PeriodKey& period, std::string_view cliente);

/// A period that was chosen and has been deleted since, by another user or in another window.
class PeriodGone : public std::runtime_error {
 public:
  PeriodGone() : std::runtime_error("O período já não existe: foi eliminado entretanto.") {}
};

/// Clears one staged table for the rows that take the place of its own. Belongs inside their transaction. Throws
/// PeriodGone, so that no rows are staged which belong to no period.
void ClearStaged(data::Connection& company, const PeriodTable& table, const PeriodKey& period,
                 std::string_view cliente = {});

/// Clears the staged tables of a period, with `header` its row of `TabHeader` too. Belongs inside a
/// transaction.
void DeletePeriodRows(data::Connection& company, const PeriodKey& period, std::string_view cliente,
                      bool header);

}  // namespace korvel::periods
