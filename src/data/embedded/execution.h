#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/frame.h"
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

/// A batch on its way: runs one statement after the other, those of the procedures that it calls among them.
class Execution {
 public:
  /// Reads the batch whole; nothing has run yet. Throws Error 102.
  Execution(std::shared_ptr<Session> session, std::string_view sql, Parameters parameters);
  /// A batch of the server's own making, whose variables have values already.
  Execution(std::shared_ptr<Session> session, std::shared_ptr<const Batch> program,
            std::vector<Variable> variables);
  ~Execution();
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;

  /// Ends the statement that runs, reading its rows to the end, and runs up to the next one that has something to tell;
  /// false behind the last.
  bool NextStatement();
  /// The next row of the statement that runs.
  bool Step();
  /// The statement that runs, when it brings rows; nullptr otherwise.
  Ready* Rows() const { return rows_.get(); }
  std::int64_t Changed() const { return changed_; }
  /// The batch's own variables as they are now.
  const std::vector<Variable>& Variables() const { return frames_.front().variables; }

 private:
  /// Keeps the number of an error for @@error.
  template <typename Work>
  bool Watched(Work work);
  bool NextRow();
  void FinishRows();
  void Reset();
  bool RunNext();
  const Statement* Fetch();
  void Run(const Statement& statement);
  void OpenRows(std::shared_ptr<Ready> ready);
  void RunWrite(std::shared_ptr<Ready> ready);
  void RunCall(const Call& call);
  std::string FileOf(const BackupTarget& target);
  /// Opens the next row set of a procedure that brings several; false behind the last.
  bool OpenPending();
  void RunSchema(const Statement& statement);
  void RunStep(TransactionStep step);
  bool RunKept();
  template <typename Tree>
  std::shared_ptr<Ready> Translated(const Tree& tree,
                                    Translation (*translate)(const Tree&, const Surroundings&,
                                                             const ParameterTypes&));

  // What only steers: variables, branches, calls of stored procedures (execution_program.cpp).
  Frame& Top() { return frames_.back(); }
  SlotValues Inputs();
  /// Runs a statement that tells nothing by itself; false for any other.
  bool Steer(const Statement& statement);
  void Do(const SetVariable& set);
  void Do(const AssignQuery& assign);
  void Do(const Branch& branch);
  void Do(const Jump& jump);
  void Do(const Return& leave);
  void Do(const PrintText& print);
  Variable Evaluate(const Expr& expr);
  bool Holds(const Expr& condition);
  Variable ReadValue(Translation translation);
  void Assign(Variable& to, const Variable& from) const;
  void JumpTo(std::size_t statement);
  /// Begins a stored procedure; false when there is none of that name.
  bool Enter(const Call& call);
  void PassArguments(const Call& call, const StoredProcedure& procedure, Frame& callee);
  void PassOne(const Argument& argument, std::size_t place, const StoredProcedure& procedure, Frame& callee);
  void PassDefaults(const Call& call, const StoredProcedure& procedure, const std::vector<bool>& given,
                    Frame& callee);
  /// Ends the procedure that runs, or the batch.
  void Leave(const Variable& result);

  std::shared_ptr<Session> session_;
  Lease lease_{*session_};
  KeptParameters parameters_;
  std::string key_;
  std::vector<Frame> frames_;  // the batch, and the procedures on their way
  bool kept_ = false;          // the batch is one statement that was found ready
  std::vector<RowTable> pending_;
  std::size_t nextPending_ = 0;
  std::shared_ptr<Database> database_;
  std::shared_ptr<Ready> rows_;
  bool done_ = false;
  std::int64_t count_ = 0;
  std::int64_t changed_ = 0;
  std::chrono::steady_clock::time_point started_;
};

}  // namespace korvel::data::embedded
