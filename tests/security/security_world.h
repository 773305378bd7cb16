#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "databases/config_upgrade.h"
#include "security/base_rights.h"
#include "session/connections.h"
#include "support/scripted_world.h"

namespace korvel::test {

/// A server with its configuration database, still without companies and rights.
struct SecurityWorld {
  SecurityWorld() {
    databases::EnsureConfigDatabase(context);
    server.session.gUtilizador = "ana";
    server.dialogs.Clear();
  }

  std::unique_ptr<data::Connection> Config() { return server.Open(session::kConfigDatabase); }
  std::vector<std::string> Rows(std::string_view query) {
    return server.Rows(session::kConfigDatabase, query);
  }
  std::string One(std::string_view query) { return server.One(session::kConfigDatabase, query); }
  void Script(std::string_view script) { server.Run(session::kConfigDatabase, script); }

  void MakeBaseSet() {
    server.dialogs.answers = {0};
    security::CriaAcessosBase(context);
    server.dialogs.Clear();
  }
  /// A row in the list of companies; `database` makes its database too.
  void AddCompany(std::string_view code, bool main = false, bool independent = false, bool database = false) {
    Config()->Execute(
        "insert into Empresas (Codigo,Descricao,AcessoPrincipal,AcessoIndependente) values (?,?,?,?)",
        {code, "Empresa d'" + std::string(code), main, independent});
    if (database) server.Run("master", "create database Korvel" + std::string(code));
  }

  TestServer server;
  session::Context context = server.Context();
};

}  // namespace korvel::test
