#include "databases/widening.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "databases/names.h"
#include "toolkit/text.h"

namespace korvel::databases {

namespace {

struct DroppedBefore {
  std::string_view table;
  std::string_view statement;
};

constexpr std::array<DroppedBefore, 6> kDroppedBefore{{
    {"acessos", "Drop Index Acessos.Acessos0"},
    {"acessos", "Drop Index Acessos.Ix_Acessos_1"},
    {"acessos", "Alter Table Acessos Drop Constraint Ix_Acessos_2"},
    {"acessos", "Alter Table Acessos Drop Constraint Ix_Acessos"},
    {"usersempresas", "Drop Index UsersEmpresas.IX_UsersEmpresas"},
    {"loggeral", "Drop Index LogGeral.IX_LogGeral"},
}};

constexpr std::array<std::string_view, 2> kSkipped{"usermanagement", "userdatabases"};

struct LoginColumn {
  std::string table;
  std::string name;
};

std::vector<LoginColumn> FindLoginColumns(data::Connection& connection) {
  std::vector<LoginColumn> found;
  auto columns = connection.Query(
      "Select Object_name(Id) as ObjectName, Name from syscolumns where (name like 'utilizador' or name like "
      "'login%')");
  for (; !columns.Eof(); columns.MoveNext()) {
    found.push_back({std::string(columns.Text("ObjectName")), std::string(columns.Text("Name"))});
  }
  return found;
}

void Widen(data::Connection& connection, const LoginColumn& column, PassedOver& passedOver) {
  const std::string table = toolkit::Lower(column.table);
  if (std::find(kSkipped.begin(), kSkipped.end(), table) != kSkipped.end()) return;
  for (const DroppedBefore& dropped : kDroppedBefore) {
    if (dropped.table == table) passedOver.Run(connection, dropped.statement);
  }
  passedOver.Try(fmt::format("{}.{}", column.table, column.name), [&] {
    connection.Execute(fmt::format("Alter Table {} Alter Column {} varchar (128) null", AsName(column.table),
                                   AsName(column.name)));
  });
}

}  // namespace

void WidenLoginColumns(data::Connection& connection, PassedOver& passedOver) {
  std::vector<LoginColumn> columns;
  passedOver.Try("syscolumns", [&] { columns = FindLoginColumns(connection); });
  for (const LoginColumn& column : columns) Widen(connection, column, passedOver);
}

}  // namespace korvel::databases
