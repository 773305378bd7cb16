#include "data/embedded/database_states.h"

#include <fmt/format.h>

#include "data/embedded/catalogue.h"

namespace korvel::data::embedded {
namespace {

/// Numbers below 5 are the server's own databases.
constexpr const char* kTable = R"(
CREATE TABLE "$databases" (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL COLLATE NOCASE UNIQUE,
  owner TEXT NOT NULL, read_only INTEGER NOT NULL DEFAULT 0, single_user INTEGER NOT NULL DEFAULT 0,
  level INTEGER NOT NULL DEFAULT 80, created INTEGER NOT NULL);
INSERT INTO "$databases" (id, name, owner, created) VALUES ({}, '{}', '0x01', {});
UPDATE sqlite_sequence SET seq=4 WHERE name='$databases';
)";
constexpr const char* kSelect =
    R"(SELECT id, name, owner, read_only, single_user, level, created FROM "$databases")";

DatabaseEntry Read(const Prepared& row) {
  return {row.Integer(0),      std::string(row.Text(1)), std::string(row.Text(2)),
          row.Integer(3) != 0, row.Integer(4) != 0,      static_cast<int>(row.Integer(5)),
          row.Integer(6)};
}

}  // namespace

void DatabaseList::Create(Store& master) {
  master.Run(fmt::format(fmt::runtime(kTable), kMasterId, kMaster, TicksNow()));
}

std::vector<DatabaseEntry> DatabaseList::All() {
  std::vector<DatabaseEntry> entries;
  Prepared rows = master_.Prepare(std::string(kSelect) + " ORDER BY id");
  while (rows.Step()) entries.push_back(Read(rows));
  return entries;
}

std::optional<DatabaseEntry> DatabaseList::Find(std::string_view name) {
  Prepared rows = master_.Prepare(std::string(kSelect) + " WHERE name=?1");
  rows.Bind(1, name);
  if (!rows.Step()) return std::nullopt;
  return Read(rows);
}

void DatabaseList::Add(std::string_view name, std::string_view owner) {
  Prepared insert = master_.Prepare(R"(INSERT INTO "$databases" (name, owner, created) VALUES (?1, ?2, ?3))");
  insert.Bind(1, name);
  insert.Bind(2, owner);
  insert.Bind(3, TicksNow());
  insert.Run();
}

void DatabaseList::Remove(std::int64_t id) {
  Prepared remove = master_.Prepare(R"(DELETE FROM "$databases" WHERE id=?1)");
  remove.Bind(1, id);
  remove.Run();
}

void DatabaseList::SetOwner(std::int64_t id, std::string_view sid) {
  Change("owner", sid, id);
}

void DatabaseList::SetReadOnly(std::int64_t id, bool readOnly) {
  Change("read_only", std::int64_t{readOnly}, id);
}

void DatabaseList::SetSingleUser(std::int64_t id, bool singleUser) {
  Change("single_user", std::int64_t{singleUser}, id);
}

void DatabaseList::SetLevel(std::int64_t id, int level) {
  Change("level", std::int64_t{level}, id);
}

void DatabaseList::Change(std::string_view column, const Stored& value, std::int64_t id) {
  AtomicWrite write(master_);
  Prepared update = master_.Prepare(fmt::format(R"(UPDATE "$databases" SET {}=?1 WHERE id=?2)", column));
  update.Bind(1, value);
  update.Bind(2, id);
  update.Run();
  Catalogue::RaiseVersion(master_);
  write.Keep();
}

}  // namespace korvel::data::embedded
