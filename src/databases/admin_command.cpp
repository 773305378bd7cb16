#include "databases/admin_command.h"

#include <fmt/format.h>

#include <fstream>
#include <string>
#include <vector>

#include "data/sql_text.h"
#include "databases/attempts.h"
#include "databases/company_upgrade.h"
#include "databases/config_upgrade.h"
#include "databases/version.h"
#include "databases/version_check.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

std::vector<std::string> DatabasesToUpgrade(data::Connection& master, std::string_view name) {
  const std::string clause =
      toolkit::IsBlank(name) ? " and Name Like 'Korvel%'" : fmt::format(" and Name={}", data::Quoted(name));
  std::vector<std::string> names;
  auto rows = master.Query("Select Name from sysdatabases where Name <> ''" + clause);
  for (; !rows.Eof(); rows.MoveNext()) names.emplace_back(rows.Text("Name"));
  return names;
}

void UpgradeDatabase(const session::Context& context, const std::string& database, UpgradeRun& run) {
  session::ConnectionPtr connection;
  if (!session::OpenSessionDatabase(context, connection, database)) return;
  if (toolkit::Lower(database).ends_with("config")) {
    ActDBaseExecutaConfig(context, *connection, run);
  } else if (DatabaseVersion(*connection) != SchemaVersion()) {
    session::FechaConection(connection);  // a read-only database changes its state only when nobody is in it
    ActDBaseExecuta(context, database, run);
  }
}

bool ActDb(const session::Context& context, const session::AdminCommand& command) {
  session::TakeLogin(command, context.session);
  std::vector<std::string> databases;
  const bool listed = AttemptOn(context, "master", [&](data::Connection& master) {
    databases = DatabasesToUpgrade(master, command.database);
  });
  UpgradeRun run;
  for (const std::string& database : databases) UpgradeDatabase(context, database, run);
  return listed;
}

}  // namespace

std::filesystem::path ActChkFile(const std::filesystem::path& programFile) {
  const VersionNumbers version = ParsedVersion(ProgramVersion());
  return programFile.parent_path() / fmt::format("{}{:02}{:02}{:03}.txt", programFile.stem().string(),
                                                 version[0], version[1], version[2]);
}

bool RunAdminCommand(const session::Context& context, const session::AdminCommand& command,
                     const std::filesystem::path& programFile) {
  if (command.command == "ACT_DB") return ActDb(context, command);
  if (command.command != "ACT_CHK") return false;
  return std::ofstream(ActChkFile(programFile), std::ios::trunc).is_open();
}

}  // namespace korvel::databases
