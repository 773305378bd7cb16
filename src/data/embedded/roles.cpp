#include "data/embedded/roles.h"

#include <algorithm>

#include "data/embedded/types.h"

namespace korvel::data::embedded {
namespace {

constexpr Role kServerRoles[] = {
    {"sysadmin", server_role::kSysAdmin, 0},         {"securityadmin", server_role::kSecurityAdmin, 0},
    {"serveradmin", server_role::kServerAdmin, 0},   {"setupadmin", server_role::kSetupAdmin, 0},
    {"processadmin", server_role::kProcessAdmin, 0}, {"diskadmin", server_role::kDiskAdmin, 0},
    {"dbcreator", server_role::kDbCreator, 0},       {"bulkadmin", server_role::kBulkAdmin, 0},
};

constexpr Role kDatabaseRoles[] = {
    {"db_owner", database_role::kOwner, 16384},
    {"db_accessadmin", database_role::kAccessAdmin, 16385},
    {"db_securityadmin", database_role::kSecurityAdmin, 16386},
    {"db_ddladmin", database_role::kDdlAdmin, 16387},
    {"db_backupoperator", database_role::kBackupOperator, 16389},
    {"db_datareader", database_role::kDataReader, 16390},
    {"db_datawriter", database_role::kDataWriter, 16391},
    {"db_denydatareader", database_role::kDenyDataReader, 16392},
    {"db_denydatawriter", database_role::kDenyDataWriter, 16393},
};

}  // namespace

std::span<const Role> ServerRoles() {
  return kServerRoles;
}

std::span<const Role> DatabaseRoles() {
  return kDatabaseRoles;
}

const Role* FindRole(std::span<const Role> roles, std::string_view name) {
  name = name.substr(0, name.find_last_not_of(' ') + 1);
  const auto found =
      std::find_if(roles.begin(), roles.end(), [&](const Role& role) { return SameName(role.name, name); });
  return found == roles.end() ? nullptr : &*found;
}

}  // namespace korvel::data::embedded
