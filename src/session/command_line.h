#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "session/session_record.h"

/// What the program's command line asks for.
namespace korvel::session {

/// A blank line: the login form is shown.
struct InteractiveStart {
  friend bool operator==(const InteractiveStart&, const InteractiveStart&) = default;
};

/// "<server> <login> <company code> <enciphered password>". Any value may be empty.
struct UnattendedLogin {
  std::string server;
  std::string login;
  std::string company;
  std::string encipheredPassword;
  friend bool operator==(const UnattendedLogin&, const UnattendedLogin&) = default;
};

/// "<@>command<@>server<@>flag<@>login<@>password<@>database"; missing values are empty. The process ends after it,
/// whether it knows the command or not.
struct AdminCommand {
  std::string command;  // upper-cased: "ACT_DB", "ACT_CHK" or any other
  std::string server;
  bool windowsAuthentication = false;
  std::string login;
  std::string password;  // as written, not enciphered
  std::string database;
  friend bool operator==(const AdminCommand&, const AdminCommand&) = default;
};

using CommandLine = std::variant<InteractiveStart, UnattendedLogin, AdminCommand>;

/// Never fails. In an unattended login every single blank moves on to the next value, so that two in a row leave a value
/// empty and shift the rest, which is deliberate; a fifth and later values are dropped.
CommandLine ParseCommandLine(std::string_view line);

/// Puts a login in the session record, the password deciphered. Throws std::invalid_argument for a
/// password that windows-1252 cannot hold, the record unchanged.
void TakeLogin(const UnattendedLogin& login, SessionRecord& session);
/// Puts the server, the login and the way of authentication of a command in the session record.
void TakeLogin(const AdminCommand& command, SessionRecord& session);

}  // namespace korvel::session
