#include "databases/sql_admin.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "data/sql_text.h"
#include "databases/names.h"
#include "databases/server_version.h"
#include "toolkit/numbers.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

using data::Quoted;

bool BringsRow(data::Connection& connection, std::string_view statement) {
  return !connection.Query(statement).Eof();
}

bool ReachesState(data::Connection& master, std::string_view database, bool readOnly) {
  try {
    SetReadOnly(master, database, readOnly);
  } catch (const data::Error&) {
    // Others may still work on the database: it is tried again, unless it is in that state already.
  }
  try {
    return CheckForReadOnly(master, database) == readOnly;
  } catch (const data::Error&) {
    return false;
  }
}

bool IsBatchEnd(std::string_view line) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return toolkit::SameIgnoringCase(toolkit::Trim(line), "GO");
}

bool HasText(std::string_view batch) {
  return batch.find_first_not_of(" \t\r\n") != std::string_view::npos;
}

}  // namespace

bool CheckDatabase(data::Connection& connection, std::string_view database) {
  return BringsRow(connection, fmt::format("Select Name from master..SysDataBases Where upper(Name)={}",
                                           Quoted(toolkit::Upper(database))));
}

bool SQLCheckField(data::Connection& connection, std::string_view field, std::string_view table) {
  return BringsRow(connection,
                   fmt::format("sp_columns @table_name = {},@COLUMN_NAME={}", Quoted(table), Quoted(field)));
}

bool SQLCheckTable(data::Connection& connection, std::string_view table) {
  return BringsRow(connection, fmt::format("sp_tables @table_name = {}", Quoted(table)));
}

void SQLCreateTable(data::Connection& connection, std::string_view table) {
  if (SQLCheckTable(connection, table)) return;
  connection.Execute(
      fmt::format(" create table {} ( NumRegisto numeric (18,0) identity (1,1) not null )", table));
  connection.Execute(fmt::format(
      "ALTER TABLE [dbo].[{0}] WITH NOCHECK ADD  CONSTRAINT [PK_{0}] PRIMARY KEY  NONCLUSTERED  ( "
      "[NumRegisto] )  ON [PRIMARY]",
      table));
}

void SQLAddField(data::Connection& connection, std::string_view type, std::string_view field,
                 std::string_view table) {
  if (SQLCheckField(connection, field, table)) return;
  connection.Execute(fmt::format(" alter table {} add {} {}", table, field, type));
}

void SQLChangeField(data::Connection& connection, std::string_view type, std::string_view field,
                    std::string_view table) {
  connection.Execute(fmt::format(" alter table {} ALTER COLUMN {} {}", table, field, type));
}

void SQLCreateIndex(data::Connection& connection, std::string_view name, std::string_view table,
                    std::string_view fields, bool unique) {
  connection.Execute(fmt::format("CREATE {}INDEX [{}] on [dbo].[{}] ( {} ) ON [PRIMARY]",
                                 unique ? "UNIQUE " : "", name, table, fields));
}

void SQL_ChangeDbCompLevel(data::Connection& master, std::string_view database) {
  master.Execute(fmt::format("sp_dbcmptlevel {}, 80", AsArgument(database)));
  master.Execute("sp_configure 'show advanced options', 1");
  master.Execute("reconfigure with override");
  master.Execute("sp_configure 'xp_cmdshell', 1");
  master.Execute("reconfigure with override");
}

int SQL_Version(data::Connection& master) {
  master.Execute("Use Master");
  const auto version = master.Query("xp_msver 'productversion' ");
  if (version.Eof()) return 0;
  return static_cast<int>(toolkit::NumericPrefix(version.Text("Character_Value")).Whole());
}

bool CheckForReadOnly(data::Connection& master, std::string_view database) {
  if (SQL_Version(master) < kSqlServer2000) {
    const auto option = master.Query(fmt::format("sp_dboption {},'read only'", QuotedName(database)));
    return !option.Eof() && toolkit::Lower(option.Text("currentsetting")) != "off";
  }
  const auto state = master.Query(
      fmt::format("Select DatabasePropertyex({},'Updateability') as MRet", QuotedName(database)));
  return !state.Eof() && state.Text("MRet") == "READ_ONLY";
}

void SetReadOnly(data::Connection& master, std::string_view database, bool readOnly) {
  if (SQL_Version(master) < kSqlServer2000) {
    master.Execute(
        fmt::format("sp_dboption {},'read only','{}'", QuotedName(database), readOnly ? "true" : "false"));
  } else {
    master.Execute(
        fmt::format("Alter DataBase {} Set {}", AsName(database), readOnly ? "READ_ONLY" : "READ_WRITE"));
  }
}

bool ForceReadOnly(data::Connection& master, std::string_view database, bool readOnly,
                   const std::function<void()>& pause) {
  constexpr int kAttempts = 10;
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    if (ReachesState(master, database, readOnly)) return true;
    if (attempt < kAttempts) pause();
  }
  return false;
}

std::vector<std::string_view> ScriptBatches(std::string_view script) {
  std::vector<std::string_view> batches;
  std::size_t batch = 0;
  for (std::size_t line = 0; line < script.size();) {
    const std::size_t end = std::min(script.find('\n', line), script.size());
    if (IsBatchEnd(script.substr(line, end - line))) {
      if (const auto text = script.substr(batch, line - batch); HasText(text)) batches.push_back(text);
      batch = std::min(end + 1, script.size());
    }
    line = end + 1;
  }
  if (const auto rest = script.substr(batch); HasText(rest)) batches.push_back(rest);
  return batches;
}

void RunScript(data::Connection& connection, std::string_view script) {
  for (const std::string_view batch : ScriptBatches(script)) connection.Execute(batch);
}

}  // namespace korvel::databases
