#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/embedded/tree.h"

namespace korvel::data::embedded {

/// What a login may be allowed to do.
enum class Right {
  // In the current database.
  Select,       // 229, with the object's name
  Write,        // 229: rows of a table
  Execute,      // 229: a stored procedure
  Create,       // 262: tables, views, procedures; the object is the statement's name
  Alter,        // 3704: to change or drop an object
  ManageUsers,  // 15247
  ManageRoles,  // 15247
  OwnDatabase,  // 15247
  // Over a database that is named.
  BackUp,         // 262
  Restore,        // 262
  DropDatabase,   // 3701
  AlterDatabase,  // 5011
  // Over the server.
  CreateDatabase,  // 262
  ManageLogins,    // 15247
  ManageDevices,   // 15247
  Configure,       // 15247
  EndProcesses,    // 6102
};

/// What a login is in a database, at one moment.
struct Access {
  unsigned serverRoles = 0;
  unsigned databaseRoles = 0;
  bool inside = false;  // may enter at all
  bool owner = false;   // is "dbo" there
  bool readOnly = false;
  std::int64_t number = 0;  // of the user
  std::string user;         // "dbo", "guest" or the user's own name
};

/// Throws the server's refusal when `access` does not give the right, and 3906 when the right changes a database that
/// may only be read. `object` is the table, procedure, statement or database that the refusal names.
void Require(Right right, const Access& access, std::string_view object, std::string_view database);

/// The right that a statement over the schema of the current database needs, and the object that a refusal names.
struct SchemaNeed {
  Right right = Right::Alter;
  std::string object;  // of the refusal
  ObjectName changed;  // what changes, blank for what is made
};
SchemaNeed NeedOf(const Statement& statement);

}  // namespace korvel::data::embedded
