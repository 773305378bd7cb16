#include "databases/integrity.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "databases/names.h"
#include "toolkit/code_page.h"
#include "toolkit/text.h"
#include "toolkit/whole_file.h"

namespace korvel::databases {

namespace {

constexpr std::string_view kFamily =
    " and (Name Like 'Korvel%' or Name Like 'Brevant%' or Name Like 'Lunder%')";
constexpr std::array<std::string_view, 2> kOwners{"dbo", "sys"};
constexpr std::array<std::string_view, 2> kDroppedWithRows{"fieldsdef", "tabledefs"};

template <std::size_t N>
bool OneOf(const std::array<std::string_view, N>& names, std::string_view name) {
  return std::ranges::find(names, toolkit::Lower(name)) != names.end();
}

struct ForeignTable {
  std::string owner;
  std::string name;
};

std::vector<std::string> DatabasesToCheck(data::Connection& master, std::string_view database) {
  const std::string one = toolkit::IsBlank(database) ? "" : " and Name=" + QuotedName(database);
  std::vector<std::string> names;
  auto rows = master.Query(
      fmt::format("Select Name from SysDatabases Where Name<>''{}", one.empty() ? kFamily : one));
  for (; !rows.Eof(); rows.MoveNext()) {
    if (!OneOf(kServerDatabases, rows.Text("Name"))) names.emplace_back(rows.Text("Name"));
  }
  return names;
}

std::vector<ForeignTable> ForeignTables(data::Connection& connection) {
  std::vector<ForeignTable> tables;
  auto rows = connection.Query("sp_tables");
  for (; !rows.Eof(); rows.MoveNext()) {
    const std::string owner(toolkit::Trim(rows.Text("Table_Owner")));
    const bool table = toolkit::SameIgnoringCase(toolkit::Trim(rows.Text("Table_Type")), "TABLE");
    if (table && !OneOf(kOwners, owner)) {
      tables.push_back({owner, std::string(toolkit::Trim(rows.Text("Table_Name")))});
    }
  }
  return tables;
}

/// True when the table is gone.
bool Removed(data::Connection& connection, const ForeignTable& table) {
  try {
    const std::string name = fmt::format("{}.{}", AsName(table.owner), AsName(table.name));
    const bool empty = connection.Query("Select Count(*) as Contagem from " + name).Integer("Contagem") == 0;
    if (!empty && !OneOf(kDroppedWithRows, table.name)) return false;
    connection.Execute("Drop Table " + name);
    return true;
  } catch (const data::Error&) {
    return false;  // it is reported like those that stay
  }
}

void CheckDatabaseObjects(const session::Context& context, const std::string& database,
                          std::vector<std::string>& report) {
  session::ConnectionPtr connection;
  if (!session::OpenSessionDatabase(context, connection, database)) {
    context.dialogs.Message(toolkit::Icon::Warning,
                            fmt::format("Impossível Efectuar a Ligação a {}", database), "Atenção:");
    return;
  }
  for (std::string& line : ForeignObjects(*connection, database)) report.push_back(std::move(line));
}

void WriteReport(const std::vector<std::string>& report) {
  std::string text = "Base de Dados - Owner - Nome da Tabela\r\n";
  for (const std::string& line : report) text += line + "\r\n";
  toolkit::ReplaceWholeFile(ObjectReportFile(), toolkit::ToCodePage(text).bytes);
}

}  // namespace

std::filesystem::path ObjectReportFile() {
  return std::filesystem::temp_directory_path() / "ObjIntegrity.txt";
}

std::vector<std::string> ForeignObjects(data::Connection& connection, std::string_view database) {
  std::vector<std::string> report;
  for (const ForeignTable& table : ForeignTables(connection)) {
    if (!Removed(connection, table)) {
      report.push_back(fmt::format("{} - {} - {}", database, table.owner, table.name));
    }
  }
  return report;
}

bool VerificaObjectos(const session::Context& context, data::Connection& master, std::string_view database) {
  std::vector<std::string> report;
  for (const std::string& name : DatabasesToCheck(master, database)) {
    CheckDatabaseObjects(context, name, report);
  }
  if (!report.empty()) WriteReport(report);
  return report.empty();
}

}  // namespace korvel::databases
