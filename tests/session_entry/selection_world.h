#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "session/entry/company_selection.h"
#include "session_entry/entry_world.h"

namespace korvel::test {

/// The company selection on a server with three companies: 0001; 0002, the main one; 0003, which is independent.
class Selection : public testing::Test {
 protected:
  Selection() { world.StartFrom(ThreeCompanies()); }

  /// Made once: companies take their time.
  static const EntryWorld& ThreeCompanies() {
    static const auto made = [] {
      auto prepared = std::make_unique<EntryWorld>();
      prepared->Prepare();
      prepared->AddCompany("0001", "Padaria");
      prepared->AddCompany("0002", "Talho", true);
      prepared->AddCompany("0003", "Café", false, true);
      return prepared;
    }();
    return *made;
  }
  std::vector<std::string> Codes() const {
    std::vector<std::string> codes;
    for (const session::CompanyLine& company : form.Companies()) codes.push_back(company.code);
    return codes;
  }
  /// Logs in and opens the form with a company chosen.
  void OpenAs(std::string_view login, std::string_view password, std::string_view code) {
    ASSERT_TRUE(world.LogIn(login, password)) << server.dialogs.LastText();
    ASSERT_TRUE(form.Load(context)) << server.dialogs.LastText();
    ASSERT_TRUE(form.Select(code)) << code;
    server.dialogs.Clear();
  }
  /// The session as another login, without the form's own steps.
  void BecomeLogin(std::string_view login, std::string_view password) {
    server.session.gLogin = login;
    server.session.gPassword = password;
  }
  void SetVersion(std::string_view database, std::string_view version) {
    server.Run(database, "update Actualiza set Versao='" + std::string(version) + "'");
  }
  std::string VersionOf(std::string_view database) {
    return server.One(database, "select Versao from Actualiza");
  }

  EntryWorld world;
  TestServer& server = world.server;
  session::Context context = server.Context();
  session::CompanySelection form;
};

}  // namespace korvel::test
