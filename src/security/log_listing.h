#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "security/log_search.h"
#include "session/context.h"

/// The activity log as it is printed, as plain data: on paper, on the screen or on a terminal.
namespace korvel::security {

inline constexpr std::array<std::string_view, 3> kLogHeadings{"Mód.", "Descrição", "Registos"};

/// Module, caption, text, value, action, date and hour of a line, spelt out.
using LogCells = std::array<std::string, 7>;

struct LogOfCompany {
  std::string title;  // "Empresa : <code> - <name>"
  std::vector<LogCells> lines;
};
struct LogOfUser {
  std::string title;  // "Utilizador : <login>"
  std::vector<LogOfCompany> companies;
};

struct LogListing {
  std::vector<std::pair<std::string_view, std::string>> head;  // labels and values of the filter
  std::vector<LogOfUser> users;
};

/// Groups lines by user and company, each in the order of their names, lines of one group as they came. Without a line
/// nothing comes back, which is said: nothing is to be printed.
std::optional<LogListing> MakeLogListing(const session::Context& context, const LogFilter& filter,
                                         std::span<const LogEntry> entries);

}  // namespace korvel::security
