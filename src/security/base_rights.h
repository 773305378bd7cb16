#pragma once

#include <string_view>

#include "data/connection.h"
#include "security/rights_catalogue.h"
#include "session/context.h"

/// The base set of rights and its copies. `config` stands open on `KorvelConfig`; data::Error is thrown as it comes
/// and leaves the step at hand undone.
namespace korvel::security {

/// The program's own row, which lets a user into a company: added as denied where it is missing.
void AccCreateAPP(data::Connection& config, std::string_view key, std::string_view user,
                  std::string_view company);

/// The rows of one form and its guardable buttons: missing ones are added, the form as `value`, buttons as allowed;
/// captions of the others follow. A blank `parentKey` stands for the program.
void AccGetBotoes(data::Connection& config, std::string_view user, std::string_view company,
                  const CatalogueForm& form, std::string_view parentKey, bool value);

/// Gives a user the base set in a company: new rows come in allowed, captions follow, what an administrator switched
/// stays. Without a base set that is said, and false comes back.
bool AccCopiaAcessosBase(const session::Context& context, data::Connection& config, std::string_view user,
                         std::string_view company);

/// Makes or refreshes the base set from the catalogue.
void CreateBaseRights(const session::Context& context, data::Connection& config);
/// `mnuCriaAcc`: asks, and does so. False when it was refused or the configuration did not open.
bool CriaAcessosBase(const session::Context& context);
/// `mnuEliacessos`: asks, then empties `Acessos`: everybody's rights go with the base set.
bool EliminaAcessos(const session::Context& context);

}  // namespace korvel::security
