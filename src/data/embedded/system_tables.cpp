#include "data/embedded/system_tables.h"

#include <algorithm>

namespace korvel::data::embedded {
namespace {

constexpr ColumnType kName = Varchar(128);
constexpr ColumnType kLetters = Varchar(2);
constexpr ColumnType kSmall{Type::SmallInt};

RowTable Databases(const ServerView& view) {
  RowTable table{{{"name", kName}, {"dbid", kSmall}, {"status", kInt}, {"cmptlevel", kSmall}}, {}};
  for (const DatabaseEntry& entry : view.server.Databases()) {
    table.rows.push_back({entry.name, entry.id, std::int64_t{0}, std::int64_t{80}});
  }
  return table;
}

RowTable Logins(const ServerView& view) {
  RowTable table{{{"name", kName},
                  {"loginname", kName},
                  {"dbname", kName},
                  {"hasaccess", kInt},
                  {"isntname", kInt},
                  {"isntgroup", kInt},
                  {"isntuser", kInt},
                  {"sysadmin", kInt}},
                 {}};
  for (const LoginEntry& login : view.server.Logins()) {
    const std::int64_t system = login.name.find('\\') != std::string::npos ? 1 : 0;
    table.rows.push_back({login.name, login.name, std::string(kMaster), std::int64_t{1}, system,
                          std::int64_t{0}, system, std::int64_t{login.sysAdmin}});
  }
  return table;
}

RowTable Objects(const ServerView& view) {
  RowTable table{{{"name", kName}, {"id", kInt}, {"xtype", kLetters}, {"type", kLetters}, {"uid", kSmall}},
                 {}};
  for (const auto& [lower, object] : view.catalogue.Objects()) {
    const std::string kind = object.view ? "V" : "U";
    table.rows.push_back({object.name, object.id, kind, kind, std::int64_t{1}});
  }
  return table;
}

RowTable Columns(const ServerView& view) {
  RowTable table{{{"name", kName},
                  {"id", kInt},
                  {"colid", kSmall},
                  {"xtype", kSmall},
                  {"length", kSmall},
                  {"prec", kSmall},
                  {"scale", kInt},
                  {"isnullable", kInt}},
                 {}};
  for (const auto& [lower, object] : view.catalogue.Objects()) {
    for (const Column& column : object.columns) {
      const ColumnType& type = column.type;
      const std::int64_t length = type.base == Type::Varchar ? type.length
                                  : IsExact(type)            ? PrecisionOf(type)
                                                             : 8;
      table.rows.push_back({column.name, object.id, std::int64_t{column.ordinal},
                            std::int64_t{TypeNumber(type.base)}, length, length, std::int64_t{ScaleOf(type)},
                            std::int64_t{column.nullable}});
    }
  }
  return table;
}

struct Entry {
  std::string_view name;
  bool ofServer;
  RowTable (*make)(const ServerView&);
};
constexpr Entry kTables[] = {{"sysdatabases", true, Databases},
                             {"syslogins", true, Logins},
                             {"sysobjects", false, Objects},
                             {"syscolumns", false, Columns}};

}  // namespace

std::optional<RowTable> SystemTable(const ServerView& view, std::string_view database,
                                    std::string_view name) {
  const auto* found = std::find_if(std::begin(kTables), std::end(kTables),
                                   [&](const Entry& entry) { return SameName(entry.name, name); });
  if (found == std::end(kTables)) return std::nullopt;
  const bool here = database.empty() || SameName(database, view.database);
  if (!here && !(found->ofServer && SameName(database, kMaster))) return std::nullopt;
  return found->make(view);
}

}  // namespace korvel::data::embedded
