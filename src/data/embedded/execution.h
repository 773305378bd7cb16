#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/parser.h"
#include "data/embedded/session.h"

namespace korvel::data::embedded {

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
  /// Opens the next row set of a procedure that brings several; false behind the last.
  bool OpenPending();
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
  std::vector<RowTable> pending_;
  std::size_t nextPending_ = 0;
  std::shared_ptr<Database> database_;
  std::shared_ptr<Ready> rows_;
  bool done_ = false;
  std::int64_t count_ = 0;
  std::int64_t changed_ = 0;
};

}  // namespace korvel::data::embedded
