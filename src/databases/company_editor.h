#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "databases/companies.h"

/// `frmCriaEmpresa` and the deletion of a company.
namespace korvel::databases {

/// A line of `lvwUtilizadores`.
struct CompanyUser {
  std::string login;
  bool ticked = false;
};

/// What the form holds.
struct CompanyCard {
  NewCompany company;
  std::vector<CompanyUser> users;  // all that `UserManagement` knows, by name
};

/// Mode "N": the next code and all users; those that see all companies are ticked, so that they can enter this one too.
/// Throws data::Error.
CompanyCard NewCompanyCard(data::Connection& config);
/// Mode "A": nothing when there is no such company. Throws data::Error.
std::optional<CompanyCard> LoadCompanyCard(data::Connection& config, std::string_view code);

/// `cmdOK`. False when it was refused or failed, which was shown; what was done until then stays. Mode "N" creates the
/// company and lets the ticked users in; mode "A" changes its row and lets users in and out.
bool CreateFromCard(const session::Context& context, const CompanyCard& card);
bool ChangeFromCard(const session::Context& context, const CompanyCard& card);

/// `cmdInstal`: switches the mark `SetForms` between 0 and 99, which nothing reads, deliberately.
bool SwitchInstallMark(const session::Context& context);

/// Drops a company's database and takes it off the list; its rights go too. The caller has asked for confirmation. False with
/// the message shown when the server refuses.
bool DeleteCompany(const session::Context& context, std::string_view code);

}  // namespace korvel::databases
