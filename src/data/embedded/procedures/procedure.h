#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/rows.h"
#include "data/embedded/session.h"
#include "data/embedded/system_tables.h"
#include "data/embedded/text_functions.h"

/// The procedures that the server brings with it. To grow: a line in the table of the file that it belongs to.
namespace korvel::data::embedded {

constexpr std::size_t kMostArguments = 6;

// Types that many row sets share.
constexpr ColumnType kName = Varchar(128);
constexpr ColumnType kSid = Varchar(85);
constexpr ColumnType kSmall{Type::SmallInt};

/// Arguments by the procedure's own parameters; what was not given or is NULL is nothing.
using Arguments = std::array<std::optional<std::string>, kMostArguments>;

/// Where and with what a procedure runs.
struct Site {
  Session& session;
  const ServerView& view;
  const Arguments& arguments;

  /// Whether a name passes an argument that may hold wildcards.
  bool Passes(std::size_t argument, std::string_view name) const {
    return !arguments[argument] || Like(name, *arguments[argument], 0);
  }
};

/// Row sets in their order; none for a procedure that brings no rows.
using RowTables = std::vector<RowTable>;

struct Procedure {
  std::string_view name;
  std::array<std::string_view, kMostArguments> parameters;  // with their "@", in lower case
  std::size_t required;                                     // how many of the first ones must be given
  RowTables (*body)(const Site&);
};

/// sp_tables, sp_columns, sp_indexes: what the current database holds.
std::span<const Procedure> CatalogueProcedures();
/// xp_msver, sp_dbcmptlevel, sp_dboption, sp_configure: the server, its settings, its databases' states.
std::span<const Procedure> ServerProcedures();
/// sp_addlogin and others: who may enter the server, and its roles.
std::span<const Procedure> LoginProcedures();
/// sp_adduser and others: who may enter the current database, and its roles.
std::span<const Procedure> UserProcedures();
/// sp_who, sp_lock: who is connected, and what he holds.
std::span<const Procedure> ProcessProcedures();

/// sp_stored_procedures, sp_helptext: the stored procedures of the current database.
std::span<const Procedure> ProgramProcedures();
/// sp_addumpdevice, sp_dropdevice, sp_helpfile: devices and files.
std::span<const Procedure> StorageProcedures();
/// sp_help, sp_helpindex, sp_helpdb: what objects are made of.
std::span<const Procedure> HelpProcedures();

}  // namespace korvel::data::embedded
