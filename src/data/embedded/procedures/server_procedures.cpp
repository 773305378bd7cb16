#include "data/embedded/errors.h"
#include "data/embedded/procedures/procedure.h"

namespace korvel::data::embedded {
namespace {

constexpr ColumnType kName = Varchar(128);
constexpr ColumnType kSmall{Type::SmallInt};

RowTables SetCompatibility(const Site& site) {
  if (!site.view.server.FindDatabase(*site.arguments[0])) {
    throw Failed(Code::NoDatabase, "A base de dados '" + *site.arguments[0] + "' não existe");
  }
  return {};
}

/// The server has none of the options that can be set; taking them keeps upgrades running.
RowTables Configure(const Site&) {
  return {};
}

RowTables Version(const Site& site) {
  RowTable table{
      {{"Index", kSmall}, {"Name", kName}, {"Internal_Value", kInt}, {"Character_Value", Varchar(255)}}, {}};
  struct Line {
    const char* name;
    std::string_view value;
  };
  constexpr Line kLines[] = {{"ProductName", "Korvel"}, {"ProductVersion", kProductVersion}};
  std::int64_t number = 0;
  for (const Line& line : kLines) {
    ++number;
    if (site.Passes(0, line.name)) table.rows.push_back({number, line.name, Null{}, std::string(line.value)});
  }
  return {std::move(table)};
}

constexpr Procedure kProcedures[] = {
    {"sp_dbcmptlevel", {"@dbname", "@new_cmptlevel"}, 1, SetCompatibility},
    {"sp_configure", {"@configname", "@configvalue"}, 0, Configure},
    {"xp_msver", {"@optname"}, 0, Version},
};

}  // namespace

std::span<const Procedure> ServerProcedures() {
  return kProcedures;
}

}  // namespace korvel::data::embedded
