#include "data/connection.h"

namespace korvel::data {

void Connection::RequireIdle() const {
  if (!reader_.expired()) throw Error(Failure::Busy, "A ligação ainda está a ler um resultado anterior");
}

Recordset Connection::Query(std::string_view sql, Parameters parameters) {
  RequireIdle();
  auto lease = std::make_shared<int>(0);
  Recordset rows(DoQuery(sql, parameters), lease);
  reader_ = lease;
  return rows;
}

std::int64_t Connection::Execute(std::string_view sql, Parameters parameters) {
  RequireIdle();
  return DoExecute(sql, parameters);
}

std::int64_t Connection::Call(std::string_view procedure, std::span<ProcedureArgument> arguments) {
  RequireIdle();
  return DoCall(procedure, arguments);
}

std::unique_ptr<BatchInsert> Connection::OpenBatch(std::string_view table,
                                                   std::span<const std::string_view> columns) {
  RequireIdle();
  return DoOpenBatch(table, columns);
}

void Connection::BeginTrans() {
  RequireIdle();
  if (inTransaction_) throw Error(Failure::Statement, "Já existe uma transacção aberta nesta ligação");
  DoBegin();
  inTransaction_ = true;
}

void Connection::CommitTrans() {
  RequireIdle();
  DoCommit();
  inTransaction_ = false;
}

void Connection::RollbackTrans() {
  RequireIdle();
  inTransaction_ = false;
  DoRollback();
}

void Transaction::Commit() {
  connection_.CommitTrans();
  open_ = false;
}

Transaction::~Transaction() {
  if (!open_ || !connection_.IsOpen()) return;
  try {
    connection_.RollbackTrans();
  } catch (const Error&) {
    // A destructor must not throw, and closing rolls back whatever the server still holds.
    connection_.Close();
  }
}

}  // namespace korvel::data
