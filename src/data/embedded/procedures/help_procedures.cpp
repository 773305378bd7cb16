#include <algorithm>
#include <filesystem>
#include <utility>

#include <fmt/format.h>

#include "data/embedded/errors.h"
#include "data/embedded/parser.h"
#include "data/embedded/procedures/procedure.h"

namespace korvel::data::embedded {
namespace {

constexpr ColumnType kKeys = Varchar(2126);
constexpr ColumnType kWord = Varchar(35);
/// Numbers of columns are texts of this many characters, blanks behind them.
constexpr std::size_t kNumberWidth = 5;
constexpr const char* kCollationName = "SQL_Latin1_General_CP1_CI_AS";
constexpr const char* kNotApplicable = "(n/a)";

std::string YesNo(bool yes) {
  return yes ? "yes" : "no";
}

/// Bytes that a value takes on the real server.
std::int64_t BytesOf(const ColumnType& type) {
  switch (type.base) {
    case Type::Bit:
      return 1;
    case Type::SmallInt:
      return 2;
    case Type::Int:
    case Type::SmallDateTime:
      return 4;
    case Type::Numeric:
      return type.precision <= 9 ? 5 : type.precision <= 19 ? 9 : type.precision <= 28 ? 13 : 17;
    case Type::Varchar:
      return type.length;
    case Type::Text:
      return 16;
    default:
      return 8;
  }
}

std::string Padded(std::int64_t number) {
  std::string text = std::to_string(number);
  text.resize(std::max(text.size(), kNumberWidth), ' ');
  return text;
}

std::string PrecisionText(const ColumnType& type) {
  constexpr std::int64_t kFloatBits = 53;
  if (type.base == Type::Float) return Padded(kFloatBits);
  return IsExact(type) && type.base != Type::Bit ? Padded(PrecisionOf(type)) : std::string(kNumberWidth, ' ');
}

std::string ScaleText(const ColumnType& type) {
  return IsExact(type) && type.base != Type::Bit ? Padded(ScaleOf(type)) : std::string(kNumberWidth, ' ');
}

RowTable HeadOf(const std::string& name, const char* type) {
  return {{{"Name", kName}, {"Owner", kName}, {"Type", Varchar(31)}, {"Created_datetime", kDateTime}},
          {{name, "dbo", type, Null{}}}};
}

RowTable ColumnsOf(const Object& object) {
  RowTable table{{{"Column_name", kName},
                  {"Type", kName},
                  {"Computed", kWord},
                  {"Length", kInt},
                  {"Prec", Varchar(kNumberWidth)},
                  {"Scale", Varchar(kNumberWidth)},
                  {"Nullable", kWord},
                  {"TrimTrailingBlanks", kWord},
                  {"FixedLenNullInSource", kWord},
                  {"Collation", kName}},
                 {}};
  for (const Column& column : object.columns) {
    const bool varchar = column.type.base == Type::Varchar;
    const std::string trims = varchar ? "no" : kNotApplicable;
    table.rows.push_back(
        {column.name, std::string(TypeName(column.type.base)), "no", BytesOf(column.type),
         PrecisionText(column.type), ScaleText(column.type), YesNo(column.nullable), trims, trims,
         IsText(column.type) ? OwnedStored(std::string(kCollationName)) : OwnedStored(Null{})});
  }
  return table;
}

RowTable IdentityOf(const Object& object) {
  RowTable table{{{"Identity", kName},
                  {"Seed", Numeric(38, 0)},
                  {"Increment", Numeric(38, 0)},
                  {"Not For Replication", kInt}},
                 {}};
  if (const Column* identity = object.Identity()) {
    table.rows.push_back({identity->name, std::int64_t{1}, std::int64_t{1}, std::int64_t{0}});
  } else {
    table.rows.push_back({"No identity column defined.", Null{}, Null{}, Null{}});
  }
  return table;
}

std::string KeyList(const KeyDefinition& key) {
  std::string names;
  for (const std::string& name : key.columns) names += (names.empty() ? "" : ", ") + name;
  return names;
}

std::string DescriptionOf(const KeyDefinition& key) {
  std::string text = key.clustered ? "clustered" : "nonclustered";
  if (key.unique) text += ", unique";
  if (key.kind == KeyKind::PrimaryKey) text += ", primary key";
  if (key.kind == KeyKind::UniqueConstraint) text += ", unique key";
  return text + " located on PRIMARY";
}

/// In the order of their names, as the server lists them.
std::vector<const KeyDefinition*> KeysByName(const Object& object) {
  std::vector<const KeyDefinition*> keys;
  for (const KeyDefinition& key : object.keys) keys.push_back(&key);
  std::sort(keys.begin(), keys.end(), [](const KeyDefinition* a, const KeyDefinition* b) {
    return LowerName(a->name) < LowerName(b->name);
  });
  return keys;
}

RowTable IndexesOf(const Object& object) {
  RowTable table{{{"index_name", kName}, {"index_description", Varchar(210)}, {"index_keys", kKeys}}, {}};
  for (const KeyDefinition* key : KeysByName(object)) {
    table.rows.push_back({key->name, DescriptionOf(*key), KeyList(*key)});
  }
  return table;
}

/// A default between brackets, as the server keeps it.
std::string Bracketed(const std::string& text) {
  return text.starts_with('(') && text.ends_with(')') ? text : "(" + text + ")";
}

RowTable ConstraintsOf(const Object& object) {
  RowTable table{{{"constraint_type", Varchar(146)},
                  {"constraint_name", kName},
                  {"delete_action", Varchar(9)},
                  {"update_action", Varchar(9)},
                  {"status_enabled", Varchar(8)},
                  {"status_for_replication", Varchar(19)},
                  {"constraint_keys", kKeys}},
                 {}};
  const auto add = [&](const std::string& type, const std::string& name, const std::string& keys) {
    table.rows.push_back({type, name, kNotApplicable, kNotApplicable, kNotApplicable, kNotApplicable, keys});
  };
  for (const Column& column : object.columns) {
    if (column.defaultText.empty()) continue;
    add("DEFAULT on column " + column.name, column.defaultName, Bracketed(column.defaultText));
  }
  for (const KeyDefinition* key : KeysByName(object)) {
    if (key->kind == KeyKind::Index) continue;
    add(fmt::format("{} ({})", key->kind == KeyKind::PrimaryKey ? "PRIMARY KEY" : "UNIQUE",
                    key->clustered ? "clustered" : "non-clustered"),
        key->name, KeyList(*key));
  }
  return table;
}

/// What a table does not have brings no row set.
void AddFilled(RowTables& tables, RowTable table) {
  if (!table.rows.empty()) tables.push_back(std::move(table));
}

RowTables DescribeObject(const Object& object) {
  RowTables tables{HeadOf(object.name, object.view ? "view" : "user table"), ColumnsOf(object),
                   IdentityOf(object),
                   RowTable{{{"RowGuidCol", kName}}, {{"No rowguidcol column defined."}}}};
  if (object.view) return tables;
  tables.push_back({{{"Data_located_on_filegroup", kName}}, {{"PRIMARY"}}});
  AddFilled(tables, IndexesOf(object));
  AddFilled(tables, ConstraintsOf(object));
  return tables;
}

Error NoSuchObject(const Site& site) {
  return Failed(Code::NoObject, fmt::format("O objecto '{}' não existe na base de dados '{}'",
                                            *site.arguments[0], site.view.database));
}

RowTables ListObjects(const Site& site) {
  RowTable table{{{"Name", kName}, {"Owner", kName}, {"Object_type", Varchar(31)}}, {}};
  for (const bool views : {true, false}) {
    for (const auto& [lower, object] : site.view.catalogue.Objects()) {
      if (object->view == views) table.rows.push_back({object->name, "dbo", views ? "view" : "user table"});
    }
  }
  for (const auto& [lower, procedure] : site.view.catalogue.Procedures()) {
    table.rows.push_back({procedure.name, "dbo", "stored procedure"});
  }
  return {std::move(table)};
}

RowTables Help(const Site& site) {
  if (!site.arguments[0]) return ListObjects(site);
  const ObjectName name = ParseObjectName(*site.arguments[0]);
  const Surroundings around = site.session.Around();
  if (const Object* object = FindObject(name, around)) return DescribeObject(*object);
  if (const ProcedureEntry* procedure = FindProcedure(name, around)) {
    return {HeadOf(procedure->name, "stored procedure")};
  }
  throw NoSuchObject(site);
}

RowTables HelpIndex(const Site& site) {
  const Surroundings around = site.session.Around();
  const Object* object = FindObject(ParseObjectName(*site.arguments[0]), around);
  if (object == nullptr) throw NoSuchObject(site);
  RowTables tables;
  AddFilled(tables, IndexesOf(*object));
  return tables;
}

RowTables HelpDatabase(const Site& site) {
  RowTable table{{{"name", kName},
                  {"db_size", Varchar(13)},
                  {"owner", kName},
                  {"dbid", ColumnType{Type::SmallInt}},
                  {"created", kDateTime},
                  {"status", Varchar(600)},
                  {"compatibility_level", ColumnType{Type::SmallInt}}},
                 {}};
  constexpr double kMega = 1024.0 * 1024.0;
  for (const DatabaseEntry& entry : site.view.server.Databases()) {
    if (site.arguments[0] && !SameName(*site.arguments[0], entry.name)) continue;
    const auto owner = site.view.server.Logins().FindSid(entry.owner);
    std::error_code failure;
    const auto size = std::filesystem::file_size(site.view.server.FileOf(entry.name), failure);
    const std::string status = fmt::format("Status=ONLINE, Updateability={}, UserAccess={}",
                                           entry.readOnly ? "READ_ONLY" : "READ_WRITE",
                                           entry.singleUser ? "SINGLE_USER" : "MULTI_USER");
    table.rows.push_back({entry.name,
                          fmt::format("{:10.2f} MB", failure ? 0.0 : static_cast<double>(size) / kMega),
                          owner ? OwnedStored(owner->name) : OwnedStored(Null{}), entry.id, entry.created,
                          status, std::int64_t{entry.level}});
  }
  if (!table.rows.empty()) return {std::move(table)};
  throw Failed(Code::NoDatabaseNamed, fmt::format("A base de dados '{}' não existe", *site.arguments[0]));
}

constexpr Procedure kHelpProcedures[] = {
    {"sp_help", {"@objname"}, 0, Help},
    {"sp_helpindex", {"@objname"}, 1, HelpIndex},
    {"sp_helpdb", {"@dbname"}, 0, HelpDatabase},
};

}  // namespace

std::span<const Procedure> HelpProcedures() {
  return kHelpProcedures;
}

}  // namespace korvel::data::embedded
