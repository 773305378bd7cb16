#pragma once

#include <optional>
#include <string_view>

#include "demo/books.h"
#include "session/context.h"

namespace korvel::demo {

inline constexpr std::string_view kCompanyCode = "0001";
inline constexpr std::string_view kLunderDatabase = "LunderDemo";
inline constexpr std::string_view kBrevantDatabase = "BrevantDemo";

/// Makes the demonstration company on the session's server: its books in `LunderDemo` and `BrevantDemo`, the
/// company 0001, its parameters, the accounting period of the year and a short period of the year before for
/// each kind of system. The session stands in that company afterwards.
///
/// Where one of the databases is there already, ConfirmDeletion is asked first; all are dropped on yes.
/// Nothing when that is refused or a step fails, which is shown. Throws data::Error and toolkit::Cancelled;
/// what was made until then stays.
std::optional<BooksSummary> MakeDemoCompany(const session::Context& context, const BooksOptions& options);

}  // namespace korvel::demo
