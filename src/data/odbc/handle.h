#pragma once

#include <sql.h>
#include <sqlext.h>

#include "data/odbc/diagnostics.h"

namespace korvel::data::odbc {

/// One handle of the driver manager, freed by its destructor.
class Handle {
 public:
  /// `kind` is SQL_HANDLE_ENV, SQL_HANDLE_DBC or SQL_HANDLE_STMT. Throws Error when there is none to be had.
  Handle(SQLSMALLINT kind, SQLHANDLE parent);
  ~Handle() { Release(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  /// SQL_NULL_HANDLE after Release.
  SQLHANDLE Get() const { return handle_; }
  void Release() noexcept;

  /// Throws what the driver says about a call on this handle unless `result` tells of success.
  void Check(SQLRETURN result, Stage stage = Stage::Running) const;

 private:
  SQLSMALLINT kind_;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

/// An attribute that is a number, in the form that SQLSet...Attr takes it.
inline SQLPOINTER AsPointer(SQLULEN number) {
  return reinterpret_cast<SQLPOINTER>(number);
}

}  // namespace korvel::data::odbc
