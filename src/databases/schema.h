#pragma once

#include <span>
#include <string>
#include <string_view>

namespace korvel::databases {

/// When an upgrade makes a table, adds a column or changes one; the stages run in this order.
enum class Stage {
  Base,        // the first tables
  Parameters,  // the parameters of the extractions
  Documents,   // the tables of documents and entries
  Cancelled,   // cancelled documents, kinds of accounts
  Mapping,     // account mapping, certification, self-billing
  Customers,   // customer of a self-billing period, sending parameters
  Sending,     // history of sendings
  Version,     // version of the database
};

struct ColumnDefinition {
  std::string_view name;
  std::string_view type;            // as it stands in a statement; columns allow NULL
  Stage added = Stage::Base;        // later than the stage of its table: added by "alter table"
  std::string_view existing = {};   // expression that rows without a value get; empty: they stay NULL
  std::string_view firstType = {};  // type that it is made with when `type` comes by a later change
  Stage widened = Stage::Base;      // when that change runs
};

/// A table of a schema. `NumRegisto`, the identity key, stands before the columns of every table and is not
/// listed.
struct TableDefinition {
  std::string_view name;
  Stage created = Stage::Base;
  std::string_view primaryKey = {};  // name of the clustered key on NumRegisto; empty: none, or `bare`
  bool bare = false;                 // made with SQLCreateTable: all its columns are added
  std::span<const ColumnDefinition> columns = {};
};

/// "CREATE TABLE" with the columns of the table's own stage.
std::string CreateTableStatement(const TableDefinition& table);

}  // namespace korvel::databases
