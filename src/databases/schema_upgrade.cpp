#include "databases/schema_upgrade.h"

#include <fmt/format.h>

#include <utility>

#include "data/sql_text.h"
#include "databases/sql_admin.h"
#include "databases/version.h"

namespace korvel::databases {

namespace {

void Create(data::Connection& connection, const TableDefinition& table, PassedOver& passedOver) {
  if (table.bare) {
    passedOver.Try(fmt::format("create table {}", table.name),
                   [&] { SQLCreateTable(connection, table.name); });
  } else {
    passedOver.Run(connection, CreateTableStatement(table));
  }
}

void Add(data::Connection& connection, const TableDefinition& table, const ColumnDefinition& column,
         PassedOver& passedOver) {
  const auto type = column.firstType.empty() ? column.type : column.firstType;
  passedOver.Try(fmt::format("{}.{}", table.name, column.name),
                 [&] { SQLAddField(connection, Nullable(type), column.name, table.name); });
  if (column.existing.empty()) return;
  passedOver.Run(connection, fmt::format("Update {0} set {1}={2} where {1} is null", table.name, column.name,
                                         column.existing));
}

void Change(data::Connection& connection, const TableDefinition& table, const ColumnDefinition& column,
            Stage stage, PassedOver& passedOver) {
  const bool addedLater = table.bare || column.added != table.created;
  if (addedLater && column.added == stage) Add(connection, table, column, passedOver);
  if (!column.firstType.empty() && column.widened == stage) {
    passedOver.Try(fmt::format("{}.{}", table.name, column.name),
                   [&] { SQLChangeField(connection, Nullable(column.type), column.name, table.name); });
  }
}

}  // namespace

std::string Nullable(std::string_view type) {
  return fmt::format("{} NULL", type);
}

void CreateTables(data::Connection& connection, std::span<const TableDefinition> tables, Stage stage,
                  PassedOver& passedOver) {
  for (const TableDefinition& table : tables) {
    if (table.created == stage) Create(connection, table, passedOver);
  }
}

void ChangeColumns(data::Connection& connection, std::span<const TableDefinition> tables, Stage stage,
                   PassedOver& passedOver) {
  for (const TableDefinition& table : tables) {
    for (const ColumnDefinition& column : table.columns) Change(connection, table, column, stage, passedOver);
  }
}

void WriteVersion(data::Connection& connection, PassedOver& passedOver) {
  passedOver.Try("Actualiza", [&] {
    data::Transaction transaction(connection);  // two upgrades at a time leave one row
    const bool empty =
        connection.Query("Select IsNull(Count(*),0) as Contagem from Actualiza").Integer(0) == 0;
    if (empty) connection.Execute("Insert Into Actualiza (Versao) Values ('')");
    connection.Execute(fmt::format("Update Actualiza Set Versao={}", data::Quoted(SchemaVersion())));
    transaction.Commit();
  });
}

void ChangeCompatibility(const session::Context& context, data::Connection& master, std::string_view database,
                         UpgradeRun& run) {
  try {
    SQL_ChangeDbCompLevel(master, database);
  } catch (const data::Error& error) {
    if (std::exchange(run.levelRefusalShown, true)) return;
    context.dialogs.Message(toolkit::Icon::Critical, fmt::format("ChangeDBCompLevel\n{}", error.what()));
  }
}

}  // namespace korvel::databases
