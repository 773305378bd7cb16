#include "data/embedded/server_facts.h"

#include <algorithm>

#include "data/embedded/roles.h"
#include "data/embedded/session.h"

namespace korvel::data::embedded {
namespace {

struct Asked {
  Session& session;
  std::string_view first;
  std::string_view second;
};

OwnedStored User(const Asked& asked) {
  return asked.session.Now().user;
}

OwnedStored Host(const Asked& asked) {
  return asked.session.Processes().Find(asked.session.Processes().Spid())->host;
}

OwnedStored Program(const Asked& asked) {
  return asked.session.Processes().Find(asked.session.Processes().Spid())->program;
}

OwnedStored Spid(const Asked& asked) {
  return std::int64_t{asked.session.Processes().Spid()};
}

OwnedStored Version(const Asked& asked) {
  return "Korvel - " + asked.session.Host().Version();
}

/// A sysadmin is a member of every role.
OwnedStored Membership(unsigned roles, unsigned all, const Role* role) {
  if (role == nullptr) return Null{};
  return std::int64_t{(roles & (all | role->bit)) != 0};
}

/// The owner of the server's folder is a member by his group, and not on the list himself.
OwnedStored ServerRoleMember(const Asked& asked) {
  const Role* role = FindRole(ServerRoles(), asked.first);
  if (asked.second.empty() || SameName(asked.second, asked.session.Host().Login().name)) {
    return Membership(asked.session.Now().serverRoles, server_role::kSysAdmin, role);
  }
  const auto login = asked.session.Host().Logins().Find(asked.second);
  return login ? Membership(login->roles, server_role::kSysAdmin, role) : OwnedStored(Null{});
}

OwnedStored Member(const Asked& asked) {
  const Access& access = asked.session.Now();
  const unsigned roles = access.databaseRoles | (access.owner ? database_role::kOwner : 0);
  return Membership(roles, 0, FindRole(DatabaseRoles(), asked.first));
}

OwnedStored DatabaseProperty(const Asked& asked) {
  const auto entry = asked.session.Host().FindDatabase(asked.first);
  if (!entry) return Null{};
  struct Line {
    std::string_view name;
    std::string_view value;
  };
  const Line lines[] = {
      {"Updateability", entry->readOnly ? "READ_ONLY" : "READ_WRITE"},
      {"UserAccess", entry->singleUser ? "SINGLE_USER" : "MULTI_USER"},
      {"Status", "ONLINE"},
      {"Recovery", "SIMPLE"},
      {"Version", "611"},
      {"Collation", "Latin1_General_CI_AS"},
      {"IsAutoClose", "0"},
      {"IsAutoShrink", "0"},
  };
  for (const Line& line : lines) {
    if (SameName(line.name, asked.second)) return std::string(line.value);
  }
  return Null{};
}

struct Fact {
  std::string_view name;
  OwnedStored (*tell)(const Asked&);
};
constexpr Fact kFacts[] = {{"user_name", User},    {"host_name", Host},
                           {"app_name", Program},  {"@@spid", Spid},
                           {"@@version", Version}, {"is_srvrolemember", ServerRoleMember},
                           {"is_member", Member},  {"databasepropertyex", DatabaseProperty}};

}  // namespace

OwnedStored ServerFact(Session& session, std::string_view fact, std::string_view first,
                       std::string_view second) {
  const auto* found =
      std::find_if(std::begin(kFacts), std::end(kFacts), [&](const Fact& line) { return line.name == fact; });
  return found == std::end(kFacts) ? OwnedStored(Null{}) : found->tell({session, first, second});
}

}  // namespace korvel::data::embedded
