#include "data/embedded/procedures/procedure.h"

namespace korvel::data::embedded {
namespace {

std::string DatabaseName(const std::vector<DatabaseEntry>& databases, int id) {
  for (const DatabaseEntry& entry : databases) {
    if (entry.id == id) return entry.name;
  }
  return "";
}

/// All processes, or those of a login, or the one of a number.
RowTables Who(const Site& site) {
  RowTable table{{{"spid", kSmall},
                  {"ecid", kSmall},
                  {"status", Varchar(30)},
                  {"loginame", kName},
                  {"hostname", kName},
                  {"blk", Varchar(5)},
                  {"dbname", kName},
                  {"cmd", Varchar(16)}},
                 {}};
  const auto databases = site.view.server.Databases();
  for (const ProcessEntry& entry : site.session.Processes().All()) {
    const bool asked = !site.arguments[0] || SameName(*site.arguments[0], entry.login) ||
                       *site.arguments[0] == std::to_string(entry.spid);
    if (!asked) continue;
    table.rows.push_back({std::int64_t{entry.spid}, std::int64_t{0}, std::string(entry.Status()), entry.login,
                          entry.host, std::string("0"), DatabaseName(databases, entry.Database()),
                          std::string(entry.Command())});
  }
  return {std::move(table)};
}

std::vector<OwnedStored> LockRow(const ProcessEntry& entry, const ChangedObject& object, const char* type,
                                 const char* mode) {
  return {std::int64_t{entry.spid},    std::int64_t{object.database},
          std::int64_t{object.object}, std::int64_t{0},
          std::string(type),           std::string(),
          std::string(mode),           std::string("GRANT")};
}

/// Each connection holds its databases, and its open transaction the tables that it has changed.
RowTables Locks(const Site& site) {
  RowTable table{{{"spid", kSmall},
                  {"dbid", kSmall},
                  {"ObjId", kInt},
                  {"IndId", kSmall},
                  {"Type", Varchar(4)},
                  {"Resource", Varchar(32)},
                  {"Mode", Varchar(8)},
                  {"Status", Varchar(5)}},
                 {}};
  for (const ProcessEntry& entry : site.session.Processes().All()) {
    for (const int database : entry.databases) table.rows.push_back(LockRow(entry, {database, 0}, "DB", "S"));
    for (const ChangedObject& object : entry.changed)
      table.rows.push_back(LockRow(entry, object, "TAB", "X"));
  }
  return {std::move(table)};
}

constexpr Procedure kProcessProcedures[] = {
    {"sp_who", {"@loginame"}, 0, Who},
    {"sp_lock", {"@spid1", "@spid2"}, 0, Locks},
};

}  // namespace

std::span<const Procedure> ProcessProcedures() {
  return kProcessProcedures;
}

}  // namespace korvel::data::embedded
