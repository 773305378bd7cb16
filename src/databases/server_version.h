#pragma once

/// Whole versions of the server from which it understands newer statements (see SQL_Version).
namespace korvel::databases {

inline constexpr int kSqlServer2000 = 8;  // states of databases by "Alter Database"
inline constexpr int kSqlServer2005 = 9;  // "Create Login"

}  // namespace korvel::databases
