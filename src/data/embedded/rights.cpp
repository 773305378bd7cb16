#include "data/embedded/rights.h"

#include <algorithm>
#include <type_traits>

#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/roles.h"

namespace korvel::data::embedded {
namespace {

constexpr const char* kObjectText = "A permissão {2} foi negada no objecto '{0}', base de dados '{1}'";
constexpr const char* kStatementText = "A permissão {0} foi negada na base de dados '{1}'";
constexpr const char* kAlterText = "O utilizador não tem permissão para alterar o objecto '{0}'";
constexpr const char* kActionText = "O utilizador não tem permissão para executar esta acção";
constexpr const char* kBackUpText = "A permissão {2} DATABASE foi negada na base de dados '{0}'";
constexpr const char* kDropText =
    "Não é possível eliminar a base de dados '{0}', porque não existe ou não há permissão";
constexpr const char* kStateText = "O utilizador não tem permissão para alterar a base de dados '{0}'";

/// A right belongs to sysadmin, to the owner and to the roles of its line; a denying role takes it from all but the
/// first two.
struct Rule {
  Right right;
  unsigned serverRoles;
  unsigned databaseRoles;  // 0: the owner alone
  unsigned denied;
  bool ofServer;  // the owner of a database does not have it
  bool writes;    // changes the current database
  Code code;
  const char* text;  // {0} object, {1} database, {2} verb
  const char* verb;
};

namespace dbr = database_role;
namespace svr = server_role;

constexpr Rule kRules[] = {
    {Right::Select, 0, dbr::kOwner | dbr::kDataReader, dbr::kDenyDataReader, false, false, Code::ObjectRight,
     kObjectText, "SELECT"},
    {Right::Write, 0, dbr::kOwner | dbr::kDataWriter, dbr::kDenyDataWriter, false, true, Code::ObjectRight,
     kObjectText, "INSERT, UPDATE, DELETE"},
    {Right::Execute, 0, dbr::kOwner, 0, false, false, Code::ObjectRight, kObjectText, "EXECUTE"},
    {Right::Create, 0, dbr::kOwner | dbr::kDdlAdmin, 0, false, true, Code::StatementRight, kStatementText,
     ""},
    {Right::Alter, 0, dbr::kOwner | dbr::kDdlAdmin, 0, false, true, Code::NoRightToObject, kAlterText, ""},
    {Right::ManageUsers, 0, dbr::kOwner | dbr::kAccessAdmin, 0, false, true, Code::NoRight, kActionText, ""},
    {Right::ManageRoles, 0, dbr::kOwner, 0, false, true, Code::NoRight, kActionText, ""},
    {Right::OwnDatabase, 0, 0, 0, false, true, Code::NoRight, kActionText, ""},
    {Right::BackUp, 0, dbr::kOwner | dbr::kBackupOperator, 0, false, false, Code::StatementRight, kBackUpText,
     "BACKUP"},
    {Right::Restore, svr::kDbCreator, 0, 0, false, false, Code::StatementRight, kBackUpText, "RESTORE"},
    {Right::DropDatabase, svr::kDbCreator, dbr::kOwner, 0, false, false, Code::NoObjectToDrop, kDropText, ""},
    {Right::AlterDatabase, svr::kDbCreator, dbr::kOwner, 0, false, false, Code::NoRightToAlterDatabase,
     kStateText, ""},
    {Right::CreateDatabase, svr::kDbCreator, 0, 0, true, false, Code::StatementRight, kStatementText, ""},
    {Right::ManageLogins, svr::kSecurityAdmin, 0, 0, true, false, Code::NoRight, kActionText, ""},
    {Right::ManageDevices, svr::kDiskAdmin, 0, 0, true, false, Code::NoRight, kActionText, ""},
    {Right::Configure, svr::kServerAdmin, 0, 0, true, false, Code::NoRight, kActionText, ""},
    {Right::EndProcesses, svr::kProcessAdmin, 0, 0, true, false, Code::NoRightToKill, kActionText, ""},
};

bool Allows(const Rule& rule, const Access& access) {
  if ((access.serverRoles & (svr::kSysAdmin | rule.serverRoles)) != 0) return true;
  if (rule.ofServer) return false;
  if (access.owner) return true;
  return (access.databaseRoles & rule.databaseRoles) != 0 && (access.databaseRoles & rule.denied) == 0;
}

/// Refusals are of one kind for the program, whatever the server's number.
Error Refusal(const Rule& rule, std::string_view object, std::string_view database) {
  return Error(Failure::Permission, static_cast<int>(rule.code), "42000",
               fmt::format(fmt::runtime(rule.text), object, database, rule.verb));
}

}  // namespace

void Require(Right right, const Access& access, std::string_view object, std::string_view database) {
  const auto* rule = std::find_if(std::begin(kRules), std::end(kRules),
                                  [right](const Rule& line) { return line.right == right; });
  if (!Allows(*rule, access)) throw Refusal(*rule, object, database);
  if (rule->writes && access.readOnly) {
    throw Failed(Code::ReadOnly, fmt::format("A base de dados '{}' só pode ser lida", database));
  }
}

namespace {

SchemaNeed Creates(const char* statement) {
  return {Right::Create, statement, {}};
}

SchemaNeed Changes(const ObjectName& object) {
  return {Right::Alter, object.name, object};
}

}  // namespace

SchemaNeed NeedOf(const Statement& statement) {
  return std::visit(
      [](const auto& change) -> SchemaNeed {
        using Change = std::decay_t<decltype(change)>;
        if constexpr (std::is_same_v<Change, CreateTable>) return Creates("CREATE TABLE");
        if constexpr (std::is_same_v<Change, CreateView>) return Creates("CREATE VIEW");
        if constexpr (std::is_same_v<Change, CreateProcedure>) {
          return change.alters ? Changes(change.procedure) : Creates("CREATE PROCEDURE");
        }
        if constexpr (std::is_same_v<Change, DropObject>) return Changes(change.name);
        if constexpr (std::is_same_v<Change, DropProcedure>) return Changes(change.procedures.front());
        if constexpr (requires { change.table; }) return Changes(change.table);
        return {};
      },
      statement);
}

}  // namespace korvel::data::embedded
