#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "session/context.h"

namespace korvel::session {

/// A condition on one column. The value of a numeric key stands in the statement as it is; one that is no number is
/// quoted, for the server to refuse.
struct LookupKey {
  std::string_view field;
  std::string_view value;
  bool numeric = false;
};

/// The first value of `field` in `table` as text, "" when there is no row. A blank key value is a key like any other.
/// `extra` is appended to the condition as it stands. Throws data::Error.
std::string LerCampoTabela(data::Connection& connection, std::string_view table, std::string_view field);
std::string LerCampoTabela(data::Connection& connection, std::string_view table, std::string_view field,
                           const LookupKey& key, std::string_view extra = {});

/// The same over a company connection of its own, closed afterwards; "" when it cannot be opened.
std::string LerCampoTabela(const Context& context, std::string_view table, std::string_view field,
                           const LookupKey& key, std::string_view extra = {});

/// Rows of `table` under `where` (" Where ..." or empty). A blank table counts 0.
std::int64_t ContaRegistos_lng(data::Connection& connection, std::string_view table, std::string_view where);

/// True when the table has that column. Throws data::Error, when there is no such table too.
bool HasColumn(data::Connection& connection, std::string_view table, std::string_view column);

/// True when the statement brings a row.
bool VerSeExiste(data::Connection& connection, std::string_view statement);

/// That field of the statement's first row, Null without a row. Errors pass silently, as its callers rely on.
data::Value GetFieldValue(data::Connection& connection, std::string_view statement, std::string_view field);

/// The server's date and time, local if it brings none; the second form opens the company's database for itself and
/// gives the local moment when it cannot.
data::DateTime Get_DataSysServer(data::Connection& connection);
data::DateTime Get_DataSysServer(const Context& context);
/// The same cut to its day.
data::DateTime Get_DataServer(data::Connection& connection);

}  // namespace korvel::session
