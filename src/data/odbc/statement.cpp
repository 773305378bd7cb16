#include "data/odbc/statement.h"

#include "data/odbc/bound_parameters.h"
#include "data/odbc/procedure_call.h"

namespace korvel::data::odbc {
Statement::Statement(std::shared_ptr<Link> link)
    : link_(std::move(link)), handle_(SQL_HANDLE_STMT, link_->OpenHandle()) {
  Set(SQL_ATTR_QUERY_TIMEOUT, AsPointer(static_cast<SQLULEN>(link_->TimeoutSeconds())));
  link_->running_ = this;
}

void Statement::Release() noexcept {
  if (link_->running_ == this) link_->running_ = nullptr;
  handle_.Release();
}

void Statement::Execute(std::string_view sql, Parameters parameters) {
  BoundParameters bound(parameters);
  bound.Bind(*this);
  ExecuteText(sql);
  if (!parameters.empty()) Check(SQLFreeStmt(Get(), SQL_RESET_PARAMS));
}

void Statement::Run(std::string_view procedure, ProcedureCall& call) {
  call.Bind(*this);
  ExecuteText(call.Text(procedure));
  while (NextResult()) {
  }
  Check(SQLFreeStmt(Get(), SQL_RESET_PARAMS));
}

void Statement::ExecuteText(std::string_view sql) {
  // The interface takes a pointer to changeable text, but drivers only read it.
  auto* text = reinterpret_cast<SQLCHAR*>(const_cast<char*>(sql.data()));
  const SQLRETURN result = SQLExecDirect(Get(), text, static_cast<SQLINTEGER>(sql.size()));
  // "No data" is how a statement that changed no row ends.
  if (result != SQL_NO_DATA) Check(result);
}

bool Statement::NextResult() {
  const SQLRETURN result = SQLMoreResults(Get());
  if (result == SQL_NO_DATA) return false;
  Check(result);
  return true;
}

SQLUSMALLINT Statement::Columns() const {
  SQLSMALLINT count = 0;
  Check(SQLNumResultCols(Get(), &count));
  return static_cast<SQLUSMALLINT>(count);
}

std::optional<std::int64_t> Statement::RowsChanged() const {
  SQLLEN count = 0;
  Check(SQLRowCount(Get(), &count));
  if (count < 0) return std::nullopt;
  return count;
}

SQLHSTMT Statement::Get() const {
  if (handle_.Get() == SQL_NULL_HANDLE)
    throw Error(Failure::NoServer, 0, "08003", "A ligação foi fechada durante a leitura");
  return handle_.Get();
}

void Statement::Set(SQLINTEGER attribute, SQLPOINTER value) {
  Check(SQLSetStmtAttr(Get(), attribute, value, 0));
}

}  // namespace korvel::data::odbc
