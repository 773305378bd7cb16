#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "databases/companies.h"
#include "databases/config_upgrade.h"
#include "databases/logins.h"
#include "security/base_rights.h"
#include "session/entry/login.h"
#include "support/scripted_world.h"

namespace korvel::test {

/// A server where nobody has logged in yet, and what an administrator does there.
struct EntryWorld {
  EntryWorld() { server.session.gLogin = "sa"; }
  /// Takes the place of a server that another test world has prepared.
  void StartFrom(const EntryWorld& made) {
    constexpr auto kOver =
        std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing;
    std::filesystem::copy(made.server.folder.Path(), server.folder.Path(), kOver);
    server.session = made.server.session;
  }

  bool LogIn(std::string_view login, std::string_view password = {}) {
    return session::Login(
        context, {.server = server.Name(), .login = std::string(login), .password = std::string(password)});
  }
  /// The first administrator's login, and a base set of rights.
  void Prepare() {
    EXPECT_TRUE(LogIn("sa"));
    server.dialogs.answers = {0};
    EXPECT_TRUE(security::CriaAcessosBase(context));
    server.dialogs.Clear();
  }
  /// A login that may reach the configuration, as every user of the system.
  void AddLogin(std::string_view login, std::string_view password = "segredo", bool admin = false) {
    EXPECT_TRUE(databases::CreateLogin(context, login, password, admin)) << server.session.gErroDescricao;
    EXPECT_TRUE(databases::AddOwnerToDB(context, "KorvelConfig", login)) << server.session.gErroDescricao;
  }
  void AddCompany(std::string_view code, std::string_view description = "Empresa", bool main = false,
                  bool independent = false) {
    EXPECT_TRUE(
        databases::CreateCompany(context, {std::string(code), std::string(description), main, independent}));
    server.session.gBaseDados.clear();
    server.dialogs.Clear();
  }
  void LetIn(std::string_view login, std::string_view code) {
    EXPECT_TRUE(databases::AddOwnerToDB(context, databases::CompanyDatabase(code), login));
  }

  std::vector<std::string> Config(std::string_view query) { return server.Rows("KorvelConfig", query); }
  void RunConfig(std::string_view script) { server.Run("KorvelConfig", script); }

  TestServer server;
  session::Context context = server.Context();
};

}  // namespace korvel::test
