#include "data/embedded/procedures/procedure.h"

namespace korvel::data::embedded {
namespace {

constexpr ColumnType kRemarks = Varchar(254);

RowTables Tables(const Site& site) {
  RowTable table{{{"TABLE_QUALIFIER", kName},
                  {"TABLE_OWNER", kName},
                  {"TABLE_NAME", kName},
                  {"TABLE_TYPE", Varchar(32)},
                  {"REMARKS", kRemarks}},
                 {}};
  for (const bool views : {false, true}) {
    const std::string kind = views ? "VIEW" : "TABLE";
    const bool asked =
        !site.arguments[3] || LowerName(*site.arguments[3]).find(LowerName(kind)) != std::string::npos;
    for (const auto& [lower, object] : site.view.catalogue.Objects()) {
      if (!asked || object->view != views || !site.Passes(0, object->name) || !site.Passes(1, "dbo"))
        continue;
      table.rows.push_back({std::string(site.view.database), "dbo", object->name, kind, Null{}});
    }
  }
  return {std::move(table)};
}

struct TypeFacts {
  std::int64_t odbcNumber;
  std::int64_t length;
};

/// ODBC's number of a type and its length in bytes.
TypeFacts FactsOf(const ColumnType& type) {
  switch (type.base) {
    case Type::Bit:
      return {-7, 1};
    case Type::SmallInt:
      return {5, 2};
    case Type::Int:
      return {4, 4};
    case Type::BigInt:
      return {-5, 8};
    case Type::Numeric:
      return {2, type.precision + 2};
    case Type::Float:
      return {6, 8};
    case Type::Money:
      return {3, 21};
    case Type::SmallDateTime:
      return {11, 16};
    case Type::DateTime:
      return {11, 16};
    case Type::Varchar:
      return {12, type.length};
    default:
      return {-1, 2147483647};
  }
}

OwnedStored TextOrNull(const std::string& text) {
  return text.empty() ? OwnedStored(Null{}) : OwnedStored(text);
}

std::vector<OwnedStored> ColumnRow(const Site& site, const Object& object, const Column& column) {
  const TypeFacts facts = FactsOf(column.type);
  const std::int64_t precision = IsExact(column.type) ? PrecisionOf(column.type) : facts.length;
  const std::string typeName =
      std::string(TypeName(column.type.base)) + (column.identity ? "() identity" : "");
  return {std::string(site.view.database),
          "dbo",
          object.name,
          column.name,
          facts.odbcNumber,
          typeName,
          precision,
          facts.length,
          IsExact(column.type) ? OwnedStored(std::int64_t{ScaleOf(column.type)}) : OwnedStored(Null{}),
          std::int64_t{column.nullable},
          Null{},
          TextOrNull(column.defaultText),
          std::int64_t{column.ordinal},
          std::string(column.nullable ? "YES" : "NO")};
}

RowTables Columns(const Site& site) {
  RowTable table{{{"TABLE_QUALIFIER", kName},
                  {"TABLE_OWNER", kName},
                  {"TABLE_NAME", kName},
                  {"COLUMN_NAME", kName},
                  {"DATA_TYPE", kSmall},
                  {"TYPE_NAME", kName},
                  {"PRECISION", kInt},
                  {"LENGTH", kInt},
                  {"SCALE", kSmall},
                  {"NULLABLE", kSmall},
                  {"REMARKS", kRemarks},
                  {"COLUMN_DEF", Varchar(4000)},
                  {"ORDINAL_POSITION", kInt},
                  {"IS_NULLABLE", kRemarks}},
                 {}};
  for (const auto& [lower, object] : site.view.catalogue.Objects()) {
    if (!site.Passes(0, object->name) || !site.Passes(1, "dbo")) continue;
    for (const Column& column : object->columns) {
      if (site.Passes(3, column.name)) table.rows.push_back(ColumnRow(site, *object, column));
    }
  }
  return {std::move(table)};
}

RowTables Indexes(const Site& site) {
  RowTable table{{{"TABLE_CAT", kName},
                  {"TABLE_SCHEM", kName},
                  {"TABLE_NAME", kName},
                  {"NON_UNIQUE", kSmall},
                  {"INDEX_QUALIFIER", kName},
                  {"INDEX_NAME", kName},
                  {"TYPE", kSmall},
                  {"ORDINAL_POSITION", kInt},
                  {"COLUMN_NAME", kName},
                  {"ASC_OR_DESC", Varchar(1)}},
                 {}};
  for (const auto& [lower, object] : site.view.catalogue.Objects()) {
    if (!site.Passes(0, object->name)) continue;
    for (const KeyDefinition& key : object->keys) {
      if (!site.Passes(1, key.name)) continue;
      std::int64_t place = 0;
      for (const std::string& column : key.columns) {
        table.rows.push_back({std::string(site.view.database), "dbo", object->name, std::int64_t{!key.unique},
                              object->name, key.name, std::int64_t{key.clustered ? 1 : 3}, ++place, column,
                              "A"});
      }
    }
  }
  return {std::move(table)};
}

constexpr Procedure kCatalogueProcedures[] = {
    {"sp_tables", {"@table_name", "@table_owner", "@table_qualifier", "@table_type"}, 0, Tables},
    {"sp_columns",
     {"@table_name", "@table_owner", "@table_qualifier", "@column_name", "@odbcver"},
     1,
     Columns},
    {"sp_indexes", {"@table_name", "@index_name"}, 1, Indexes},
};

}  // namespace

std::span<const Procedure> CatalogueProcedures() {
  return kCatalogueProcedures;
}

}  // namespace korvel::data::embedded
