#pragma once

#include <iosfwd>
#include <string_view>

#include "cli/command_environment.h"
#include "cli/global_options.h"
#include "cli/terminal_dialogs.h"
#include "cli/terminal_progress.h"
#include "data/connect.h"
#include "session/connections.h"
#include "session/context.h"

namespace korvel::cli {

/// What a command works with: the session of the command line's login and the ports of the terminal. Made before a
/// command runs, without touching any server.
class Workspace {
 public:
  Workspace(const CommandEnvironment& environment, const GlobalOptions& options, bool makesServer);
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  session::Context Context();
  const CommandEnvironment& Environment() const { return environment_; }
  std::ostream& Out() const { return environment_.out; }
  TerminalDialogs& Dialogs() { return dialogs_; }
  bool CompanyGiven() const { return options_.empresa.has_value(); }
  bool Interrupted() const { return environment_.interrupted && environment_.interrupted(); }

  /// Enters the server as the login form does. Throws Refusal with that form's words.
  void Login();
  /// Login, and enters the company of `--empresa` with its parameters. Throws Refusal, UsageError, data::Error.
  void EnterCompany();
  /// Enters another company of the same server, of which `code` is known to be one. Throws as EnterCompany.
  void EnterCompany(std::string_view code);

  /// Opens a database on the session's server. Throws Refusal: with the login form's words for `master`, else with
  /// the server's.
  session::ConnectionPtr Open(std::string_view database);
  /// Opens the session's company.
  session::ConnectionPtr OpenCompany() { return Open(session_.gBaseDados); }

 private:
  std::string LoginRefusal() const;

  const CommandEnvironment& environment_;
  const GlobalOptions& options_;
  data::ServerSettings servers_;
  session::SessionRecord session_;
  TerminalDialogs dialogs_;
  TerminalProgress progress_;
};

}  // namespace korvel::cli
