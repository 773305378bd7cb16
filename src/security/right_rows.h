#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"

namespace korvel::security {

/// A row of `Acessos`, without whose it is.
struct RightRow {
  std::string key;            // Chave
  std::string parent;         // Chave1
  std::string form;           // empty: the program's own row
  std::string control;        // Ctrl, empty in a form's row
  std::string caption;        // of the form
  std::string buttonCaption;  // CtrlCap
  bool allowed = false;       // Value
};

/// Whose rights: a login in a company.
struct RightsOwner {
  std::string_view user;
  std::string_view company;
};

/// The base set, of which every user gets a copy.
inline constexpr RightsOwner kBaseSet{"XX", "XXXX"};

/// By form and key, each form before its buttons. Throws data::Error.
std::vector<RightRow> ReadRights(data::Connection& config, const RightsOwner& owner);

/// Brings the owner's rights up to `wanted`: rows that are not there are added as they stand, of the others the
/// captions follow and whether they are allowed stays. The program's own row never changes. Nothing is sent but one
/// read when all is as wanted. One transaction; throws data::Error, and nothing has changed then.
void MergeRights(data::Connection& config, const RightsOwner& owner, std::span<const RightRow> wanted);

}  // namespace korvel::security
