#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/connection.h"
#include "session/context.h"

/// The companies that a user may enter.
namespace korvel::session {

/// A line of `lvwEmpresas`. Its icon tells whether the company is the main one and whether it is read-only.
struct CompanyLine {
  std::string code;
  std::string description;
  std::int64_t numRegisto = 0;  // "R"
  bool main = false;            // "AP"
  bool independent = false;     // "AI"
  std::string version = {};     // "<major>.<minor>.<revision>"; "" for a company that cannot be opened
  bool readOnly = false;

  friend bool operator==(const CompanyLine&, const CompanyLine&) = default;
};
using CompanyLines = std::vector<CompanyLine>;

/// The user's companies by code: all, or those of `UserDatabases`. Sets `gListaEmpresas` and the values of `Entidade`.
/// Nothing when the user is not known or a database of the server's own does not open, which is shown. Throws
/// data::Error.
std::optional<CompanyLines> ListCompanies(const Context& context);

/// The older way: an administrator sees all companies, others those of `UsersEmpresas`. Versions and states are not
/// looked at. Throws data::Error.
CompanyLines ListCompaniesOfOlderTable(const Context& context, data::Connection& config);

/// `gNomeEntidade`, `gFtpServer` and `gSmtpServer` from `Entidade`; hosts that are not set there are the system's own.
/// Throws data::Error.
void ReadEntity(const Context& context, data::Connection& config);

}  // namespace korvel::session
