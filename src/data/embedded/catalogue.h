#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/tree.h"

namespace korvel::data::embedded {

class Store;

struct Column {
  int ordinal = 0;  // stays with the column for life, from 1
  std::string name;
  ColumnType type;
  bool nullable = true;
  bool identity = false;
  std::string defaultText;  // T-SQL, empty: none
  std::string defaultName;
};

/// A table or view as the catalogue of its database describes it.
struct Object {
  std::int64_t id = 0;
  std::string name;
  bool view = false;
  std::vector<Column> columns;
  std::vector<KeyDefinition> keys;

  const Column* FindColumn(std::string_view column) const;
  const Column* Identity() const;
  const KeyDefinition* FindKey(std::string_view key) const;
};

/// A stored procedure; it shares the names of tables and views.
struct ProcedureEntry {
  std::int64_t id = 0;
  std::string name;
  std::string text;  // from CREATE PROCEDURE on
};

/// What a database holds, read at one moment. Names compare without regard to case.
class Catalogue {
 public:
  /// Makes the catalogue's tables in a new file, and marks the file as one of this system's.
  static void Create(Store& store);
  static void MarkFile(Store& store);
  /// Throws Error (native 824) when the file is no database of this system.
  static std::shared_ptr<const Catalogue> Load(Store& store);
  /// `before` with one object, which may be new or gone, and the version as they are now. Objects that stay are shared.
  static std::shared_ptr<const Catalogue> Reread(Store& store, const Catalogue& before, std::int64_t object);
  /// The number that every change of a schema raises.
  static std::int64_t VersionOf(Store& store);
  static void RaiseVersion(Store& store);

  std::int64_t Version() const { return version_; }
  const Object* Find(std::string_view name) const;
  /// By lower-case name, in that order.
  const std::map<std::string, std::shared_ptr<const Object>>& Objects() const { return objects_; }

  const ProcedureEntry* FindProcedure(std::string_view name) const;
  const std::map<std::string, ProcedureEntry>& Procedures() const { return procedures_; }
  /// Of a table, a view or a procedure; nothing when there is none.
  std::optional<std::int64_t> IdOf(std::string_view name) const;
  std::string NameOf(std::int64_t id) const;

 private:
  void Read(Store& store, std::optional<std::int64_t> only);
  void Drop(std::int64_t object);

  std::int64_t version_ = 0;
  std::map<std::string, std::shared_ptr<const Object>> objects_;
  std::map<std::string, ProcedureEntry> procedures_;
};

}  // namespace korvel::data::embedded
