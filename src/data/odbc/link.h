#pragma once

#include <string>

#include "data/odbc/handle.h"

namespace korvel::data::odbc {

class Statement;

/// The conversation itself, shared by a connection and its running statement, so that either may go first.
class Link {
 public:
  /// `text` is a complete connection string. Throws Error as connecting does.
  Link(const std::string& text, int timeoutSeconds);
  ~Link() { Close(); }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  bool IsOpen() const;
  /// Rolls back, ends the running statement, and disconnects. Safe to call twice.
  void Close() noexcept;
  std::string Database() const;

  /// Off begins a transaction, in which statements stay until End.
  void SetAutocommit(bool on);
  /// `completion` is SQL_COMMIT or SQL_ROLLBACK; nothing has changed when it throws.
  void End(SQLSMALLINT completion);

  int TimeoutSeconds() const { return timeoutSeconds_; }
  /// The handle for a new statement. Throws Error when the link is closed or lost.
  SQLHDBC OpenHandle() const;

 private:
  friend class Statement;
  SQLHDBC Get() const { return connection_.Get(); }

  Handle environment_;
  Handle connection_;
  int timeoutSeconds_;
  Statement* running_ = nullptr;
  bool connected_ = false;
  bool autocommit_ = true;
};

}  // namespace korvel::data::odbc
