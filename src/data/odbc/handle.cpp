#include "data/odbc/handle.h"

#include <array>

#include "data/odbc/latin_text.h"

namespace korvel::data::odbc {
namespace {

constexpr std::size_t kStateSize = 5;

std::vector<Diagnostic> Records(SQLSMALLINT kind, SQLHANDLE handle) {
  std::vector<Diagnostic> records;
  std::array<SQLCHAR, kStateSize + 1> state{};
  std::array<SQLCHAR, SQL_MAX_MESSAGE_LENGTH> text{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  for (SQLSMALLINT number = 1;
       SQL_SUCCEEDED(SQLGetDiagRec(kind, handle, number, state.data(), &native, text.data(),
                                   static_cast<SQLSMALLINT>(text.size()), &length));
       ++number) {
    records.push_back({reinterpret_cast<const char*>(state.data()), native,
                       AsUtf8(reinterpret_cast<const char*>(text.data()))});
  }
  return records;
}

}  // namespace

Handle::Handle(SQLSMALLINT kind, SQLHANDLE parent) : kind_(kind) {
  if (SQL_SUCCEEDED(SQLAllocHandle(kind, parent, &handle_))) return;
  // A refused statement handle is explained on its connection: mostly that the connection has gone.
  const SQLSMALLINT parentKind = kind == SQL_HANDLE_STMT ? SQL_HANDLE_DBC : SQL_HANDLE_ENV;
  throw ToError(parent != SQL_NULL_HANDLE ? Records(parentKind, parent) : std::vector<Diagnostic>{},
                Stage::Running);
}

void Handle::Release() noexcept {
  if (handle_ == SQL_NULL_HANDLE) return;
  SQLFreeHandle(kind_, handle_);
  handle_ = SQL_NULL_HANDLE;
}

void Handle::Check(SQLRETURN result, Stage stage) const {
  if (!SQL_SUCCEEDED(result)) throw ToError(Records(kind_, handle_), stage);
}

}  // namespace korvel::data::odbc
