#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "data/connection.h"

namespace korvel::test {

/// What a driver's server may lack, so that a case that needs it is left out, aloud.
enum class Feature {
  TSql,         // the dialect: several statements in one text, procedures, @@IDENTITY
  StrictTypes,  // declared types and lengths are enforced, money is exact
  Numbers,      // failures carry SQL Server's numbers
  Logins,       // names and passwords are checked
  LateChecks,   // constraints may wait for the commit
  ZeroBytes,    // a text may hold a zero byte
};
std::string_view NameOf(Feature feature);

/// One driver with an empty database of its own, which goes with the object. Connections must go first.
class Driver {
 public:
  virtual ~Driver() = default;
  virtual bool Has(Feature feature) const = 0;
  /// Declaration of a `NumRegisto` that counts up by itself and is the primary key.
  virtual std::string IdentityColumn() const {
    return "NumRegisto numeric(18,0) identity(1,1) not null primary key";
  }

  virtual std::unique_ptr<data::Connection> Open() = 0;
  /// Attempts that must fail.
  virtual std::unique_ptr<data::Connection> OpenUnknownServer() = 0;
  virtual std::unique_ptr<data::Connection> OpenUnknownDatabase() = 0;
  virtual std::unique_ptr<data::Connection> OpenWithPassword(std::string_view wrong) = 0;
};

/// By name: "embedded", "odbc-sqlite", "tds" or "sqlserver"; nothing for a SQL Server that no variable names.
std::unique_ptr<Driver> MakeDriver(std::string_view name);

}  // namespace korvel::test
