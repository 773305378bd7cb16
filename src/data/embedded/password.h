#pragma once

#include <string>
#include <string_view>

namespace korvel::data::embedded {

/// A password as a server keeps it: argon2id with its salt and costs, in the usual text form. Any bytes can be a
/// password; upper and lower case differ. Counts as a trial of that login that succeeded.
std::string HashPassword(std::string_view login, std::string_view password);

/// Whether it is the password that `kept` was made from. A trial costs the whole hash, unless this process has seen
/// this login with this password and this hash before: connections are opened for every operation.
/// `kept` blank stands for a login that is not there: false, after the same time. Safe from several threads.
bool MatchesPassword(std::string_view login, std::string_view password, std::string_view kept);

}  // namespace korvel::data::embedded
