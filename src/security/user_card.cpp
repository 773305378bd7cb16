#include "security/user_card.h"

#include <array>
#include <utility>

#include "data/collated_map.h"
#include "databases/companies.h"
#include "databases/logins.h"
#include "session/connections.h"
#include "toolkit/text.h"
#include "toolkit/utf8.h"

namespace korvel::security {

namespace {

using session::Context;
using toolkit::IsBlank;

/// `Admins.Uid` holds no longer logins, and older programs knew none.
constexpr std::size_t kOldLoginLength = 20;

bool Refuse(const Context& context, std::string_view text) {
  context.dialogs.Message(toolkit::Icon::Warning, text);
  return false;
}

/// What a login sees by now.
struct StoredPlace {
  bool admin = false;
  bool allCompanies = false;
  data::CollatedMap<bool> databases;
};

StoredPlace ReadPlace(data::Connection& config, std::string_view login) {
  auto rows = config.Query(
      "Select UserManagement.LoginName, UserManagement.AdminTasks, UserManagement.AllDatabases, "
      "IsNull(UserDatabases.Db_Name,'') as Db_Name from UserManagement "
      "Left Outer Join UserDatabases on UserDatabases.LoginName = UserManagement.LoginName "
      "Where UserManagement.LoginName=?",
      {login});
  StoredPlace place;
  for (; !rows.Eof(); rows.MoveNext()) {
    place.admin = rows.Integer("AdminTasks") == 1;
    place.allCompanies = rows.Integer("AllDatabases") == 1;
    place.databases[rows.Text("Db_Name")] = true;
  }
  return place;
}

bool Sees(const StoredPlace& place, std::string_view code) {
  return place.allCompanies || place.databases.Find(databases::CompanyDatabase(code)) != nullptr;
}

bool Sees(const UserCard& card, const UserCompany& company) {
  return card.allCompanies || company.ticked;
}

/// The companies that the card takes away.
std::vector<std::string> LostCompanies(data::Connection& config, const UserCard& card) {
  const StoredPlace place = ReadPlace(config, card.login);
  std::vector<std::string> lost;
  for (const UserCompany& company : card.companies) {
    if (!Sees(card, company) && Sees(place, company.code)) lost.push_back(company.code);
  }
  return lost;
}

/// One row for each company that is named for the login; none when it sees them all.
void InsertDatabases(data::Connection& config, std::string_view table,
                     const std::array<std::string_view, 2>& columns, const UserCard& card) {
  if (card.allCompanies) return;
  const auto batch = config.OpenBatch(table, columns);
  for (const UserCompany& company : card.companies) {
    if (!company.ticked) continue;
    const std::string database = databases::CompanyDatabase(company.code);
    batch->Add(std::array<data::Parameter, 2>{card.login, database});
  }
  batch->Finish();
}

void ReplacePlace(data::Connection& config, const UserCard& card) {
  config.Execute("Delete from UserManagement Where LoginName=?", {card.login});
  config.Execute("Delete from UserDatabases Where LoginName=?", {card.login});
  config.Execute("Insert Into UserManagement (LoginName, AdminTasks, AllDatabases) Values (?,?,?)",
                 {card.login, card.admin, card.allCompanies});
  InsertDatabases(config, "UserDatabases", {"LoginName", "Db_Name"}, card);
}

bool IsOldAdmin(data::Connection& config, std::string_view login) {
  return !config.Query("select uid from admins where uid=?", {login}).Eof();
}

/// The tables of older programs, which the next synchronisation of logins reads.
void ReplaceOldPlace(data::Connection& config, const UserCard& card) {
  config.Execute("delete from usersempresas where login=?", {card.login});
  InsertDatabases(config, "UsersEmpresas", {"Login", "DBName"}, card);
  if (!card.admin) {
    config.Execute("delete from admins where uid=?", {card.login});
  } else if (toolkit::CharacterCount(card.login) <= kOldLoginLength && !IsOldAdmin(config, card.login)) {
    config.Execute("insert into admins (uid) values (?)", {card.login});
  }
}

void SaveRows(data::Connection& config, const UserCard& card, const std::vector<std::string>& lost) {
  data::Transaction transaction(config);
  ReplacePlace(config, card);
  ReplaceOldPlace(config, card);
  for (const std::string& code : lost)
    config.Execute("delete from acessos where empresa=? and utilizador=?", {code, card.login});
  transaction.Commit();
}

/// The login's users in the databases. Each is tried whatever became of the others: one may be there already, and a
/// company's database may have gone.
void PlaceUsers(const Context& context, const UserCard& card, const std::vector<std::string>& lost) {
  databases::AddOwnerToDB(context, "master", card.login);
  databases::AddOwnerToDB(context, session::kConfigDatabase, card.login);
  for (const UserCompany& company : card.companies) {
    if (!Sees(card, company)) continue;
    databases::AddOwnerToDB(context, databases::CompanyDatabase(company.code), card.login);
  }
  for (const std::string& code : lost)
    databases::DropUserFromDB(context, databases::CompanyDatabase(code), card.login);
}

void Save(const Context& context, session::ConnectionPtr config, const UserCard& card) {
  const std::vector<std::string> lost = LostCompanies(*config, card);
  SaveRows(*config, card, lost);
  session::FechaConection(config);
  PlaceUsers(context, card, lost);
}

bool IsThere(const Context& context, std::string_view login) {
  session::ConnectionPtr master;
  return session::OpenSessionDatabase(context, master, "master") &&
         !master->Query("select loginname from syslogins Where Loginname=?", {login}).Eof();
}

/// Gives the login its new password if one was typed.
bool TakePassword(const Context& context, const UserCard& card) {
  if (card.windowsAccount || card.password.empty()) return true;
  return databases::ChangePassword(context, "", card.password, card.login);
}

}  // namespace

UserCard NewUserCard(data::Connection& config) {
  UserCard card;
  auto rows = config.Query("Select Codigo, Descricao from Empresas Order By Codigo");
  for (; !rows.Eof(); rows.MoveNext())
    card.companies.push_back({std::string(rows.Text("Codigo")), std::string(rows.Text("Descricao"))});
  return card;
}

std::optional<UserCard> LoadUserCard(data::Connection& config, data::Connection& master,
                                     std::string_view login) {
  UserCard card = NewUserCard(config);
  {
    const auto account = master.Query(
        "select loginname, isntname , isntgroup, hasaccess, sysadmin from syslogins Where Loginname=?",
        {login});
    if (account.Eof()) return std::nullopt;
    card.login = account.Text("loginname");
    card.windowsAccount = account.Integer("isntname") == 1 || account.Integer("isntgroup") == 1;
  }
  const StoredPlace place = ReadPlace(config, card.login);
  card.admin = place.admin;
  card.allCompanies = place.allCompanies;
  for (UserCompany& company : card.companies)
    company.ticked = place.databases.Find(databases::CompanyDatabase(company.code)) != nullptr;
  return card;
}

bool CreateFromCard(const Context& context, const UserCard& card) {
  if (IsBlank(card.login) || IsBlank(card.password))
    return Refuse(context, "Os Campos de Login e Password são obrigatórios!");
  if (card.password != card.confirmation) return Refuse(context, "As passwords não condizem !");
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) return false;
  const bool made = databases::IsLoginName(card.login) &&
                    databases::CreateLogin(context, card.login, card.password, card.admin);
  if (!made) return Refuse(context, "Não foi possivel criar o Utilizador");
  Save(context, std::move(config), card);
  return true;
}

bool ChangeFromCard(const Context& context, const UserCard& card) {
  if (IsBlank(card.login)) return Refuse(context, "Os Campos de Login e Password são obrigatórios!");
  if (card.password != card.confirmation) return Refuse(context, "As Passwords não condizem!");
  session::ConnectionPtr config;
  if (!session::AbreConfig(context, config)) return false;
  const bool taken =
      databases::IsLoginName(card.login) && IsThere(context, card.login) && TakePassword(context, card);
  if (!taken) return Refuse(context, "Não foi possivel alterar o Utilizador");
  Save(context, std::move(config), card);
  return true;
}

}  // namespace korvel::security
