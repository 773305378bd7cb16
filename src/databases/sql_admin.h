#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "data/connection.h"

/// Administration of a server. Members work on the connection given and throw data::Error unless they say
/// otherwise. Names of tables and fields are the system's own, never users' text; those of databases are checked.
namespace korvel::databases {

/// The server's own number for a database that is there already.
inline constexpr int kDatabaseExists = 1801;

/// True when the server has that database, in any case of letters.
bool CheckDatabase(data::Connection& connection, std::string_view database);

bool SQLCheckField(data::Connection& connection, std::string_view field, std::string_view table);
bool SQLCheckTable(data::Connection& connection, std::string_view table);

/// Makes a table with just `NumRegisto` and its key `PK_<table>`, when it is missing.
void SQLCreateTable(data::Connection& connection, std::string_view table);
/// Adds a field when it is missing.
void SQLAddField(data::Connection& connection, std::string_view type, std::string_view field,
                 std::string_view table);
void SQLChangeField(data::Connection& connection, std::string_view type, std::string_view field,
                    std::string_view table);
void SQLCreateIndex(data::Connection& connection, std::string_view name, std::string_view table,
                    std::string_view fields, bool unique);

/// Sets the database's compatibility level and lets the server run its command shell, as installations rely on.
void SQL_ChangeDbCompLevel(data::Connection& master, std::string_view database);

/// The whole number before the first "." of the server's product version.
int SQL_Version(data::Connection& master);

/// Two forms of statements: for servers before version 8, and since.
bool CheckForReadOnly(data::Connection& master, std::string_view database);
void SetReadOnly(data::Connection& master, std::string_view database, bool readOnly);
/// Tries up to ten times, with a pause between, to bring a database into that state; false when it did not get
/// there. Throws only what `pause` does.
bool ForceReadOnly(data::Connection& master, std::string_view database, bool readOnly,
                   const std::function<void()>& pause);

/// The batches of a script, as views into it; lines that hold just "GO" part them. Blank ones are left out.
std::vector<std::string_view> ScriptBatches(std::string_view script);
/// Runs each batch of a script. Stops at the first failure.
void RunScript(data::Connection& connection, std::string_view script);

}  // namespace korvel::databases
