#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "session/connections.h"

/// Tables and procedures read from a server's own descriptions, to be made again. Work on the connections given and throw
/// data::Error unless said otherwise. Names are checked.
namespace korvel::databases {

void SQLDropField(data::Connection& connection, std::string_view field, std::string_view table);
bool SQLCheckIndex(data::Connection& connection, std::string_view name, std::string_view table);

/// Runs one statement. False with the error outputs set.
bool ExecutaSQL(const session::Context& context, data::Connection& connection, std::string_view statement);

/// The columns of a table, apart by commas, each between brackets, the identity key among them.
std::string CreateFieldList(data::Connection& connection, std::string_view table);

/// The statements that make a table like that one: its columns with their defaults, its identity, its primary key,
/// which becomes nonclustered and `PK_<table>`. Other keys and indexes are left out.
std::vector<std::string> TableStatements(data::Connection& connection, std::string_view table);
/// Runs them on another connection, where there must be no such table.
void DuplicateStructure(data::Connection& source, std::string_view table, data::Connection& target);

/// Makes each procedure of `source`, the server's own left out, on `target` too, in place of one of that name. Stops at
/// the first that fails.
void CreateStoredProcedures(data::Connection& source, data::Connection& target);

}  // namespace korvel::databases
