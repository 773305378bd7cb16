#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "data/embedded/database_changes.h"
#include "data/embedded/errors.h"
#include "data/embedded/procedures/procedure.h"

namespace korvel::data::embedded {
namespace {

constexpr std::array<std::string_view, 5> kLevels = {"60", "65", "70", "80", "90"};

/// A level changes nothing of how statements are read here; it is kept to be told again.
RowTables SetCompatibility(const Site& site) {
  const DatabaseEntry entry = site.session.GetDatabase(*site.arguments[0]);
  if (!site.arguments[1]) return {};
  site.session.RequireNoTransaction("sp_dbcmptlevel");
  site.session.RequireOver(Right::AlterDatabase, entry);
  const auto level = std::find(kLevels.begin(), kLevels.end(), *site.arguments[1]);
  if (level == kLevels.end()) {
    throw Failed(Code::BadLevel, "Os níveis de compatibilidade válidos são 60, 65, 70, 80 e 90");
  }
  site.view.server.States().SetLevel(entry.id, std::stoi(std::string(*level)));
  return {};
}

/// The server has none of the options that can be set; taking them keeps upgrades running.
RowTables Configure(const Site& site) {
  if (site.arguments[1]) site.session.Require(Right::Configure);
  return {};
}

/// An option of a database that is on in one of two states.
struct DatabaseOption {
  std::string_view name;
  DatabaseState on;
  DatabaseState off;
  bool DatabaseEntry::*state;
};
constexpr DatabaseOption kOptions[] = {
    {"read only", DatabaseState::ReadOnly, DatabaseState::ReadWrite, &DatabaseEntry::readOnly},
    {"single user", DatabaseState::SingleUser, DatabaseState::MultiUser, &DatabaseEntry::singleUser},
};

const DatabaseOption& OptionNamed(std::string_view name) {
  const auto* found = std::find_if(std::begin(kOptions), std::end(kOptions),
                                   [&](const DatabaseOption& option) { return SameName(option.name, name); });
  if (found != std::end(kOptions)) return *found;
  throw Failed(Code::BadOption, fmt::format("A opção '{}' não existe", name));
}

bool IsOn(std::string_view value) {
  if (SameName(value, "true") || SameName(value, "on")) return true;
  if (SameName(value, "false") || SameName(value, "off")) return false;
  throw Failed(Code::BadOption, fmt::format("'{}' não é um valor de uma opção", value));
}

/// Without a value tells how the option stands, without an option which there are.
RowTables SetOption(const Site& site) {
  if (!site.arguments[1]) {
    RowTable table{{{"Settable database options", Varchar(35)}}, {}};
    for (const DatabaseOption& option : kOptions) table.rows.push_back({std::string(option.name)});
    return {std::move(table)};
  }
  if (!site.arguments[0])
    throw Failed(Code::ProcedureArguments, "O procedimento 'sp_dboption' espera '@dbname'");
  const DatabaseEntry entry = site.session.GetDatabase(*site.arguments[0]);
  const DatabaseOption& option = OptionNamed(*site.arguments[1]);
  if (!site.arguments[2]) {
    return {RowTable{{{"OptionName", Varchar(35)}, {"CurrentSetting", Varchar(3)}},
                     {{std::string(option.name), std::string(entry.*option.state ? "on" : "off")}}}};
  }
  Apply(SetDatabaseState{entry.name, {IsOn(*site.arguments[2]) ? option.on : option.off}, {}}, site.session);
  return {};
}

RowTables Version(const Site& site) {
  RowTable table{
      {{"Index", kSmall}, {"Name", kName}, {"Internal_Value", kInt}, {"Character_Value", Varchar(255)}}, {}};
  struct Line {
    const char* name;
    std::string_view value;
  };
  const Line lines[] = {{"ProductName", "Korvel"}, {"ProductVersion", site.view.server.Version()}};
  std::int64_t number = 0;
  for (const Line& line : lines) {
    ++number;
    if (site.Passes(0, line.name)) table.rows.push_back({number, line.name, Null{}, std::string(line.value)});
  }
  return {std::move(table)};
}

constexpr Procedure kServerProcedures[] = {
    {"sp_dbcmptlevel", {"@dbname", "@new_cmptlevel"}, 1, SetCompatibility},
    {"sp_dboption", {"@dbname", "@optname", "@optvalue"}, 0, SetOption},
    {"sp_configure", {"@configname", "@configvalue"}, 0, Configure},
    {"xp_msver", {"@optname"}, 0, Version},
};

}  // namespace

std::span<const Procedure> ServerProcedures() {
  return kServerProcedures;
}

}  // namespace korvel::data::embedded
