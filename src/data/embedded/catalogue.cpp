#include "data/embedded/catalogue.h"

#include <fmt/format.h>

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

using ObjectsById = std::map<std::int64_t, std::shared_ptr<Object>>;

/// The end of a statement that reads all objects or only one.
std::string Where(std::string_view column, std::optional<std::int64_t> only) {
  return only ? fmt::format(" WHERE {}={}", column, *only) : std::string();
}

void ReadColumns(Store& store, std::optional<std::int64_t> only, const ObjectsById& objects) {
  Prepared rows = store.Prepare(
      "SELECT object, ordinal, name, type, length, precision, scale, nullable, identity, default_text, "
      R"(default_name FROM "$columns")" +
      Where("object", only) + " ORDER BY object, ordinal");
  while (rows.Step()) {
    const auto owner = objects.find(rows.Integer(0));
    const auto type = TypeByName(rows.Text(3), -1, -1);
    if (owner == objects.end() || !type) throw Damaged(store);
    const auto number = [&](int column) { return static_cast<int>(rows.Integer(column)); };
    owner->second->columns.push_back(
        {number(1), std::string(rows.Text(2)), ColumnType{type->base, number(4), number(5), number(6)},
         rows.Integer(7) != 0, rows.Integer(8) != 0, std::string(rows.Text(9)), std::string(rows.Text(10))});
  }
}

void ReadKeys(Store& store, std::optional<std::int64_t> only, const ObjectsById& objects) {
  Prepared rows = store.Prepare(R"(SELECT object, name, kind, is_unique, clustered, columns FROM "$keys")" +
                                Where("object", only));
  while (rows.Step()) {
    const auto owner = objects.find(rows.Integer(0));
    if (owner == objects.end()) continue;
    owner->second->keys.push_back({KindOf(rows.Text(2)), std::string(rows.Text(1)), rows.Integer(3) != 0,
                                   rows.Integer(4) != 0, ColumnNames(*owner->second, rows.Text(5))});
  }
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
  const Snapshot snapshot(store);
  catalogue->Read(store, {});
  return catalogue;
}

std::shared_ptr<const Catalogue> Catalogue::Reread(Store& store, const Catalogue& before,
                                                   std::int64_t object) {
  auto catalogue = std::make_shared<Catalogue>(before);
  catalogue->Drop(object);
  catalogue->Read(store, object);
  return catalogue;
}

void Catalogue::Read(Store& store, std::optional<std::int64_t> only) {
  version_ = VersionOf(store);
  ObjectsById read;
  Prepared rows = store.Prepare(R"(SELECT id, name, kind, text FROM "$objects")" + Where("id", only));
  while (rows.Step()) {
    if (rows.Text(2) == "P") {
      procedures_[LowerName(rows.Text(1))] = {rows.Integer(0), std::string(rows.Text(1)),
                                              std::string(rows.Text(3))};
      continue;
    }
    Object& object = *read.emplace(rows.Integer(0), std::make_shared<Object>()).first->second;
    object.id = rows.Integer(0);
    object.name = rows.Text(1);
    object.view = rows.Text(2) == "V";
  }
  ReadColumns(store, only, read);
  ReadKeys(store, only, read);
  for (auto& [id, object] : read) objects_[LowerName(object->name)] = std::move(object);
}

void Catalogue::Drop(std::int64_t object) {
  std::erase_if(objects_, [&](const auto& entry) { return entry.second->id == object; });
  std::erase_if(procedures_, [&](const auto& entry) { return entry.second.id == object; });
}

const Object* Catalogue::Find(std::string_view name) const {
  const auto found = objects_.find(LowerName(name));
  return found == objects_.end() ? nullptr : found->second.get();
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
  for (const auto& [lower, object] : objects_) {
    if (object->id == id) return object->name;
  }
  for (const auto& [lower, procedure] : procedures_) {
    if (procedure.id == id) return procedure.name;
  }
  return {};
}

}  // namespace korvel::data::embedded
