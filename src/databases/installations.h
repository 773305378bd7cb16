#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/connections.h"

/// Companies of several servers, each with its own login, in the table `FirmasImo` of `KorvelConfig`. This system does not
/// make that table; without it there are none.
namespace korvel::databases {

struct Installation {
  std::string code;
  std::string name;
  std::string year;
  std::string server;
  std::string login;
  std::string password;  // clear
  std::string database;
  std::string kind;  // "MDB": a single-file database, which this system does not open
};

/// In the order of their servers, then codes. Throws data::Error, and std::invalid_argument for a password that
/// windows-1252 cannot hold.
std::vector<Installation> Installations(data::Connection& config);
/// Throws as Installations.
std::optional<Installation> FindInstallation(data::Connection& config, std::string_view code);

/// `CMultiEmpresa.FindEmpresa`: the name of such a company, "" for none and for a single-file database.
std::string FindEmpresa(data::Connection& config, std::string_view code);
/// `CMultiEmpresa.CreateConnection`: opens the database of such a company. False, with the error outputs set by a server
/// that refused, for none and for a single-file database too.
bool CreateConnection(const session::Context& context, session::ConnectionPtr& connection,
                      data::Connection& config, std::string_view code);

/// The session as it would be with that installation's server and login.
session::SessionRecord SessionOf(const session::SessionRecord& session, const Installation& installation);

}  // namespace korvel::databases
