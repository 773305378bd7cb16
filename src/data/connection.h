#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "data/error.h"
#include "data/recordset.h"
#include "data/value.h"

namespace korvel::data {

/// Many rows for one table, sent to the server in batches of at least 500 rows where it takes several at a time.
/// Rows count as written only after Finish(); a batch that is dropped without it leaves an unknown number
/// of them, so it belongs inside a transaction.
class BatchInsert {
 public:
  virtual ~BatchInsert() = default;
  BatchInsert() = default;
  BatchInsert(const BatchInsert&) = delete;
  BatchInsert& operator=(const BatchInsert&) = delete;

  /// One row, in the order of the columns given to OpenBatch. Texts are read before the call returns.
  virtual void Add(Parameters row) = 0;
  /// Sends what is left. Throws Error as Add does.
  virtual void Finish() = 0;
};

/// An argument of a stored procedure, in the procedure's own order. An output argument comes back changed; its value
/// beforehand decides its type (a text stands for varchar(8000)).
struct ProcedureArgument {
  Value value;
  bool output = false;
};

/// What a connection tells of its traffic.
using StatementObserver = std::function<void(std::string_view statement)>;

/// One open conversation with a server, owned by the operation that needs it and closed by its destructor.
///
/// Statements are T-SQL in UTF-8; a "?" outside quotes marks a bound parameter. A connection has one reader at a
/// time: while a Recordset from Query is open any other call throws Error(Failure::Busy), so reading one table
/// while writing another takes two connections. All failures are thrown as Error. Not for several threads.
class Connection {
 public:
  virtual ~Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Runs a statement or batch and gives its results, the first row set current (see Recordset::NextRecordset).
  Recordset Query(std::string_view sql, Parameters parameters = {});
  Recordset Query(std::string_view sql, std::initializer_list<Parameter> parameters) {
    return Query(sql, Parameters(parameters.begin(), parameters.size()));
  }
  /// Runs a statement or batch to its end, leaves out any rows, and returns how many rows its last statement changed.
  std::int64_t Execute(std::string_view sql, Parameters parameters = {});
  std::int64_t Execute(std::string_view sql, std::initializer_list<Parameter> parameters) {
    return Execute(sql, Parameters(parameters.begin(), parameters.size()));
  }
  /// Runs a stored procedure and gives its result ("RETURN_VALUE"); rows that it brings are left out. `procedure` is a
  /// name, not text from users.
  std::int64_t Call(std::string_view procedure, std::span<ProcedureArgument> arguments);
  /// `table` and `columns` are names, not text from users. The batch must not outlive the connection.
  std::unique_ptr<BatchInsert> OpenBatch(std::string_view table, std::span<const std::string_view> columns);

  /// Transactions do not nest: beginning a second one throws Error.
  void BeginTrans();
  void CommitTrans();
  void RollbackTrans();
  bool InTransaction() const { return inTransaction_; }

  /// False once Close was called or the server has gone.
  virtual bool IsOpen() const = 0;
  /// Rolls back what is open. Safe to call twice.
  virtual void Close() noexcept = 0;
  /// The current database, as the last "use" left it.
  virtual std::string Database() const = 0;

  void Observe(StatementObserver observer) { observer_ = std::move(observer); }

 protected:
  Connection() = default;

  virtual std::unique_ptr<Cursor> DoQuery(std::string_view sql, Parameters parameters) = 0;
  virtual std::int64_t DoExecute(std::string_view sql, Parameters parameters) = 0;
  virtual std::int64_t DoCall(std::string_view procedure, std::span<ProcedureArgument> arguments) = 0;
  virtual std::unique_ptr<BatchInsert> DoOpenBatch(std::string_view table,
                                                   std::span<const std::string_view> columns) = 0;
  virtual void DoBegin() = 0;
  virtual void DoCommit() = 0;
  virtual void DoRollback() = 0;

  /// Drivers report here every statement text that they send, batches of OpenBatch included.
  void Sent(std::string_view statement) const {
    if (observer_) observer_(statement);
  }

 private:
  void RequireIdle() const;

  StatementObserver observer_;
  std::weak_ptr<void> reader_;
  bool inTransaction_ = false;
};

/// A transaction for the length of a scope: rolled back on leaving unless Commit() succeeded.
class Transaction {
 public:
  explicit Transaction(Connection& connection) : connection_(connection) { connection_.BeginTrans(); }
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  /// Throws Error when the server refuses; nothing is kept then.
  void Commit();

 private:
  Connection& connection_;
  bool open_ = true;
};

}  // namespace korvel::data
