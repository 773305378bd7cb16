#pragma once

#include <cstdint>
#include <string_view>

#include "data/connection.h"
#include "session/context.h"

/// Statements and records of any table. Table and column names are names of the system, never users' text.
namespace korvel::session {

/// Runs a statement without rows. False when it failed, without a message: callers that can go on use it.
bool RunSQL(data::Connection& connection, std::string_view statement);

enum class OwnDatabase { Company, Config };

/// The first field of a statement's first row over a connection of its own; Null without a row. When the connection
/// fails its number and text are shown, and Null comes back. Throws data::Error for the statement.
data::Value Executa_SQL_var(const Context& context, std::string_view statement,
                            OwnDatabase database = OwnDatabase::Company);

/// Fills the NULLs of a table: numbers with 0, texts with ""; dates stay NULL. Throws data::Error.
void Limpa_NULOS(data::Connection& connection, std::string_view table);

/// Copies each row of `table` picked by `where` ("where ...") into a new one of the same table at `target`, every field
/// but `NumRegisto`, the key field taking `newKey`. Returns the last new row's `NumRegisto`, 0 when none was picked.
/// `source` and `target` may be the same connection. Throws data::Error; what was copied before a failure stays
/// unless the caller holds a transaction.
std::int64_t Duplica_Registo(data::Connection& source, data::Connection& target, std::string_view table,
                             std::string_view keyField, const data::Value& newKey, std::string_view where);

}  // namespace korvel::session
