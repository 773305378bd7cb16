#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "databases/upgrade_run.h"
#include "session/context.h"

namespace korvel::databases {

/// "Korvel" and the code of four characters.
std::string CompanyDatabase(std::string_view code);

/// The four digits of a code of one to four, blanks around it apart; "" for any other text.
std::string FullCompanyCode(std::string_view code);
/// As FullCompanyCode; a text that is no code is refused with its message.
std::string CheckedCode(const session::Context& context, std::string_view code);

struct NewCompany {
  std::string code;  // up to four digits; CreateCompany pads it with zeros to four
  std::string description;
  bool main = false;         // takes that flag from all other companies
  bool independent = false;  // keeps rights of its own
};

/// Makes an empty database and the company's row in the list of companies, to which the main company's flag goes alone;
/// with a blank code the database alone. Comes back on `master`. Throws data::Error; what was done until then stays.
void CreateDatabase(const session::Context& context, data::Connection& master, std::string_view database,
                    const NewCompany& company);

/// The code that a new company is offered: the highest one plus 1. Throws data::Error.
std::string NextCompanyCode(data::Connection& config);

/// Drops a database and, with a code, its row in the list of companies. A database that is gone already is no failure.
/// Comes back on `master`. Throws data::Error.
void DeleteDatabase(data::Connection& master, std::string_view database, std::string_view code = {});

/// The codes of the list of companies, in its order. Throws data::Error.
std::vector<std::string> CompanyCodes(data::Connection& config);

/// Creates a company: its database, its row, its tables; `KorvelConfig` too where it is missing. Of two processes that
/// create the same one, one succeeds. Nothing on a failure, which is shown; what was done before it stays.
std::optional<UpgradeResult> CreateCompany(const session::Context& context, NewCompany company);

}  // namespace korvel::databases
