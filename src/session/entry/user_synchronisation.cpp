#include "session/entry/user_synchronisation.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "data/collation.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::session {
namespace {

/// Logins as the server compares them: one in other letters is the same.
class LoginSet {
 public:
  explicit LoginSet(const std::vector<std::string>& logins) {
    for (const std::string& login : logins) Add(login);
  }
  bool Has(std::string_view login) const { return keys_.contains(data::CollationKey(login)); }
  /// False when it was there.
  bool Add(std::string_view login) { return keys_.insert(data::CollationKey(login)).second; }

 private:
  std::unordered_set<std::string> keys_;
};

struct NewUser {
  std::string login;
  bool adminTasks = false;
  bool allDatabases = true;
  std::vector<std::string> databases = {};
};

struct Changes {
  std::vector<std::string> gone;
  std::vector<NewUser> added;
};

std::vector<std::string> FirstColumn(data::Connection& connection, std::string_view statement) {
  std::vector<std::string> texts;
  for (data::Recordset rows = connection.Query(statement); !rows.Eof(); rows.MoveNext())
    texts.emplace_back(rows.Text(0));
  return texts;
}

/// The machine's administrators as a group are no user of the system.
bool IsAdministrators(std::string_view login) {
  return toolkit::Lower(toolkit::Trim(login)) == "builtin\\administrators";
}

std::vector<std::string> ServerLogins(data::Connection& config) {
  config.Execute("Use Master");
  auto logins = FirstColumn(config, "Select Name from SysLogins");
  std::erase_if(logins, IsAdministrators);
  return logins;
}

/// What older programs kept of administrators and companies.
class OlderTables {
 public:
  explicit OlderTables(data::Connection& config) : admins_(FirstColumn(config, "Select Uid from Admins")) {
    auto rows = config.Query("Select Login, DBName from UsersEmpresas");
    for (; !rows.Eof(); rows.MoveNext())
      databases_[data::CollationKey(rows.Text("Login"))].emplace_back(rows.Text("DBName"));
  }

  NewUser UserFor(const std::string& login) const {
    if (data::SameText(login, "sa") || admins_.Has(login)) return {login, true, true};
    const auto found = databases_.find(data::CollationKey(login));
    return found == databases_.end() ? NewUser{login} : NewUser{login, false, false, found->second};
  }

 private:
  LoginSet admins_;
  std::unordered_map<std::string, std::vector<std::string>> databases_;
};

std::vector<NewUser> SqlUsers(data::Connection& config, const std::vector<std::string>& logins) {
  const OlderTables older(config);
  std::vector<NewUser> users;
  for (const std::string& login : logins) users.push_back(older.UserFor(login));
  return users;
}

std::vector<NewUser> WindowsUsers(data::Connection& config) {
  std::vector<NewUser> users;
  auto rows = config.Query(
      "select loginname, isntname , isntgroup, hasaccess, sysadmin from master.dbo.syslogins Where "
      "(isntgroup=1 or isntname=1)");
  for (; !rows.Eof(); rows.MoveNext())
    users.push_back({std::string(rows.Text("loginname")), rows.Integer("sysadmin") == 1, true});
  return users;
}

Changes FindChanges(data::Connection& config, bool windows) {
  const auto logins = ServerLogins(config);
  config.Execute("Use KorvelConfig");
  const auto known = FirstColumn(config, "Select LoginName from UserManagement");
  Changes changes{known, windows ? WindowsUsers(config) : SqlUsers(config, logins)};
  // A login of the other kind of authentication is still one of the server's: it stays.
  std::erase_if(changes.gone,
                [there = LoginSet(logins)](const std::string& login) { return there.Has(login); });
  std::erase_if(changes.added, [seen = LoginSet(known)](const NewUser& user) mutable {
    return IsAdministrators(user.login) || !seen.Add(user.login);
  });
  return changes;
}

/// Another process may have added the same row a moment ago.
void Insert(data::Connection& config, std::string_view statement,
            std::initializer_list<data::Parameter> values) {
  try {
    config.Execute(statement, values);
  } catch (const data::Error& error) {
    if (error.Kind() != data::Failure::Integrity) throw;
  }
}

void Add(data::Connection& config, const NewUser& user) {
  Insert(config, "Insert Into UserManagement (LoginName, AdminTasks, AllDatabases) Values (?,?,?) ",
         {user.login, user.adminTasks, user.allDatabases});
  for (const std::string& database : user.databases)
    Insert(config, "Insert Into UserDatabases (LoginName, Db_Name) Values (?,?)", {user.login, database});
}

void Remove(data::Connection& config, const std::string& login) {
  config.Execute("Delete from UserManagement Where LoginName=?", {login});
  config.Execute("Delete from UserDatabases Where LoginName=?", {login});
}

void Apply(data::Connection& config, const Changes& changes) {
  if (changes.gone.empty() && changes.added.empty()) return;
  data::Transaction transaction(config);
  for (const std::string& login : changes.gone) Remove(config, login);
  for (const NewUser& user : changes.added) Add(config, user);
  transaction.Commit();
}

}  // namespace

bool SynchroniseUsers(const Context& context) {
  ConnectionPtr config;
  if (!AbreConfig(context, config)) {
    ShowConnectionError(context);
    return false;
  }
  const Changes changes = FindChanges(*config, context.session.gAutenticacaoWindows);
  try {
    Apply(*config, changes);
  } catch (const data::Error& error) {
    // Whoever may write there will: it is no reason to keep this user out.
    if (error.Kind() != data::Failure::Permission) throw;
  }
  return true;
}

}  // namespace korvel::session
