#pragma once

#include <span>

#include "databases/schema.h"

namespace korvel::databases {

/// The tables of a company database, in the order in which a stage makes them.
std::span<const TableDefinition> CompanySchema();

/// A unique index of a company database.
struct IndexDefinition {
  std::string_view name;
  std::string_view table;
  std::string_view fields;
};

/// A period cannot be defined twice.
inline constexpr IndexDefinition kPeriodIndex{"IDX_Ano", "TabHeader", "FiscalYear, StartDate, EndDate"};

}  // namespace korvel::databases
