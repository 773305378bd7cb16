#include "databases/server_states.h"

#include <fmt/format.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "data/sql_text.h"
#include "databases/attempts.h"
#include "databases/names.h"
#include "databases/server_version.h"
#include "databases/sql_admin.h"
#include "session/records.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

std::string SingleUserStatement(data::Connection& master, std::string_view database, bool single) {
  if (SQL_Version(master) < kSqlServer2000) {
    return fmt::format("sp_dboption {},'single user',{}", AsArgument(database), single ? "true" : "false");
  }
  return fmt::format("Alter Database {} Set {}", AsName(database), single ? "Single_User" : "Multi_User");
}

std::vector<std::int64_t> Integers(data::Recordset rows, std::string_view column) {
  std::vector<std::int64_t> values;
  for (; !rows.Eof(); rows.MoveNext()) values.push_back(rows.Integer(column));
  return values;
}

std::vector<std::int64_t> MachineProcesses(data::Connection& master, std::string_view machine,
                                           std::string_view database) {
  return Integers(master.Query(fmt::format(
                      "Select sysprocesses.spid, sysprocesses.status, sysdatabases.name from SysProcesses "
                      "Inner Join sysdatabases on sysdatabases.dbid = sysprocesses.dbid "
                      "Where sysprocesses.Hostname={} and SysDatabases.Name={}",
                      data::Quoted(machine), QuotedName(database))),
                  "spid");
}

std::int64_t OwnProcess(data::Connection& connection) {
  return Integers(connection.Query("Select @@spid as spid"), "spid").at(0);
}

void KillProcesses(const session::Context& context, data::Connection& master, std::string_view database) {
  const std::string machine = context.settings.Read("MachineName", "Name").value_or("");
  SetInfoInSelEmpresas(context, "Kill Proc - Open Success");
  SetInfoInSelEmpresas(context, "Kill Proc - Procs To Kill");
  const auto processes = MachineProcesses(master, machine, database);
  for (const auto id : processes) {
    SetInfoInSelEmpresas(context, fmt::format("Kill Proc - Load Proc ID= {}", id));
  }
  SetInfoInSelEmpresas(context, "Kill Proc - Kill Procs");
  const std::int64_t own = OwnProcess(master);
  for (const auto id : processes) {
    if (id == own) continue;
    SetInfoInSelEmpresas(context, fmt::format("Kill Proc - Killing Proc: {}", id));
    master.Execute(fmt::format("Kill {}", id));
  }
}

std::string LockTable(std::string_view name) {
  RequireName(name);
  return fmt::format("_{}", name);
}

}  // namespace

void SetInfoInSelEmpresas(const session::Context& context, std::string_view text) {
  context.progress.Show(0, text);
}

bool TrySingleUserMode(data::Connection& master, std::string_view database) {
  try {
    SetSingleUserMode(master, database, true);
  } catch (const data::Error&) {
    return false;  // somebody is in it
  }
  SetSingleUserMode(master, database, false);
  return true;
}

void SetSingleUserMode(data::Connection& master, std::string_view database, bool single) {
  master.Execute(SingleUserStatement(master, database, single));
}

bool KillAllProcessesInCurrentMachine(const session::Context& context, std::string_view database) {
  const toolkit::ProgressScope scope(context.progress, "Kill Proc", 0);
  SetInfoInSelEmpresas(context, "Kill Proc - Open Processes");
  return AttemptOn(context, "master",
                   [&](data::Connection& master) { KillProcesses(context, master, database); });
}

void ActivaLock(data::Connection& connection, std::string_view name) {
  const std::string table = AsName(LockTable(name));
  session::RunSQL(connection, "drop table " + table);  // a crash may have left it
  connection.Execute(fmt::format("create table {} ( XXX nvarchar (10) NULL )", table));
  connection.Execute(fmt::format("insert into {} (xxx) values ('xxx')", table));
  connection.BeginTrans();
  connection.Execute(fmt::format("update {}  set xxx='xxx'", table));
}

void DesActivaLock(data::Connection& connection, std::string_view name) {
  const std::string table = AsName(LockTable(name));
  if (connection.InTransaction()) connection.RollbackTrans();
  connection.Execute("drop table " + table);
}

bool SQLCheckLock(data::Connection& connection, std::string_view name) {
  const std::string table = LockTable(name);
  const auto held = Integers(connection.Query("sp_lock"), "OBJID");
  for (const std::int64_t object : std::set<std::int64_t>(held.begin(), held.end())) {
    const auto row = connection.Query(fmt::format("select a=isnull(object_name({}),'' )", object));
    if (!row.Eof() && toolkit::SameIgnoringCase(row.Text("a"), table)) return true;
  }
  return false;
}

}  // namespace korvel::databases
