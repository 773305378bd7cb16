#include "contract/drivers.h"

#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "data/embedded/open.h"
#include "data/odbc/odbc_connection.h"
#include "data/odbc/open.h"
#include "support/tds/tds_server.h"
#include "support/temp_folder.h"

namespace korvel::test {
namespace {

using data::Connection;
using data::ConnectionString;

constexpr int kTimeoutSeconds = 20;
constexpr std::string_view kDatabase = "Contrato";

class EmbeddedDriver final : public Driver {
 public:
  EmbeddedDriver() { OpenDatabase("CONTRATO", "master", "")->Execute("create database Contrato"); }
  bool Has(Feature feature) const override { return feature != Feature::LateChecks; }

  std::unique_ptr<Connection> Open() override { return OpenDatabase("CONTRATO", kDatabase, ""); }
  std::unique_ptr<Connection> OpenUnknownServer() override { return OpenDatabase("NAOHA", kDatabase, ""); }
  std::unique_ptr<Connection> OpenUnknownDatabase() override { return OpenDatabase("CONTRATO", "NaoHa", ""); }
  std::unique_ptr<Connection> OpenWithPassword(std::string_view wrong) override {
    return OpenDatabase("CONTRATO", kDatabase, wrong);
  }

 private:
  std::unique_ptr<Connection> OpenDatabase(std::string_view server, std::string_view database,
                                           std::string_view password) const {
    const ConnectionString target{"(LOCALDB)\\" + std::string(server), std::string(database), "sa", false};
    return data::OpenEmbedded({folder_.Path(), std::string(server), data::MissingServer::Make}, target,
                              password, kTimeoutSeconds);
  }

  TempFolder folder_;
};

class SqliteDriver final : public Driver {
 public:
  bool Has(Feature feature) const override { return feature == Feature::LateChecks; }
  std::string IdentityColumn() const override { return "NumRegisto integer primary key autoincrement"; }

  std::unique_ptr<Connection> Open() override { return OpenFile(folder_ / "contrato.db"); }
  std::unique_ptr<Connection> OpenUnknownServer() override { return OpenFile(folder_ / "nao" / "ha.db"); }
  std::unique_ptr<Connection> OpenUnknownDatabase() override { return OpenUnknownServer(); }
  std::unique_ptr<Connection> OpenWithPassword(std::string_view) override {
    throw std::logic_error("SQLite has no passwords");
  }

 private:
  static std::unique_ptr<Connection> OpenFile(const std::filesystem::path& file) {
    return data::odbc::OpenText(
        "Driver=/usr/lib/x86_64-linux-gnu/odbc/libsqlite3odbc.so;FKSupport=1;BigInt=1;Database=" +
            file.string(),
        kTimeoutSeconds);
  }

  TempFolder folder_;
};

/// Our ODBC driver over a TDS server that hands every statement to an embedded one.
class TdsDriver final : public Driver {
 public:
  TdsDriver() { OpenDatabase(server_.Address(), "master", "")->Execute("create database Contrato"); }
  bool Has(Feature feature) const override { return feature != Feature::LateChecks; }

  std::unique_ptr<Connection> Open() override { return OpenDatabase(server_.Address(), kDatabase, ""); }
  std::unique_ptr<Connection> OpenUnknownServer() override {
    return OpenDatabase("nao-existe.invalid", kDatabase, "");
  }
  std::unique_ptr<Connection> OpenUnknownDatabase() override {
    return OpenDatabase(server_.Address(), "NaoHa", "");
  }
  std::unique_ptr<Connection> OpenWithPassword(std::string_view wrong) override {
    return OpenDatabase(server_.Address(), kDatabase, wrong);
  }

 private:
  static std::unique_ptr<Connection> OpenDatabase(const std::string& address, std::string_view database,
                                                  std::string_view password) {
    return data::OpenOdbc("FreeTDS", {address, std::string(database), "sa", false, {}}, password,
                          kTimeoutSeconds);
  }

  TempFolder folder_;
  tds::TdsServer server_{folder_.Path(), "CONTRATO"};
};

/// A SQL Server named by "host;port;login;password". The database is made for the case and dropped behind it.
class SqlServerDriver final : public Driver {
 public:
  explicit SqlServerDriver(std::string_view variable)
      : host_(Take(variable)), port_(Take(variable)), login_(Take(variable)), password_(variable) {
    OpenDatabase(host_, "master", password_)->Execute("create database " + database_);
  }
  ~SqlServerDriver() override {
    try {
      OpenDatabase(host_, "master", password_)->Execute("drop database " + database_);
    } catch (const data::Error& error) {
      std::fprintf(stderr, "SQL Server: a base %s ficou por eliminar: %s\n", database_.c_str(), error.what());
    }
  }
  bool Has(Feature feature) const override { return feature != Feature::LateChecks; }

  std::unique_ptr<Connection> Open() override { return OpenDatabase(host_, database_, password_); }
  std::unique_ptr<Connection> OpenUnknownServer() override {
    return OpenDatabase("nao-existe.invalid", database_, password_);
  }
  std::unique_ptr<Connection> OpenUnknownDatabase() override {
    return OpenDatabase(host_, "NaoHa", password_);
  }
  std::unique_ptr<Connection> OpenWithPassword(std::string_view wrong) override {
    return OpenDatabase(host_, database_, wrong);
  }

 private:
  static std::string Take(std::string_view& text) {
    const std::string part(text.substr(0, text.find(';')));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    return part;
  }
  std::unique_ptr<Connection> OpenDatabase(const std::string& host, std::string_view database,
                                           std::string_view password) const {
    return data::OpenOdbc("FreeTDS", {host + ',' + port_, std::string(database), login_, false, {}}, password,
                          kTimeoutSeconds);
  }

  std::string host_;
  std::string port_;
  std::string login_;
  std::string password_;
  std::string database_ = std::string(kDatabase) + std::to_string(getpid());
};

}  // namespace

std::string_view NameOf(Feature feature) {
  switch (feature) {
    case Feature::TSql:
      return "T-SQL";
    case Feature::StrictTypes:
      return "tipos rigorosos";
    case Feature::Numbers:
      return "números de erro";
    case Feature::Logins:
      return "logins";
    case Feature::LateChecks:
      return "restrições adiadas";
    case Feature::ZeroBytes:
      return "bytes a zero";
  }
  return "";
}

std::unique_ptr<Driver> MakeDriver(std::string_view name) {
  if (name == "embedded") return std::make_unique<EmbeddedDriver>();
  if (name == "odbc-sqlite") return std::make_unique<SqliteDriver>();
  if (name == "tds") return std::make_unique<TdsDriver>();
  if (name != "sqlserver") throw std::logic_error("No such driver: " + std::string(name));
  const char* server = std::getenv("KORVEL_SQLSERVER");
  return server != nullptr ? std::make_unique<SqlServerDriver>(server) : nullptr;
}

}  // namespace korvel::test
