#include "data/embedded/users.h"

#include <fmt/format.h>

#include "data/embedded/catalogue.h"
#include "data/embedded/errors.h"
#include "data/embedded/roles.h"
#include "data/embedded/types.h"

namespace korvel::data::embedded {
namespace {

/// Numbers below 5 are the server's own users.
constexpr const char* kTable = R"(
CREATE TABLE "$users" (number INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL COLLATE KORVEL UNIQUE,
  sid TEXT NOT NULL UNIQUE, roles INTEGER NOT NULL);
INSERT INTO sqlite_sequence (name, seq) VALUES ('$users', 4);
)";
constexpr const char* kSelect = R"(SELECT number, name, sid, roles FROM "$users")";

UserEntry Read(const Prepared& row) {
  return {row.Integer(0), std::string(row.Text(1)), std::string(row.Text(2)),
          static_cast<unsigned>(row.Integer(3))};
}

std::optional<UserEntry> First(Prepared& rows, std::string_view key) {
  rows.Bind(1, key);
  if (!rows.Step()) return std::nullopt;
  return Read(rows);
}

bool IsTaken(std::string_view name) {
  return SameName(name, kOwnerUser) || SameName(name, kGuest) || SameName(name, "public") ||
         FindRole(DatabaseRoles(), name) != nullptr;
}

}  // namespace

void UserList::Create(Store& file) {
  file.Run(kTable);
}

std::vector<UserEntry> UserList::All() {
  std::vector<UserEntry> users;
  Prepared rows = file_.Prepare(std::string(kSelect) + " ORDER BY number");
  while (rows.Step()) users.push_back(Read(rows));
  return users;
}

std::optional<UserEntry> UserList::Find(std::string_view name) {
  Prepared rows = file_.Prepare(std::string(kSelect) + " WHERE name=?1");
  return First(rows, name);
}

std::optional<UserEntry> UserList::FindSid(std::string_view sid) {
  Prepared rows = file_.Prepare(std::string(kSelect) + " WHERE sid=?1");
  return First(rows, sid);
}

UserEntry UserList::Get(std::string_view name) {
  if (auto user = Find(name)) return std::move(*user);
  throw Failed(Code::NoUser, fmt::format("O utilizador '{}' não existe na base de dados corrente", name));
}

void UserList::Add(std::string_view name, const LoginEntry& login) {
  RequirePrincipalName(name);
  AtomicWrite write(file_);
  if (IsTaken(name) || Find(name)) {
    throw Failed(Code::UserExists,
                 fmt::format("O utilizador ou papel '{}' já existe na base de dados corrente", name));
  }
  if (FindSid(login.sid)) {
    throw Failed(Code::LoginHasUser,
                 fmt::format("O início de sessão '{}' já tem um utilizador com outro nome", login.name));
  }
  Prepared insert = file_.Prepare(R"(INSERT INTO "$users" (name, sid, roles) VALUES (?1, ?2, 0))");
  insert.Bind(1, name);
  insert.Bind(2, std::string_view(login.sid));
  insert.Run();
  Catalogue::RaiseVersion(file_);
  write.Keep();
}

void UserList::SetRole(const UserEntry& user, unsigned role, bool member) {
  AtomicWrite write(file_);
  Prepared update = file_.Prepare(member ? R"(UPDATE "$users" SET roles=roles|?1 WHERE number=?2)"
                                         : R"(UPDATE "$users" SET roles=roles&~?1 WHERE number=?2)");
  update.Bind(1, std::int64_t{role});
  update.Bind(2, user.number);
  update.Run();
  Catalogue::RaiseVersion(file_);
  write.Keep();
}

void UserList::Remove(const UserEntry& user) {
  AtomicWrite write(file_);
  Prepared remove = file_.Prepare(R"(DELETE FROM "$users" WHERE number=?1)");
  remove.Bind(1, user.number);
  remove.Run();
  Catalogue::RaiseVersion(file_);
  write.Keep();
}

}  // namespace korvel::data::embedded
