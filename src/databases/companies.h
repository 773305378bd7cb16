#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "session/context.h"

namespace korvel::databases {

inline constexpr std::string_view kConfigDatabase = "KorvelConfig";

/// "Korvel" and the code of four characters.
std::string CompanyDatabase(std::string_view code);

/// Makes `KorvelConfig` with its list of companies where it is missing. Throws data::Error.
void EnsureConfigDatabase(data::Connection& master);

struct NewCompany {
  std::string code;  // up to four digits; padded with zeros to four
  std::string description;
  bool main = false;         // takes that flag from all other companies
  bool independent = false;  // keeps rights of its own
};

/// Makes an empty database and, with a code, its row in the list of companies. Comes back on `master`.
/// Throws data::Error; what was done until then stays.
void CreateDatabase(const session::Context& context, data::Connection& master, std::string_view database,
                    const NewCompany& company);

/// The code that a new company is offered: the highest one plus 1. Throws data::Error.
std::string NextCompanyCode(data::Connection& config);

/// Creates a company: its database, its row, its tables. Each failure is shown and ends it with false;
/// nothing that was done before is undone.
bool CreateCompany(const session::Context& context, NewCompany company);

}  // namespace korvel::databases
