#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/parser.h"
#include "data/embedded/procedures/procedure.h"

namespace korvel::data::embedded {
namespace {

/// The server shows a longer line in pieces.
constexpr std::size_t kLongestLine = 255;

RowTables StoredProcedures(const Site& site) {
  RowTable table{{{"PROCEDURE_QUALIFIER", kName},
                  {"PROCEDURE_OWNER", kName},
                  {"PROCEDURE_NAME", Varchar(134)},
                  {"NUM_INPUT_PARAMS", kInt},
                  {"NUM_OUTPUT_PARAMS", kInt},
                  {"NUM_RESULT_SETS", kInt},
                  {"REMARKS", Varchar(254)},
                  {"PROCEDURE_TYPE", kSmall}},
                 {}};
  constexpr std::int64_t kUnknown = -1;
  constexpr std::int64_t kProcedure = 2;
  for (const auto& [lower, procedure] : site.view.catalogue.Procedures()) {
    if (!site.Passes(0, procedure.name) || !site.Passes(1, "dbo")) continue;
    table.rows.push_back({std::string(site.view.database), "dbo", procedure.name + ";1", kUnknown, kUnknown,
                          kUnknown, Null{}, kProcedure});
  }
  return {std::move(table)};
}

/// A row a line, its end with it.
RowTable LinesOf(std::string_view text) {
  RowTable table{{{"Text", Varchar(static_cast<int>(kLongestLine))}}, {}};
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find('\n'));
    line = text.substr(0, line.size() + (line.size() < text.size() ? 1 : 0));
    line = FirstCharacters(line, kLongestLine);
    table.rows.push_back({std::string(line)});
    text.remove_prefix(line.size());
  }
  return table;
}

RowTables HelpText(const Site& site) {
  const ObjectName name = ParseObjectName(*site.arguments[0]);
  const ProcedureEntry* procedure = FindProcedure(name, site.session.Around());
  if (procedure != nullptr) return {LinesOf(procedure->text)};
  if (FindObject(name, site.session.Around()) != nullptr) {
    throw Failed(Code::NoText, fmt::format("O objecto '{}' não tem texto", *site.arguments[0]));
  }
  throw Failed(Code::NoObject, fmt::format("O objecto '{}' não existe na base de dados '{}'",
                                           *site.arguments[0], site.view.database));
}

constexpr Procedure kProgramProcedures[] = {
    {"sp_stored_procedures", {"@sp_name", "@sp_owner", "@sp_qualifier"}, 0, StoredProcedures},
    {"sp_helptext", {"@objname"}, 1, HelpText},
};

}  // namespace

std::span<const Procedure> ProgramProcedures() {
  return kProgramProcedures;
}

}  // namespace korvel::data::embedded
