#include "session/entry/main_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "databases/version.h"
#include "security/rights_catalogue.h"
#include "session_entry/entry_world.h"

namespace korvel::session {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(MenuTree, OpensWhatTheCatalogueGuards) {
  std::set<std::string_view> names;
  std::set<std::string_view> menus;
  for (const MenuTitle& menu : Menus()) menus.insert(menu.name);
  for (const MenuEntry& entry : MenuTree()) {
    EXPECT_TRUE(names.insert(entry.name).second) << entry.name << " twice";
    EXPECT_TRUE(menus.contains(entry.menu)) << entry.name;
    EXPECT_TRUE(!entry.guarded || security::FindForm(entry.form) != nullptr) << entry.form;
  }
  for (const security::CatalogueForm& form : security::RightsCatalogue()) {
    const auto opens = [&](const MenuEntry& entry) { return entry.form == form.name; };
    EXPECT_TRUE(std::ranges::any_of(MenuTree(), opens)) << form.name << " cannot be opened";
  }
  EXPECT_EQ(FindMenuEntry("MNUEXPORTAWIZARD")->form, "frmWizard");
  EXPECT_EQ(FindMenuEntry("nada"), nullptr);
}

class OpenWindow : public testing::Test {
 protected:
  OpenWindow() {
    world.Prepare();
    world.AddCompany("0001", "Padaria");
    server.session.gCodEmpresa = "0001";
    server.session.gNomeEmpresa = "Padaria";
    server.session.gBaseDados = "Korvel0001";
  }

  test::EntryWorld world;
  test::TestServer& server = world.server;
  Context context = server.Context();
};

TEST_F(OpenWindow, KnowsWhatIsAvailable) {
  world.RunConfig("update Entidade set NomeEntidade='Gabinete D''Ávila'");
  MainWindow window = LoadMainWindow(context);
  EXPECT_EQ(window.caption, "Korvel - Exportação - Ficheiro Auditor ( Versão: " +
                                std::string(databases::ProgramVersion()) + " )");
  EXPECT_TRUE(window.asksParameters);
  EXPECT_TRUE(window.canUpgrade);
  EXPECT_TRUE(window.canUsePassword);
  EXPECT_FALSE(window.unattended);
  EXPECT_EQ(server.session.gDescEmpresa, "Padaria");

  server.Run("Korvel0001", "insert into ParamGeral (CasasDec) values (3)");
  server.session.gSysAdmin = false;
  server.session.gCmdEmpresa = "0001";
  window = LoadMainWindow(context);
  EXPECT_FALSE(window.asksParameters);
  EXPECT_FALSE(window.canUpgrade);
  EXPECT_TRUE(window.unattended);
  EXPECT_EQ(server.session.gCasasDec, 3);
  EXPECT_TRUE(server.dialogs.messages.empty());

  const StatusPanels panels = StatusTexts(context);
  EXPECT_EQ(panels.company, "Padaria");
  EXPECT_EQ(panels.login, "SA");
  EXPECT_EQ(panels.date, "15-01-2026");
  EXPECT_EQ(panels.code, "Cód. Emp. 0001");
}

TEST_F(OpenWindow, NoticesANewerDatabaseAndOpensAlthoughTheCompanyDoesNot) {
  EXPECT_FALSE(DatabaseWentAhead(context));
  for (const auto& [version, ahead] : {std::pair("000000000001", false), std::pair("999900000000", true)}) {
    server.Run("Korvel0001", std::string("update Actualiza set Versao='") + version + "'");
    EXPECT_EQ(DatabaseWentAhead(context), ahead) << version;
  }
  server.session.gBaseDados = "Korvel0009";
  EXPECT_FALSE(DatabaseWentAhead(context));
  EXPECT_TRUE(server.dialogs.messages.empty());
  server.dialogs.answers = {0};
  EXPECT_FALSE(LoadMainWindow(context).asksParameters);
  EXPECT_THAT(server.dialogs.Texts(), ElementsAre(HasSubstr(server.session.gErroDescricao)));
}

TEST_F(OpenWindow, OpensFormsByRight) {
  world.AddLogin("ana");
  ASSERT_TRUE(world.LogIn("ana", "segredo"));
  const MenuEntry& wizard = *FindMenuEntry("mnuExportaWizard");
  EXPECT_FALSE(MayOpen(context, wizard));
  EXPECT_EQ(server.dialogs.LastText(), "Acesso Negado!");
  EXPECT_TRUE(MayOpen(context, *FindMenuEntry("mnuBloquearPrograma")));
  world.RunConfig(
      "insert into Acessos (Utilizador,Chave,Value,Empresa) values ('ANA','korvelfrmWizard',1,'0001')");
  EXPECT_TRUE(MayOpen(context, wizard));
  server.session.gCodEmpresa = "0002";
  EXPECT_FALSE(MayOpen(context, wizard));
}

TEST_F(OpenWindow, LeavesAMarkBehindWhereTheCompanyKeepsThem) {
  EXPECT_EQ(CloseMainWindow(context), AfterMainWindow::CompanySelection);
  server.Run(
      "Korvel0001",
      "create table utilizador (NumRegisto numeric(18,0) identity (1,1) not null, codigo varchar(20) null, "
      "UtilizadorUso varchar(20) null)\nGO\n"
      "insert into utilizador (codigo,UtilizadorUso) values ('sa','POSTO 1')\nGO\n"
      "insert into utilizador (codigo,UtilizadorUso) values ('ana','POSTO 2')");
  server.session.gCmdLogin = "sa";
  EXPECT_EQ(CloseMainWindow(context), AfterMainWindow::EndProgram);
  EXPECT_THAT(server.Rows("Korvel0001", "select codigo,UtilizadorUso from utilizador order by codigo"),
              ElementsAre("ana\tPOSTO 2", "sa\t"));
  server.session.gBaseDados = "Korvel0009";
  EXPECT_EQ(CloseMainWindow(context), AfterMainWindow::EndProgram);
  EXPECT_TRUE(server.dialogs.messages.empty());
}

}  // namespace
}  // namespace korvel::session
