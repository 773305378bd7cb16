#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace korvel::databases {

/// When an upgrade makes a table, adds a column or changes one; the stages run in this order.
enum class Stage {
  Base,        // the first tables
  Parameters,  // the parameters of the extractions; those of mail and FTP
  Documents,   // the tables of documents and entries
  Cancelled,   // cancelled documents, kinds of accounts
  Mapping,     // account mapping, certification, self-billing
  Customers,   // customer of a self-billing period, sending parameters
  Sending,     // history of sendings
  Version,     // version of the database
};
inline constexpr std::array kStages{Stage::Base,    Stage::Parameters, Stage::Documents, Stage::Cancelled,
                                    Stage::Mapping, Stage::Customers,  Stage::Sending,   Stage::Version};

/// A column; all allow NULL.
struct ColumnDefinition {
  std::string_view name;
  std::string_view type;
  Stage added = Stage::Base;        // a column of its table's own stage is in the "CREATE TABLE"
  std::string_view existing = {};   // SQL expression that rows with NULL get; empty: they stay so
  std::string_view firstType = {};  // the type that it is made with, when `type` comes by a later change
  Stage widened = Stage::Base;      // when that change runs
};

/// A key made with its table beside the one on `NumRegisto` that `primaryKey` names.
struct KeyDefinition {
  std::string_view name;
  std::string_view kind;  // "PRIMARY KEY NONCLUSTERED", "UNIQUE CLUSTERED", ...
  std::string_view fields;
};

/// A table of a schema. `NumRegisto`, the identity key, stands before the columns of every table and is not
/// listed among them.
struct TableDefinition {
  std::string_view name;
  Stage created = Stage::Base;
  std::span<const ColumnDefinition> columns;
  std::string_view primaryKey = {};  // name of the clustered key on NumRegisto; empty: none
  bool bare = false;                 // made by SQLCreateTable, which names the key; every column is added
  std::span<const KeyDefinition> keys = {};
};

/// "CREATE TABLE" with the columns of the table's own stage and all keys.
std::string CreateTableStatement(const TableDefinition& table);
/// "ALTER TABLE" that adds one of a table's keys.
std::string AddKeyStatement(const TableDefinition& table, const KeyDefinition& key);

}  // namespace korvel::databases
