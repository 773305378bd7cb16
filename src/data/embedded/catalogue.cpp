#include "data/embedded/catalogue.h"

#include <algorithm>
#include <charconv>

#include "data/embedded/errors.h"
#include "data/embedded/store.h"
#include "data/embedded/users.h"

namespace korvel::data::embedded {
namespace {

/// "KORV", in the header of every file.
constexpr std::int64_t kApplicationId = 0x4B4F5256;

constexpr const char* kTables = R"(
CREATE TABLE "$objects" (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL COLLATE NOCASE UNIQUE,
  kind TEXT NOT NULL, text TEXT);
CREATE TABLE "$columns" (object INTEGER NOT NULL, ordinal INTEGER NOT NULL, name TEXT NOT NULL, type TEXT NOT NULL,
  length INTEGER NOT NULL, precision INTEGER NOT NULL, scale INTEGER NOT NULL, nullable INTEGER NOT NULL,
  identity INTEGER NOT NULL, default_text TEXT NOT NULL, default_name TEXT NOT NULL,
  PRIMARY KEY (object, ordinal)) WITHOUT ROWID;
CREATE TABLE "$keys" (object INTEGER NOT NULL, name TEXT NOT NULL COLLATE NOCASE, kind TEXT NOT NULL,
  is_unique INTEGER NOT NULL, clustered INTEGER NOT NULL, columns TEXT NOT NULL,
  PRIMARY KEY (object, name)) WITHOUT ROWID;
)";

KeyKind KindOf(std::string_view text) {
  if (text == "PK") return KeyKind::PrimaryKey;
  return text == "UQ" ? KeyKind::UniqueConstraint : KeyKind::Index;
}

/// Names of the columns whose ordinals a key lists, as "1,3".
std::vector<std::string> ColumnNames(const Object& object, std::string_view ordinals) {
  std::vector<std::string> names;
  while (!ordinals.empty()) {
    int ordinal = 0;
    const auto end = std::from_chars(ordinals.data(), ordinals.data() + ordinals.size(), ordinal).ptr;
    ordinals.remove_prefix(std::min(static_cast<std::size_t>(end - ordinals.data()) + 1, ordinals.size()));
    for (const Column& column : object.columns) {
      if (column.ordinal == ordinal) names.push_back(column.name);
    }
  }
  return names;
}

Error Damaged(const Store& store) {
  return Failed(Code::Damaged,
                "O ficheiro da base de dados " + store.Name() + " não é deste sistema ou está danificado");
}

}  // namespace

const Column* Object::FindColumn(std::string_view column) const {
  const auto found =
      std::find_if(columns.begin(), columns.end(), [&](const Column& c) { return SameName(c.name, column); });
  return found == columns.end() ? nullptr : &*found;
}

const Column* Object::Identity() const {
  const auto found = std::find_if(columns.begin(), columns.end(), [](const Column& c) { return c.identity; });
  return found == columns.end() ? nullptr : &*found;
}

const KeyDefinition* Object::FindKey(std::string_view key) const {
  const auto found =
      std::find_if(keys.begin(), keys.end(), [&](const KeyDefinition& k) { return SameName(k.name, key); });
  return found == keys.end() ? nullptr : &*found;
}

void Catalogue::Create(Store& store) {
  store.Run(kTables);
  UserList::Create(store);
  MarkFile(store);
}

void Catalogue::RaiseVersion(Store& store) {
  store.Run("PRAGMA user_version=" + std::to_string(VersionOf(store) + 1));
}

void Catalogue::MarkFile(Store& store) {
  store.Run("PRAGMA application_id=" + std::to_string(kApplicationId));
}

std::int64_t Catalogue::VersionOf(Store& store) {
  return store.Number("PRAGMA user_version");
}

std::shared_ptr<const Catalogue> Catalogue::Load(Store& store) {
  if (store.Number("PRAGMA application_id") != kApplicationId) {
    throw Damaged(store);
  }
  auto catalogue = std::make_shared<Catalogue>();
  catalogue->version_ = VersionOf(store);
  catalogue->ReadObjects(store);
  catalogue->ReadColumns(store);
  catalogue->ReadKeys(store);
  return catalogue;
}

void Catalogue::ReadObjects(Store& store) {
  Prepared rows = store.Prepare(R"(SELECT id, name, kind, text FROM "$objects")");
  while (rows.Step()) {
    if (rows.Text(2) == "P") {
      procedures_[LowerName(rows.Text(1))] = {rows.Integer(0), std::string(rows.Text(1)),
                                              std::string(rows.Text(3))};
      continue;
    }
    Object& object = objects_[LowerName(rows.Text(1))];
    object.id = rows.Integer(0);
    object.name = rows.Text(1);
    object.view = rows.Text(2) == "V";
    byId_[object.id] = &object;
  }
}

void Catalogue::ReadColumns(Store& store) {
  Prepared rows = store.Prepare(
      "SELECT object, ordinal, name, type, length, precision, scale, nullable, identity, default_text, "
      "default_name "
      R"(FROM "$columns" ORDER BY object, ordinal)");
  while (rows.Step()) {
    const auto owner = byId_.find(rows.Integer(0));
    const auto type = TypeByName(rows.Text(3), -1, -1);
    if (owner == byId_.end() || !type) throw Damaged(store);
    const auto number = [&](int column) { return static_cast<int>(rows.Integer(column)); };
    owner->second->columns.push_back(
        {number(1), std::string(rows.Text(2)), ColumnType{type->base, number(4), number(5), number(6)},
         rows.Integer(7) != 0, rows.Integer(8) != 0, std::string(rows.Text(9)), std::string(rows.Text(10))});
  }
}

void Catalogue::ReadKeys(Store& store) {
  Prepared rows = store.Prepare(R"(SELECT object, name, kind, is_unique, clustered, columns FROM "$keys")");
  while (rows.Step()) {
    const auto owner = byId_.find(rows.Integer(0));
    if (owner == byId_.end()) continue;
    owner->second->keys.push_back({KindOf(rows.Text(2)), std::string(rows.Text(1)), rows.Integer(3) != 0,
                                   rows.Integer(4) != 0, ColumnNames(*owner->second, rows.Text(5))});
  }
}

const Object* Catalogue::Find(std::string_view name) const {
  const auto found = objects_.find(LowerName(name));
  return found == objects_.end() ? nullptr : &found->second;
}

const ProcedureEntry* Catalogue::FindProcedure(std::string_view name) const {
  const auto found = procedures_.find(LowerName(name));
  return found == procedures_.end() ? nullptr : &found->second;
}

std::optional<std::int64_t> Catalogue::IdOf(std::string_view name) const {
  if (const Object* object = Find(name)) return object->id;
  const ProcedureEntry* procedure = FindProcedure(name);
  return procedure == nullptr ? std::nullopt : std::optional(procedure->id);
}

std::string Catalogue::NameOf(std::int64_t id) const {
  if (const auto found = byId_.find(id); found != byId_.end()) return found->second->name;
  for (const auto& [lower, procedure] : procedures_) {
    if (procedure.id == id) return procedure.name;
  }
  return {};
}

}  // namespace korvel::data::embedded
