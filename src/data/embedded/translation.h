#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/catalogue.h"
#include "data/embedded/convert.h"
#include "data/embedded/rows.h"

namespace korvel::data::embedded {

/// A value that a translated statement gets each time it runs.
struct Slot {
  enum class Source {
    Parameter,
    RowCount,
    Identity,
    ScopeIdentity,
    TransactionCount,
    Now,
    Login,
    Database,
    LastError,
    Variable,
  };
  Source source = Source::Parameter;
  int parameter = 0;  // which one, or which variable
  ColumnType type;    // of the statement's side
  ConvertMode mode = ConvertMode::Cast;
  int style = -1;
  std::string notNull;  // column that refuses NULL, empty: none
};

/// A table or view that a statement reads or writes; id 0: none.
struct ObjectUse {
  std::string name;
  std::int64_t id = 0;
};

/// A statement in the store's own SQL: slots are ?1, ?2, ... in their order.
struct Translation {
  std::string sql;
  std::vector<Slot> slots;
  std::vector<Field> fields;  // empty: no rows
  std::vector<ColumnType> types;
  /// True when its SQL holds rows of the moment (system tables), so that it serves once.
  bool once = false;
  /// True for an INSERT into a table with an identity.
  bool givesIdentity = false;
  /// The first that it reads and the one that it writes, for the rights that it needs.
  ObjectUse reads;
  ObjectUse writes;
};

/// Types of the parameters given with a statement; nothing for a Null.
using ParameterTypes = std::vector<std::optional<ColumnType>>;

/// What names mean at the moment of translation.
struct Surroundings {
  std::shared_ptr<const Catalogue> catalogue;
  std::string database;
  /// A system table by database (empty: any) and name; nothing when there is none.
  std::function<std::optional<RowTable>(std::string_view database, std::string_view name)> systemTable;
};

/// Each throws Error for names, types and counts that do not fit.
Translation TranslateQuery(const Query& query, const Surroundings& around, const ParameterTypes& parameters);
Translation TranslateInsert(const Insert& insert, const Surroundings& around,
                            const ParameterTypes& parameters);
Translation TranslateUpdate(const Update& update, const Surroundings& around,
                            const ParameterTypes& parameters);
Translation TranslateDelete(const Delete& remove, const Surroundings& around,
                            const ParameterTypes& parameters);
/// A query of one row and one column: the value, which is 1 or 0 for a condition.
Translation TranslateValue(const Expr& expr, const Surroundings& around, const ParameterTypes& parameters);
Translation TranslateCondition(const Expr& condition, const Surroundings& around,
                               const ParameterTypes& parameters);
/// A query that gives these rows.
Translation TranslateRows(const RowTable& table);
/// "CAST" of every row's value of a column to another type, for ALTER COLUMN.
std::string ConversionSql(std::string_view column, const ColumnType& from, const ColumnType& to,
                          bool nullable);
/// A default as SQL for existing rows.
Translation TranslateDefault(const Object& table, const Column& column, const Surroundings& around);

/// The table of a statement that changes rows. Throws 208 for none and 4405 for a view.
const Object& WritableTable(const ObjectName& name, const Surroundings& around);
/// The object, nullptr when there is none under that name in this database.
const Object* FindObject(const ObjectName& name, const Surroundings& around);
const ProcedureEntry* FindProcedure(const ObjectName& name, const Surroundings& around);

}  // namespace korvel::data::embedded
