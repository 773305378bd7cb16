#include <algorithm>
#include <array>

#include "databases/logins.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

constexpr std::array<std::string_view, 2> kAdministratorGroups{"builtin\\administrators",
                                                               "builtin\\administradores"};

bool IsAdministratorGroup(std::string_view login) {
  return std::ranges::find(kAdministratorGroups, toolkit::Lower(toolkit::Trim(login))) !=
         kAdministratorGroups.end();
}

void MarkAllDatabases(data::Connection& master, std::vector<LoginLine>& lines) {
  auto users =
      master.Query("Select UserManagement.LoginName, UserManagement.AllDatabases from UserManagement ");
  for (; !users.Eof(); users.MoveNext()) {
    const auto line = std::ranges::find_if(lines, [&](const LoginLine& candidate) {
      return toolkit::SameIgnoringCase(candidate.login, users.Text("LoginName"));
    });
    if (line != lines.end()) line->allDatabases = users.Integer("AllDatabases") == 1;
  }
}

}  // namespace

std::vector<LoginLine> LoadUsersToListview(data::Connection& master) {
  std::vector<LoginLine> lines;
  {
    auto logins = master.Query("Select Name from Master..SysLogins");
    for (; !logins.Eof(); logins.MoveNext()) {
      if (!IsAdministratorGroup(logins.Text("Name"))) lines.push_back({std::string(logins.Text("Name"))});
    }
  }
  master.Execute("use Korvelconfig");
  MarkAllDatabases(master, lines);
  master.Execute("use master");
  return lines;
}

std::vector<GroupLine> OldLoadUsersToListview(data::Connection& master) {
  std::vector<GroupLine> lines;
  auto logins = master.Query("Select Name as LoginName, IsNtGroup from SysLogins Order By Name");
  for (; !logins.Eof(); logins.MoveNext()) {
    lines.push_back({std::string(logins.Text("LoginName")), logins.Integer("IsNtGroup") == 1});
  }
  return lines;
}

}  // namespace korvel::databases
