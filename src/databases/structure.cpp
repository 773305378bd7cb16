#include "databases/structure.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "databases/attempts.h"
#include "databases/names.h"
#include "databases/sql_admin.h"
#include "session/records.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

/// "dt_..." are the procedures of the server's own tools.
bool IsSystemProcedure(std::string_view name, std::string_view owner) {
  return toolkit::Lower(name).starts_with("dt_") || toolkit::SameIgnoringCase(owner, "sys") ||
         toolkit::SameIgnoringCase(owner, "INFORMATION_SCHEMA");
}

std::vector<std::string> ProcedureNames(data::Connection& connection) {
  std::vector<std::string> names;
  auto rows = connection.Query("sp_stored_procedures");
  for (; !rows.Eof(); rows.MoveNext()) {
    // The server adds the number of the procedure behind a ";".
    const std::string_view listed = rows.Text("Procedure_Name");
    const std::string name(toolkit::Trim(listed.substr(0, listed.find(';'))));
    if (!IsSystemProcedure(name, toolkit::Trim(rows.Text("Procedure_Owner")))) names.push_back(name);
  }
  return names;
}

/// The text of a procedure from its "create" on; the server gives it in pieces.
std::string ProcedureText(data::Connection& connection, std::string_view name) {
  std::string text;
  auto pieces = connection.Query("sp_helptext " + QuotedName(name));
  for (; !pieces.Eof(); pieces.MoveNext()) text += pieces.Text(0);
  const std::size_t start = toolkit::Lower(text).find("create");
  if (start == std::string::npos) {
    throw data::Error(data::Failure::Statement,
                      fmt::format("O servidor não dá o texto do procedimento {}", name));
  }
  return text.substr(start);
}

}  // namespace

void SQLDropField(data::Connection& connection, std::string_view field, std::string_view table) {
  connection.Execute(fmt::format("Alter Table {} Drop Column {}", AsName(table), AsName(field)));
}

bool SQLCheckIndex(data::Connection& connection, std::string_view name, std::string_view table) {
  return !connection
              .Query(fmt::format("sp_indexes @table_name = {} , @index_name= {}", QuotedName(table),
                                 QuotedName(name)))
              .Eof();
}

bool ExecutaSQL(const session::Context& context, data::Connection& connection, std::string_view statement) {
  return Attempt(context, [&] { connection.Execute(statement); });
}

std::string CreateFieldList(data::Connection& connection, std::string_view table) {
  std::string list;
  auto columns = connection.Query("sp_columns " + QuotedName(table));
  for (; !columns.Eof(); columns.MoveNext()) {
    list += fmt::format("{}[{}]", list.empty() ? "" : ",", columns.Text("Column_Name"));
  }
  return list;
}

void DuplicateStructure(data::Connection& source, std::string_view table, data::Connection& target) {
  for (const std::string& statement : TableStatements(source, table)) target.Execute(statement);
}

void CreateStoredProcedures(data::Connection& source, data::Connection& target) {
  for (const std::string& name : ProcedureNames(source)) {
    const std::string text = ProcedureText(source, name);
    session::RunSQL(target, fmt::format("Drop Procedure [{}]", name));  // it may not be there
    RunScript(target, text);
  }
}

}  // namespace korvel::databases
