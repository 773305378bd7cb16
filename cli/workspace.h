#pragma once

#include <iosfwd>
#include <string_view>

#include "cli/command_environment.h"
#include "cli/global_options.h"
#include "cli/needed_right.h"
#include "cli/terminal_dialogs.h"
#include "cli/terminal_progress.h"
#include "data/connect.h"
#include "session/connections.h"
#include "session/context.h"
#include "session/entry/company_selection.h"

namespace korvel::cli {

/// What a command works with: the session of the command line's login and the ports of the terminal. Made before a
/// command runs, without touching any server.
class Workspace {
 public:
  /// `right` is what the command needs in the company that it enters.
  Workspace(const CommandEnvironment& environment, const GlobalOptions& options, bool makesServer,
            const NeededRight& right);
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  session::Context Context();
  std::ostream& Out() const { return environment_.out; }
  TerminalDialogs& Dialogs() { return dialogs_; }
  const CommandEnvironment& Environment() const { return environment_; }
  bool Confirmed() const { return options_.sim; }
  bool CompanyGiven() const { return options_.empresa.has_value(); }
  bool Interrupted() const { return environment_.interrupted && environment_.interrupted(); }

  /// Enters the server as the login form does: `KorvelConfig` is made for the first administrator, the list of users
  /// follows the server's logins. Throws Refusal with that form's words, Refused.
  void Login();
  /// The same for a login that has the menus of companies and users. Throws Refusal for others.
  void LoginAsAdministrator();
  /// The companies that the login sees, behind a Login.
  const session::CompanyLines& Companies() const { return selection_.Companies(); }
  /// The code of `--empresa`, which must be one of them. Throws Refusal, UsageError.
  std::string ListedCompany() const;

  /// Deletes that company with all its data, once confirmed. False when that was refused.
  bool DeleteListedCompany();
  /// Makes the base set of rights where there is none: companies that are made from the command line can be entered.
  void EnsureBaseRights();

  /// Login, and enters the company of `--empresa` with its rights and parameters. Throws Refusal, Refused, UsageError,
  /// data::Error.
  void EnterCompany();

  /// Opens a database on the session's server, without more. Throws Refusal: with the login form's words for `master`,
  /// else with the server's.
  session::ConnectionPtr Open(std::string_view database);
  /// Opens the session's company.
  session::ConnectionPtr OpenCompany() { return Open(session_.gBaseDados); }

 private:
  std::string LoginRefusal() const;
  void RequireRight();

  const CommandEnvironment& environment_;
  const GlobalOptions& options_;
  NeededRight right_;
  data::ServerSettings servers_;
  session::SessionRecord session_;
  TerminalDialogs dialogs_;
  TerminalProgress progress_;
  session::CompanySelection selection_;
};

}  // namespace korvel::cli
