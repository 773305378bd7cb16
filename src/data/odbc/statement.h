#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "data/odbc/handle.h"
#include "data/odbc/link.h"
#include "data/value.h"

namespace korvel::data::odbc {

class ProcedureCall;

/// A statement under way on a link, which has one at a time. When the link closes first, every call throws Error.
class Statement {
 public:
  explicit Statement(std::shared_ptr<Link> link);
  ~Statement() { Release(); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  /// Runs a text and stands on its first result. Parameter texts are read before it returns.
  void Execute(std::string_view sql, Parameters parameters);
  /// Runs a stored procedure to its end; rows that it brings are left out.
  void Run(std::string_view procedure, ProcedureCall& call);
  /// Goes to the next result of a batch; false behind the last.
  bool NextResult();
  /// Columns of the current result; 0 when it brings no rows.
  SQLUSMALLINT Columns() const;
  /// Rows changed by the current result; nothing where the server does not tell.
  std::optional<std::int64_t> RowsChanged() const;

  /// The handle for further calls, whose results go to Check. Throws Error once the link has closed.
  SQLHSTMT Get() const;
  void Check(SQLRETURN result) const { handle_.Check(result); }
  void Set(SQLINTEGER attribute, SQLPOINTER value);

 private:
  friend class Link;
  void Release() noexcept;
  void ExecuteText(std::string_view sql);

  std::shared_ptr<Link> link_;
  Handle handle_;
};

}  // namespace korvel::data::odbc
