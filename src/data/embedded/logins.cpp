#include "data/embedded/logins.h"

#include <algorithm>
#include <random>

#include <fmt/format.h>

#include "data/embedded/catalogue.h"
#include "data/embedded/errors.h"
#include "data/embedded/password.h"
#include "data/embedded/roles.h"
#include "data/embedded/text_functions.h"

namespace korvel::data::embedded {
namespace {

constexpr const char* kTable = R"(
CREATE TABLE "$logins" (sid TEXT NOT NULL PRIMARY KEY, name TEXT NOT NULL COLLATE KORVEL UNIQUE,
  password TEXT NOT NULL, database TEXT NOT NULL, roles INTEGER NOT NULL, windows INTEGER NOT NULL,
  is_group INTEGER NOT NULL) WITHOUT ROWID;
)";
constexpr const char* kSelect =
    R"(SELECT sid, name, password, database, roles, windows, is_group FROM "$logins")";
constexpr std::string_view kMasterName = "master";
constexpr std::size_t kLongestName = 128;

std::size_t Characters(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

LoginEntry Read(const Prepared& row) {
  return {std::string(row.Text(0)),
          std::string(row.Text(1)),
          std::string(row.Text(2)),
          std::string(row.Text(3)),
          static_cast<unsigned>(row.Integer(4)),
          row.Integer(5) != 0,
          row.Integer(6) != 0};
}

std::optional<LoginEntry> First(Prepared& rows, std::string_view key) {
  rows.Bind(1, key);
  if (!rows.Step()) return std::nullopt;
  return Read(rows);
}

/// "MACHINE\user", each part there.
bool IsAccountName(std::string_view name) {
  const std::size_t slash = name.find('\\');
  return slash != std::string_view::npos && slash > 0 && slash + 1 < name.size() &&
         name.find('\\', slash + 1) == std::string_view::npos;
}

}  // namespace

bool LoginEntry::IsSysAdmin() const {
  return Is(server_role::kSysAdmin);
}

void RequirePrincipalName(std::string_view name) {
  const bool hostile = std::any_of(name.begin(), name.end(), [](char c) {
    return (c >= 0 && c < ' ') || c == '\x7F' || std::string_view("'\"[];").find(c) != std::string_view::npos;
  });
  const bool blank = name.find_first_not_of(' ') == std::string_view::npos;
  if (!hostile && !blank && Characters(name) <= kLongestName) return;
  throw Failed(Code::BadPrincipalName, "O nome dado não é válido, porque contém caracteres inválidos");
}

std::string MakeSid() {
  std::random_device random;
  std::string sid = "0x";
  for (int i = 0; i < 4; ++i) sid += fmt::format("{:08X}", random());
  return sid;
}

void LoginList::Create(Store& master) {
  master.Run(kTable);
  LoginList logins(master);
  logins.Insert({"0x01", std::string(kAdministrator), HashPassword(kAdministrator, ""),
                 std::string(kMasterName), server_role::kSysAdmin, false, false});
  logins.Insert({"0x01020000000000052000000020020000", std::string(kOwners), "", std::string(kMasterName),
                 server_role::kSysAdmin, true, true});
}

std::vector<LoginEntry> LoginList::All() {
  std::vector<LoginEntry> logins;
  Prepared rows = master_.Prepare(std::string(kSelect) + " ORDER BY name");
  while (rows.Step()) logins.push_back(Read(rows));
  return logins;
}

std::optional<LoginEntry> LoginList::Find(std::string_view name) {
  Prepared rows = master_.Prepare(std::string(kSelect) + " WHERE name=?1");
  return First(rows, name);
}

std::optional<LoginEntry> LoginList::FindSid(std::string_view sid) {
  Prepared rows = master_.Prepare(std::string(kSelect) + " WHERE sid=?1");
  return First(rows, sid);
}

LoginEntry LoginList::Get(std::string_view name) {
  if (auto login = Find(name)) return std::move(*login);
  throw Failed(Code::NoLogin, fmt::format("'{}' não é um início de sessão deste servidor", name));
}

void LoginList::Add(std::string_view name, std::string_view password, std::string_view database) {
  RequirePrincipalName(name);
  if (name.find('\\') != std::string_view::npos) {
    throw Failed(Code::BadPrincipalName, fmt::format("'{}' não é um nome válido", name));
  }
  Insert(
      {MakeSid(), std::string(name), HashPassword(name, password), std::string(database), 0, false, false});
}

void LoginList::AddWindows(std::string_view name) {
  RequirePrincipalName(name);
  if (!IsAccountName(name)) {
    throw Failed(
        Code::BadAccountName,
        fmt::format("'{}' não é um nome válido de uma conta; deve ser <máquina>\\<utilizador>", name));
  }
  Insert({MakeSid(), std::string(name), "", std::string(kMasterName), 0, true, false});
}

void LoginList::Insert(const LoginEntry& login) {
  AtomicWrite write(master_);
  if (Find(login.name)) {
    throw Failed(Code::LoginExists, fmt::format("O início de sessão '{}' já existe", login.name));
  }
  Prepared insert = master_.Prepare(R"(INSERT INTO "$logins" VALUES (?1,?2,?3,?4,?5,?6,?7))");
  int place = 0;
  for (const std::string* text : {&login.sid, &login.name, &login.password, &login.database})
    insert.Bind(++place, std::string_view(*text));
  for (const std::int64_t number :
       {std::int64_t{login.roles}, std::int64_t{login.windows}, std::int64_t{login.group}})
    insert.Bind(++place, number);
  insert.Run();
  Catalogue::RaiseVersion(master_);
  write.Keep();
}

void LoginList::SetPassword(const LoginEntry& login, std::string_view password) {
  const std::string kept = HashPassword(login.name, password);
  AtomicWrite write(master_);
  Prepared update = master_.Prepare(R"(UPDATE "$logins" SET password=?1 WHERE sid=?2)");
  update.Bind(1, std::string_view(kept));
  update.Bind(2, std::string_view(login.sid));
  update.Run();
  Catalogue::RaiseVersion(master_);
  write.Keep();
}

void LoginList::SetRole(const LoginEntry& login, unsigned role, bool member) {
  AtomicWrite write(master_);
  Prepared update = master_.Prepare(member ? R"(UPDATE "$logins" SET roles=roles|?1 WHERE sid=?2)"
                                           : R"(UPDATE "$logins" SET roles=roles&~?1 WHERE sid=?2)");
  update.Bind(1, std::int64_t{role});
  update.Bind(2, std::string_view(login.sid));
  update.Run();
  Catalogue::RaiseVersion(master_);
  write.Keep();
}

void LoginList::Remove(const LoginEntry& login) {
  AtomicWrite write(master_);
  Prepared remove = master_.Prepare(R"(DELETE FROM "$logins" WHERE sid=?1)");
  remove.Bind(1, std::string_view(login.sid));
  remove.Run();
  Catalogue::RaiseVersion(master_);
  write.Keep();
}

}  // namespace korvel::data::embedded
