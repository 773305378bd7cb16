#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/embedded/catalogue.h"
#include "data/embedded/store.h"
#include "data/embedded/translation.h"

namespace korvel::data::embedded {

/// A translated statement, prepared and ready to run, with the texts bound to it.
struct Ready {
  Translation translation;
  Prepared statement;
  std::vector<OwnedStored> owned;
};

/// A database that a connection has open: its file, its catalogue as last seen, its latest statements.
class Database {
 public:
  Database(std::string name, std::int64_t id, std::unique_ptr<Store> store);
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  const std::string& Name() const { return name_; }
  std::int64_t Id() const { return id_; }
  Store& File() { return *store_; }
  /// As the file has it now; a change, also by another process, drops the statements kept.
  std::shared_ptr<const Catalogue> Now();
  /// For after a change of the schema that this connection has made itself: as Now() will give it.
  void Take(std::shared_ptr<const Catalogue> changed);
  /// For after a rollback, which may have taken changes of the schema back.
  void Forget();

  /// As its text says, which is read once; nullptr when there is none of that name.
  std::shared_ptr<const StoredProcedure> FindProcedure(std::string_view name);

  /// A statement kept under that key, nullptr if none. Valid for the catalogue that Now() gave last.
  std::shared_ptr<Ready> Find(const std::string& key);
  void Keep(const std::string& key, std::shared_ptr<Ready> ready);

 private:
  struct Entry {
    std::string key;
    std::shared_ptr<Ready> ready;
  };

  std::string name_;
  std::int64_t id_;
  std::unique_ptr<Store> store_;
  std::shared_ptr<const Catalogue> catalogue_;
  bool stale_ = false;
  Prepared version_;
  std::list<Entry> entries_;  // latest first
  std::unordered_map<std::string_view, std::list<Entry>::iterator> index_;
  std::unordered_map<std::int64_t, std::shared_ptr<const StoredProcedure>> procedures_;  // by identifier
};

}  // namespace korvel::data::embedded
