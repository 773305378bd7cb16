#pragma once

#include <optional>
#include <string_view>

#include "demo/lunder_database.h"
#include "session/context.h"

namespace korvel::demo {

inline constexpr std::string_view kCompanyCode = "0001";
inline constexpr std::string_view kLunderDatabase = "LunderDemo";

/// Makes the demonstration company on the session's server: its books in `LunderDemo`, the company 0001, its
/// parameters and the accounting period of the year. The session stands in that company afterwards.
///
/// Where one of the databases is there already, ConfirmDeletion is asked first; both are dropped on yes. Nothing when
/// that is refused or a step fails, which is shown. Throws data::Error and toolkit::Cancelled; what was made until
/// then stays.
std::optional<LunderSummary> MakeDemoCompany(const session::Context& context, const LunderOptions& options);

}  // namespace korvel::demo
