#include "data/odbc/link.h"

#include <array>

#include "data/odbc/statement.h"

namespace korvel::data::odbc {
namespace {

/// Sets the version that a driver manager must know before it gives connections.
SQLHANDLE Versioned(const Handle& environment) {
  environment.Check(SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0));
  return environment.Get();
}

SQLULEN AutocommitMode(bool on) {
  return on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF;
}

}  // namespace

Link::Link(const std::string& text, int timeoutSeconds)
    : environment_(SQL_HANDLE_ENV, SQL_NULL_HANDLE),
      connection_(SQL_HANDLE_DBC, Versioned(environment_)),
      timeoutSeconds_(timeoutSeconds) {
  connection_.Check(SQLSetConnectAttr(Get(), SQL_ATTR_LOGIN_TIMEOUT,
                                      AsPointer(static_cast<SQLULEN>(timeoutSeconds)), SQL_IS_UINTEGER),
                    Stage::Connecting);
  std::string buffer = text;
  connection_.Check(SQLDriverConnect(Get(), nullptr, reinterpret_cast<SQLCHAR*>(buffer.data()), SQL_NTS,
                                     nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
                    Stage::Connecting);
  connected_ = true;
}

bool Link::IsOpen() const {
  if (!connected_) return false;
  SQLUINTEGER dead = SQL_CD_FALSE;
  SQLGetConnectAttr(Get(), SQL_ATTR_CONNECTION_DEAD, &dead, SQL_IS_UINTEGER, nullptr);
  return dead != SQL_CD_TRUE;
}

void Link::Close() noexcept {
  if (!connected_) return;
  connected_ = false;
  if (running_ != nullptr) running_->Release();
  // What fails here has nobody left to tell: a server that loses its client rolls back by itself.
  if (!autocommit_) SQLEndTran(SQL_HANDLE_DBC, Get(), SQL_ROLLBACK);
  SQLDisconnect(Get());
}

std::string Link::Database() const {
  std::array<SQLCHAR, 512> name{};
  SQLINTEGER length = 0;
  connection_.Check(SQLGetConnectAttr(OpenHandle(), SQL_ATTR_CURRENT_CATALOG, name.data(),
                                      static_cast<SQLINTEGER>(name.size()), &length));
  return reinterpret_cast<const char*>(name.data());
}

void Link::SetAutocommit(bool on) {
  connection_.Check(
      SQLSetConnectAttr(OpenHandle(), SQL_ATTR_AUTOCOMMIT, AsPointer(AutocommitMode(on)), SQL_IS_UINTEGER));
  autocommit_ = on;
}

void Link::End(SQLSMALLINT completion) {
  connection_.Check(SQLEndTran(SQL_HANDLE_DBC, OpenHandle(), completion));
  try {
    SetAutocommit(true);
  } catch (const Error&) {
    // The transaction has ended well; only what comes later would run unseen in another one, so nothing may come.
    Close();
  }
}

SQLHDBC Link::OpenHandle() const {
  if (!IsOpen()) throw Error(Failure::NoServer, 0, "08003", "A ligação está fechada ou perdeu-se");
  return Get();
}

}  // namespace korvel::data::odbc
