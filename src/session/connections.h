#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "session/context.h"

namespace korvel::session {

using ConnectionPtr = std::unique_ptr<data::Connection>;

inline constexpr int kTimeoutSeconds = 120;
inline constexpr std::string_view kConfigDatabase = "KorvelConfig";

/// The connection string of a login, or of the operating system's user under Windows authentication.
/// The password is not in it. A value with characters that have a meaning there stands between double quotes.
std::string BuildConnectionString(std::string_view server, std::string_view database, std::string_view login,
                                  bool windowsAuthentication);

/// Opens a database, in place of what `connection` held. False, with `gErroNumero` and `gErroDescricao` set, when the server refuses; false with both
/// left alone when `server`, or `login` without Windows authentication, is blank: nothing is attempted then.
bool CreateDBConnection(const Context& context, ConnectionPtr& connection, std::string_view server,
                        std::string_view database, std::string_view login, std::string_view password,
                        int timeoutSeconds = kTimeoutSeconds);

/// Closes a connection if it is open, rolling back what it has not committed, and drops it. An empty one stays empty.
void FechaConection(ConnectionPtr& connection);

/// Whether the server takes that login on a database; a refusal sets the error outputs as CreateDBConnection does.
bool ValidateLogin(const Context& context, std::string_view server, std::string_view database,
                   std::string_view login, std::string_view password);

/// Opens `database` on the session's server as the session's user.
bool OpenSessionDatabase(const Context& context, ConnectionPtr& connection, std::string_view database);

/// Thrown when the user chooses "Terminar o Programa" in the retry dialog; the program's start ends the process.
struct EndProgram {};

/// Opens `KorvelConfig`. On failure asks "Continuar a tentar" or "Terminar o Programa": the first gives false
/// (in spite of its words nothing is tried again, which is deliberate), the second throws EndProgram.
bool AbreConfig(const Context& context, ConnectionPtr& connection);
/// The same for a company database; a blank name becomes `gBaseDados`, in the caller's variable too.
bool AbreGeral(const Context& context, ConnectionPtr& connection, std::string& database);
/// Opens `gBaseDados`; a failure is shown as a warning.
bool AbreConnectionLOCAL_bln(const Context& context, ConnectionPtr& connection);

/// The two products whose databases are read. The names also compose the columns of `ParamGeral`.
inline constexpr std::string_view kBrevant = "Brevant";
inline constexpr std::string_view kLunder = "Lunder";

/// Opens the database of a source product where `ParamGeral` of the company says it lies; with `isConfig` its
/// configuration database. False without a message when its server or database is blank there.
bool AbreConnection_bln(const Context& context, ConnectionPtr& connection, std::string_view product,
                        bool isConfig = false, bool showMessage = true);

/// Shows the last connection failure: its text, a line break, its number.
void ShowConnectionError(const Context& context);

}  // namespace korvel::session
