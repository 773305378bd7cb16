#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "data/embedded/catalogue.h"
#include "data/embedded/database.h"
#include "data/embedded/errors.h"
#include "data/embedded/store.h"
#include "data/embedded/translation.h"

namespace korvel::data::embedded {

/// Changes the schema of one database: the store's own tables and the catalogue beside them, in one write that is
/// kept whole or not at all. The catalogue is taken as it is inside that write, so that two processes cannot both make
/// one table. Serves one statement; Apply throws Error and leaves everything as it was.
class SchemaWriter {
 public:
  explicit SchemaWriter(Database& database);

  void Apply(const CreateTable& create);
  void Apply(const CreateView& create, const Translation& query);
  void Apply(const CreateIndex& create);
  void Apply(const DropIndex& drop);
  void Apply(const DropObject& drop);
  void Apply(const AddColumns& add);
  void Apply(const AddDefault& add);
  void Apply(const AlterColumn& alter);
  void Apply(const DropColumn& drop);
  void Apply(const DropConstraint& drop);
  void Apply(const Truncate& truncate);
  void Apply(const CreateProcedure& create);
  void Apply(const DropProcedure& drop);

  /// For translations that belong to the same write.
  const Surroundings& Around() const { return around_; }

 private:
  const Object& Table(const ObjectName& name) const;
  void RequireFree(const ObjectName& name) const;
  std::int64_t AddObject(const std::string& name, char kind, const std::string& text);
  void AddCatalogueColumn(std::int64_t object, int ordinal, const ColumnDefinition& column);
  void AddColumn(const Object& table, int ordinal, const ColumnDefinition& column);
  void AddKey(const Object& table, KeyDefinition key);
  void CreateStoreIndex(const Object& table, const KeyDefinition& key);
  void DropKey(const Object& table, const KeyDefinition& key);
  void RequireUnkeyed(const Object& table, std::string_view column, Code code) const;
  void RewriteColumn(const Object& table, const Column& column, const ColumnDefinition& to);
  void FillDefault(const Object& table, const Column& column);
  void Change(std::string_view sql, std::initializer_list<Stored> values);
  void Reload(std::int64_t object);
  /// Keeps the change of one object.
  void Finish(std::int64_t object);

  Database& database_;
  Store& store_;
  AtomicWrite write_;
  Surroundings around_;
};

/// Error 2627 or 2601 for the store's words about a violated key.
Error DuplicateError(const Catalogue& catalogue, std::string_view words);

}  // namespace korvel::data::embedded
