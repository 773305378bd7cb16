#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/database.h"
#include "data/embedded/processes.h"
#include "data/embedded/rights.h"
#include "data/embedded/server.h"
#include "data/embedded/slots.h"

namespace korvel::data::embedded {

/// One login's conversation with a server: its current database, its transaction, its last counts, its place among the
/// server's processes. Not to be moved: its files call it back.
class Session {
 public:
  /// Throws Error 4060 when the first database is not there or not open to the login. A blank database is the login's own.
  Session(Server server, const ConnectionString& wanted);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  Server& Host() { return server_; }
  ProcessSlot& Processes() { return processes_; }
  const std::shared_ptr<Database>& Current() const { return current_; }
  SessionValues& Values() { return values_; }
  const SessionValues& Values() const { return values_; }

  /// What the login is in the current database at this moment. Throws 916 when it may not be there any more.
  const Access& Now();
  /// The same for any database of the server, which need not be open to it.
  Access AccessTo(const DatabaseEntry& entry);
  /// Throws the server's refusal; `object` is what it names. For rights in the current database and over the server.
  void Require(Right right, std::string_view object = {});
  /// For rights over a database that a statement names.
  void RequireOver(Right right, const DatabaseEntry& entry);
  /// For a statement over rows. `covered` inside a procedure, whose own right stands for those of its statements.
  void RequireFor(const Translation& translation, bool covered);
  /// For a statement over the schema of the current database.
  void RequireFor(const Statement& statement);

  /// Names as they are now in the current database.
  Surroundings Around();
  /// Throws 911 when there is no such database, 916 when it is not open to the login, 924 when somebody else is its
  /// single user.
  void Use(std::string_view database);
  /// Throws 911 when there is none.
  DatabaseEntry GetDatabase(std::string_view database);
  /// Both are outside a transaction only (226).
  void CreateDatabase(std::string_view database);
  /// Throws 3701 when there is none, 3702 when a connection has it open.
  void DropDatabase(std::string_view database);

  /// A transaction covers every database that is written while it is open; each of them commits by itself.
  void Begin();
  void Commit();
  void Rollback();
  void RequireNoTransaction(std::string_view statement) const;

  /// Throws 596 when another connection has killed this one; what it had open is rolled back then.
  void RequireAlive() {
    if (processes_.Killed()) Die();
  }

  /// Undoes the open transaction unless somebody holds a Lease. For another thread than the session's own.
  void UndoIfIdle() noexcept;

  /// A translated statement of the current database, kept from an earlier time under `key` (empty: never kept).
  std::shared_ptr<Ready> Prepare(Translation translation, const std::string& key);

 private:
  enum class Way { Login, Use };
  void Enter(const DatabaseEntry& entry, Way way);
  void Park();
  void Open(const DatabaseEntry& entry, Way way);
  void ShowDatabases(int entering);
  Access AccessIn(const DatabaseEntry& entry, Store& file);
  void MarkChanged(std::int64_t object);
  [[noreturn]] void Die();
  void Undo() noexcept;
  friend class Lease;
  template <typename Step>
  void OnEachOpen(Step step);

  std::mutex use_;
  int leases_ = 0;
  Server server_;
  ProcessSlot processes_;
  std::shared_ptr<Database> current_;
  std::vector<std::shared_ptr<Database>> parked_;  // left by "use" inside the transaction
  SessionValues values_;
  Access access_;
  std::int64_t serverChanges_ = -1;  // of the moment of access_
  std::int64_t databaseVersion_ = -1;
};

/// The time in which somebody uses a session's files: a call, an open reader, a batch of rows.
class Lease {
 public:
  explicit Lease(Session& session) : session_(session) { Count(1); }
  ~Lease() { Count(-1); }
  Lease(const Lease&) = delete;
  Lease& operator=(const Lease&) = delete;

 private:
  void Count(int change) {
    const std::scoped_lock lock(session_.use_);
    session_.leases_ += change;
  }
  Session& session_;
};

/// The time in which a session works for its caller. Others see it as running, and it begins only while it is alive.
class Work {
 public:
  explicit Work(Session& session) : session_(session), lease_(session) {
    session_.Processes().SetRunning(true);
    try {
      session_.RequireAlive();
    } catch (...) {
      session_.Processes().SetRunning(false);
      throw;
    }
  }
  ~Work() { session_.Processes().SetRunning(false); }
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;

 private:
  Session& session_;
  Lease lease_;
};

}  // namespace korvel::data::embedded
