#pragma once

#include <span>
#include <string_view>

namespace korvel::data::embedded {

/// Fixed roles are the only ones: a member has the role's bit.
namespace server_role {
constexpr unsigned kSysAdmin = 1;
constexpr unsigned kSecurityAdmin = 2;
constexpr unsigned kServerAdmin = 4;
constexpr unsigned kSetupAdmin = 8;
constexpr unsigned kProcessAdmin = 16;
constexpr unsigned kDiskAdmin = 32;
constexpr unsigned kDbCreator = 64;
constexpr unsigned kBulkAdmin = 128;
}  // namespace server_role

namespace database_role {
constexpr unsigned kOwner = 1;
constexpr unsigned kAccessAdmin = 2;
constexpr unsigned kSecurityAdmin = 4;
constexpr unsigned kDdlAdmin = 8;
constexpr unsigned kBackupOperator = 16;
constexpr unsigned kDataReader = 32;
constexpr unsigned kDataWriter = 64;
constexpr unsigned kDenyDataReader = 128;
constexpr unsigned kDenyDataWriter = 256;
}  // namespace database_role

struct Role {
  std::string_view name;
  unsigned bit;
  int number;  // as sysusers gives a database role
};

std::span<const Role> ServerRoles();
std::span<const Role> DatabaseRoles();
/// By name, whatever its case and blanks behind it; nullptr for none.
const Role* FindRole(std::span<const Role> roles, std::string_view name);

}  // namespace korvel::data::embedded
