#pragma once

#include <optional>
#include <string_view>

#include "data/embedded/catalogue.h"
#include "data/embedded/rows.h"
#include "data/embedded/server.h"

namespace korvel::data::embedded {

class Session;

/// What system tables and procedures are made from.
struct ServerView {
  Server& server;
  std::string_view database;
  const Catalogue& catalogue;
  Session& session;
};

/// sysdatabases, syslogins and sysprocesses (of the server, whatever database is named), sysobjects, syscolumns and
/// sysusers (of the current database). Nothing for any other name.
std::optional<RowTable> SystemTable(const ServerView& view, std::string_view database, std::string_view name);

}  // namespace korvel::data::embedded
