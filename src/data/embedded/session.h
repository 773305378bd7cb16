#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/database.h"
#include "data/embedded/server.h"
#include "data/embedded/slots.h"

namespace korvel::data::embedded {

/// One login's conversation with a server: its current database, its transaction, its last counts.
class Session {
 public:
  /// Throws Error 4060 when the first database is not there.
  Session(Server server, std::string_view database);

  Server& Host() { return server_; }
  const std::shared_ptr<Database>& Current() const { return current_; }
  SessionValues& Values() { return values_; }
  const SessionValues& Values() const { return values_; }

  /// Names as they are now in the current database.
  Surroundings Around();
  /// Throws 911 when there is no such database.
  void Use(std::string_view database);

  /// A transaction covers every database that is written while it is open; each of them commits by itself.
  void Begin();
  void Commit();
  void Rollback();
  void RequireNoTransaction(std::string_view statement) const;

  /// A translated statement of the current database, kept from an earlier time under `key` (empty: never kept).
  std::shared_ptr<Ready> Prepare(Translation translation, const std::string& key);

 private:
  void Open(const DatabaseEntry& entry);
  template <typename Step>
  void OnEachOpen(Step step);

  Server server_;
  std::shared_ptr<Database> current_;
  std::vector<std::shared_ptr<Database>> parked_;  // left by "use" inside the transaction
  SessionValues values_;
};

}  // namespace korvel::data::embedded
