#pragma once

#include <string_view>

#include "data/connection.h"
#include "data/currency.h"
#include "session/context.h"

namespace korvel::security {

/// Codes of the activity log.
namespace action {
inline constexpr std::string_view kNew = "N";
inline constexpr std::string_view kDelete = "E";
inline constexpr std::string_view kChange = "A";
inline constexpr std::string_view kLogIn = "I";
inline constexpr std::string_view kLogOff = "O";
inline constexpr std::string_view kPrint = "P";
}  // namespace action
namespace module {
inline constexpr std::string_view kTables = "TB";
inline constexpr std::string_view kUtilities = "UT";
inline constexpr std::string_view kLogIn = "I";
inline constexpr std::string_view kLogOff = "O";
inline constexpr std::string_view kGeneral = "G";
}  // namespace module

/// What is told of an action. Texts longer than their columns are cut; a password is never among them.
struct LogLine {
  std::string_view module;
  std::string_view action;
  std::string_view text;  // the record, its parts apart by " - "
  std::string_view caption;
  data::Currency value = {};
  std::string_view company = {};  // blank: the session's
  std::string_view dataMov = {};  // YYYY-MM-DD of the movement; blank: the server's today
  std::string_view hora = {};     // HH:MM; blank: the server's present time
};

/// Writes a line of `LogGeral` for the session's user. A failure never stops the action that is logged: it is told by
/// the result alone, and the error outputs stay as they were. Called after the action has been committed.
bool InsertLog(const session::Context& context, const LogLine& line);
/// The same over an open connection to `KorvelConfig`.
bool InsertLog(const session::Context& context, data::Connection& config, const LogLine& line);

}  // namespace korvel::security
