#pragma once

#include <span>
#include <string>
#include <string_view>

#include "databases/passed_over.h"
#include "databases/schema.h"
#include "databases/upgrade_run.h"
#include "session/context.h"

/// The steps that the upgrades of both kinds of database share. Every one runs each time; what fails is passed over.
namespace korvel::databases {

/// Creates the tables of a stage.
void CreateTables(data::Connection& connection, std::span<const TableDefinition> tables, Stage stage,
                  PassedOver& passedOver);
/// Adds the columns of a stage to tables that were there before, gives their values to rows that have none, and widens
/// those that the stage widens.
void ChangeColumns(data::Connection& connection, std::span<const TableDefinition> tables, Stage stage,
                   PassedOver& passedOver);

/// Leaves the program's version in the one row of `Actualiza`.
void WriteVersion(data::Connection& connection, PassedOver& passedOver);

/// SQL_ChangeDbCompLevel; a refusal is shown, once a run.
void ChangeCompatibility(const session::Context& context, data::Connection& master, std::string_view database,
                         UpgradeRun& run);

/// A column's type that allows NULL.
std::string Nullable(std::string_view type);

}  // namespace korvel::databases
