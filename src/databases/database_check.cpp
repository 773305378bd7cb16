#include <fmt/format.h>

#include <string>
#include <vector>

#include "databases/backups.h"
#include "databases/names.h"
#include "session/failures.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

std::int64_t CountTables(data::Connection& connection) {
  const auto count = connection.Query("select a=count(name) from sysobjects where xtype='U'");
  return count.Eof() ? 0 : count.Integer("a");
}

std::vector<std::string> TableNames(data::Connection& connection) {
  std::vector<std::string> names;
  auto tables = connection.Query("sp_tables");
  for (; !tables.Eof(); tables.MoveNext()) {
    if (toolkit::SameIgnoringCase(toolkit::Trim(tables.Text("table_type")), "TABLE")) {
      names.emplace_back(tables.Text("table_name"));
    }
  }
  return names;
}

/// Adds to `lines` what the user has to know.
void CheckTable(data::Connection& connection, std::string_view database, std::string_view table,
                std::string& lines) {
  connection.Execute(fmt::format("dbcc updateusage({},{})", AsArgument(database), AsArgument(table)));
  try {
    connection.Execute(fmt::format("dbcc dbreindex({})", QuotedName(table)));
  } catch (const data::Error&) {
    lines += fmt::format("{}Falta de Indexado na Tabela [ {} ]", lines.empty() ? "" : "\n", table);
  }
  connection.Execute("update statistics " + AsName(table));
}

}  // namespace

std::string IndexFaults(data::Connection& connection, std::string_view database,
                        toolkit::Progress& progress) {
  std::string lines;
  toolkit::ProgressScope scope(progress, database, CountTables(connection));
  for (const std::string& table : TableNames(connection)) {
    CheckTable(connection, database, table, lines);
    scope.Step([&] { return std::string_view(table); });
  }
  return lines;
}

bool VerificaBaseDados(const session::Context& context, const std::string& database) {
  session::ConnectionPtr connection;
  if (!session::OpenSessionDatabase(context, connection, database)) {
    session::ShowConnectionError(context);
    return false;
  }
  return session::Reported(context, false, [&] {
    const std::string faults = IndexFaults(*connection, database, context.progress);
    if (!faults.empty()) context.dialogs.Message(toolkit::Icon::Warning, faults);
    return true;
  });
}

}  // namespace korvel::databases
