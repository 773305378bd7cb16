#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "databases/company_upgrade.h"
#include "session/context.h"

namespace korvel::databases {

/// "Korvel" and the code of four characters.
std::string CompanyDatabase(std::string_view code);

/// Makes `KorvelConfig` with its list of companies where they are missing. Throws data::Error.
void EnsureConfigDatabase(data::Connection& master);

struct NewCompany {
  std::string code;  // up to four digits; CreateCompany pads it with zeros to four
  std::string description;
  bool main = false;         // takes that flag from all other companies
  bool independent = false;  // keeps rights of its own
};

/// Makes an empty database and the company's row in the list of companies; with a blank code the database
/// alone. Comes back on `master`. Throws data::Error; what was done until then stays.
void CreateDatabase(const session::Context& context, data::Connection& master, std::string_view database,
                    const NewCompany& company);

/// The code that a new company is offered: the highest one plus 1. Throws data::Error.
std::string NextCompanyCode(data::Connection& config);

/// Creates a company: its database, its row, its tables. Nothing on a failure, which is shown; what was done
/// before it stays.
std::optional<UpgradeResult> CreateCompany(const session::Context& context, NewCompany company);

}  // namespace korvel::databases
