#include "data/embedded/system_tables.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "data/embedded/roles.h"
#include "data/embedded/session.h"
#include "data/embedded/users.h"

namespace korvel::data::embedded {
namespace {

constexpr ColumnType kName = Varchar(128);
constexpr ColumnType kLetters = Varchar(2);
constexpr ColumnType kSmall{Type::SmallInt};
constexpr ColumnType kSid = Varchar(85);

/// Bits of sysdatabases.status.
constexpr std::int64_t kReadOnlyBit = 1024;
constexpr std::int64_t kSingleUserBit = 4096;

RowTable Databases(const ServerView& view) {
  RowTable table{{{"name", kName},
                  {"dbid", kSmall},
                  {"sid", kSid},
                  {"status", kInt},
                  {"crdate", kDateTime},
                  {"cmptlevel", kSmall},
                  {"filename", Varchar(260)}},
                 {}};
  for (const DatabaseEntry& entry : view.server.Databases()) {
    const std::int64_t status = (entry.readOnly ? kReadOnlyBit : 0) + (entry.singleUser ? kSingleUserBit : 0);
    table.rows.push_back({entry.name, entry.id, entry.owner, status, entry.created, std::int64_t{entry.level},
                          view.server.FileOf(entry.name).string()});
  }
  return table;
}

RowTable Logins(const ServerView& view) {
  RowTable table{{{"sid", kSid},
                  {"name", kName},
                  {"loginname", kName},
                  {"dbname", kName},
                  {"hasaccess", kInt},
                  {"denylogin", kInt},
                  {"isntname", kInt},
                  {"isntgroup", kInt},
                  {"isntuser", kInt}},
                 {}};
  for (const Role& role : ServerRoles()) table.headings.push_back({std::string(role.name), kInt});
  for (const LoginEntry& login : view.server.Logins().All()) {
    std::vector<OwnedStored> row{login.sid,
                                 login.name,
                                 login.name,
                                 login.database,
                                 std::int64_t{1},
                                 std::int64_t{0},
                                 std::int64_t{login.windows},
                                 std::int64_t{login.group},
                                 std::int64_t{login.windows && !login.group}};
    for (const Role& role : ServerRoles()) row.emplace_back(std::int64_t{login.Is(role.bit)});
    table.rows.push_back(std::move(row));
  }
  return table;
}

/// A line of sysusers: a user that belongs to a login, or a role.
std::vector<OwnedStored> UserRow(std::int64_t number, std::string_view name, const std::string& sid,
                                 bool windows, bool role) {
  return {number,
          std::string(name),
          sid.empty() ? OwnedStored(Null{}) : OwnedStored(sid),
          role ? number : std::int64_t{0},
          std::int64_t{!role},
          std::int64_t{!role && !sid.empty()},
          std::int64_t{windows},
          std::int64_t{!role && !windows},
          std::int64_t{role}};
}

RowTable Users(const ServerView& view) {
  RowTable table{{{"uid", kSmall},
                  {"name", kName},
                  {"sid", kSid},
                  {"gid", kSmall},
                  {"hasdbaccess", kInt},
                  {"islogin", kInt},
                  {"isntname", kInt},
                  {"issqluser", kInt},
                  {"issqlrole", kInt}},
                 {}};
  const DatabaseEntry entry = view.session.GetDatabase(view.database);
  table.rows.push_back(UserRow(0, "public", "", false, true));
  table.rows.push_back(UserRow(kOwnerNumber, kOwnerUser, entry.owner, false, false));
  if (entry.IsMaster()) table.rows.push_back(UserRow(kGuestNumber, kGuest, "", false, false));
  LoginList logins = view.server.Logins();
  for (const UserEntry& user : UserList(view.session.Current()->File()).All()) {
    const auto login = logins.FindSid(user.sid);
    table.rows.push_back(UserRow(user.number, user.name, user.sid, login && login->windows, false));
  }
  for (const Role& role : DatabaseRoles())
    table.rows.push_back(UserRow(role.number, role.name, "", false, true));
  return table;
}

/// "MACHINE" and "user" of an account, blank for a login of the server.
std::pair<std::string, std::string> AccountParts(const std::string& account) {
  const std::size_t slash = account.find('\\');
  if (slash == std::string::npos) return {};
  return {account.substr(0, slash), account.substr(slash + 1)};
}

RowTable Processes(const ServerView& view) {
  RowTable table{{{"spid", kSmall},
                  {"kpid", kInt},
                  {"blocked", kSmall},
                  {"dbid", kSmall},
                  {"uid", kSmall},
                  {"login_time", kDateTime},
                  {"last_batch", kDateTime},
                  {"open_tran", kSmall},
                  {"status", Varchar(30)},
                  {"hostname", kName},
                  {"program_name", kName},
                  {"hostprocess", Varchar(8)},
                  {"cmd", Varchar(16)},
                  {"nt_domain", kName},
                  {"nt_username", kName},
                  {"net_address", Varchar(12)},
                  {"net_library", Varchar(12)},
                  {"loginame", kName}},
                 {}};
  for (const ProcessEntry& entry : view.session.Processes().All()) {
    const auto [domain, user] = AccountParts(entry.account);
    table.rows.push_back({std::int64_t{entry.spid}, std::int64_t{entry.systemProcess}, std::int64_t{0},
                          std::int64_t{entry.Database()}, std::int64_t{kOwnerNumber}, entry.loginTime,
                          entry.lastBatch, std::int64_t{entry.transactions}, std::string(entry.Status()),
                          entry.host, entry.program, std::to_string(entry.systemProcess),
                          std::string(entry.Command()), domain, user,
                          fmt::format("{:012X}", entry.systemProcess), std::string("LPC"), entry.login});
  }
  return table;
}

RowTable Objects(const ServerView& view) {
  RowTable table{{{"name", kName}, {"id", kInt}, {"xtype", kLetters}, {"type", kLetters}, {"uid", kSmall}},
                 {}};
  for (const auto& [lower, object] : view.catalogue.Objects()) {
    const std::string kind = object->view ? "V" : "U";
    table.rows.push_back({object->name, object->id, kind, kind, std::int64_t{1}});
  }
  for (const auto& [lower, procedure] : view.catalogue.Procedures()) {
    table.rows.push_back({procedure.name, procedure.id, "P", "P", std::int64_t{1}});
  }
  return table;
}

/// The texts of stored procedures, in pieces of what a row holds.
RowTable Comments(const ServerView& view) {
  constexpr std::size_t kPiece = 4000;
  RowTable table{{{"id", kInt}, {"colid", kSmall}, {"text", Varchar(kPiece)}}, {}};
  for (const auto& [lower, procedure] : view.catalogue.Procedures()) {
    std::string_view rest = procedure.text;
    for (std::int64_t piece = 1; !rest.empty(); ++piece) {
      const std::string_view text = FirstCharacters(rest, kPiece);
      table.rows.push_back({procedure.id, piece, std::string(text)});
      rest.remove_prefix(text.size());
    }
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
    for (const Column& column : object->columns) {
      const ColumnType& type = column.type;
      const std::int64_t length = type.base == Type::Varchar ? type.length
                                  : IsExact(type)            ? PrecisionOf(type)
                                                             : 8;
      table.rows.push_back({column.name, object->id, std::int64_t{column.ordinal},
                            std::int64_t{TypeNumber(type.base)}, length, length, std::int64_t{ScaleOf(type)},
                            std::int64_t{column.nullable}});
    }
  }
  return table;
}

RowTable Devices(const ServerView& view) {
  RowTable table{{{"name", kName},
                  {"size", kInt},
                  {"low", kInt},
                  {"high", kInt},
                  {"status", kSmall},
                  {"cntrltype", kSmall},
                  {"phyname", Varchar(260)}},
                 {}};
  constexpr std::int64_t kBackupDevice = 16;
  constexpr std::int64_t kDisk = 2;
  for (const Device& device : view.server.Devices().All()) {
    table.rows.push_back(
        {device.name, std::int64_t{0}, std::int64_t{0}, std::int64_t{0}, kBackupDevice, kDisk, device.file});
  }
  return table;
}

struct Entry {
  std::string_view name;
  bool ofServer;
  RowTable (*make)(const ServerView&);
};
constexpr Entry kTables[] = {{"sysdatabases", true, Databases}, {"syslogins", true, Logins},
                             {"sysprocesses", true, Processes}, {"sysdevices", true, Devices},
                             {"sysusers", false, Users},        {"sysobjects", false, Objects},
                             {"syscomments", false, Comments},  {"syscolumns", false, Columns}};

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
