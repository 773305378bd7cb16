#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/database.h"
#include "data/embedded/parser.h"
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

/// Parameters with values of their own, for statements that run after the call that brought them.
class KeptParameters {
 public:
  explicit KeptParameters(Parameters parameters);
  Parameters View() const { return views_; }
  const ParameterTypes& Types() const { return types_; }

 private:
  std::vector<Value> values_;
  std::vector<Parameter> views_;
  ParameterTypes types_;
};

/// A batch on its way: runs one statement after the other.
class Execution {
 public:
  /// Reads the batch whole; nothing has run yet. Throws Error 102.
  Execution(std::shared_ptr<Session> session, std::string_view sql, Parameters parameters);
  ~Execution();
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;

  /// Ends the statement that runs, reading its rows to the end, and runs the next one; false behind the last.
  bool NextStatement();
  /// The next row of the statement that runs.
  bool Step();
  /// The statement that runs, when it brings rows; nullptr otherwise.
  Ready* Rows() const { return rows_.get(); }
  std::int64_t Changed() const { return changed_; }

 private:
  void FinishRows();
  void Reset();
  void Run(const Statement& statement);
  void OpenRows(std::shared_ptr<Ready> ready);
  void RunWrite(std::shared_ptr<Ready> ready);
  void RunCall(const Call& call);
  void RunSchema(const Statement& statement);
  void RunStep(TransactionStep step);
  bool RunKept();
  template <typename Tree>
  std::shared_ptr<Ready> Translated(const Tree& tree,
                                    Translation (*translate)(const Tree&, const Surroundings&,
                                                             const ParameterTypes&));

  std::shared_ptr<Session> session_;
  KeptParameters parameters_;
  std::string key_;
  Batch batch_;
  std::size_t next_ = 0;
  bool kept_ = false;  // the batch is one statement that was found ready
  std::shared_ptr<Database> database_;
  std::shared_ptr<Ready> rows_;
  bool done_ = false;
  std::int64_t count_ = 0;
  std::int64_t changed_ = 0;
};

}  // namespace korvel::data::embedded
