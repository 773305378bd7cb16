#include "session/entry/company_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/sql_admin.h"
#include "databases/version.h"
#include "session_entry/selection_world.h"

namespace korvel::session {
namespace {

using test::Selection;
using testing::IsEmpty;

TEST_F(Selection, ListsCompaniesWithTheirStates) {
  world.RunConfig("insert into Empresas (Codigo,Descricao) values ('0004','Sem base de dados')");
  world.RunConfig("insert into Empresas (Codigo,Descricao) values ('x]y','Nome hostil')");
  databases::SetReadOnly(*server.Open(), "Korvel0003", true);
  ASSERT_TRUE(form.Load(context));
  EXPECT_EQ(form.Caption(), "Empresas permitidas ao utilizador (SA) no Server ((LOCALDB)\\TESTE)");
  EXPECT_TRUE(form.HasAdminMenus());
  const std::string version(databases::ProgramVersion());
  const CompanyLines expected{{"0001", "Padaria", 1, false, false, version, false},
                              {"0002", "Talho", 2, true, false, version, false},
                              {"0003", "Café", 3, false, true, version, true},
                              {"0004", "Sem base de dados", 4, false, false, "", false},
                              {"x]y", "Nome hostil", 5, false, false, "", false}};
  EXPECT_TRUE(form.Companies() == expected);
  EXPECT_EQ(server.session.gListaEmpresas,
            "0001:0001 - Padaria;0002:0002 - Talho;0003:0003 - Café;0004:0004 - Sem base de dados;"
            "x]y:x]y - Nome hostil;");
  EXPECT_FALSE(server.session.gSmtpServer.empty());
  EXPECT_EQ(world.Config("select SetForms from Entidade"), std::vector<std::string>{"0"});
  ASSERT_TRUE(form.Load(context));
  EXPECT_EQ(world.Config("select SetForms from Entidade").size(), 1u) << "one row stays one";
}

TEST_F(Selection, ListsWhatTheUserMaySee) {
  world.AddLogin("ana");
  struct Seen {
    const char* rights;  // of the user, as a script
    std::vector<std::string> codes;
  };
  const Seen kSeen[] = {
      {"update UserManagement set AllDatabases=1 where LoginName='ana'", {"0001", "0002", "0003"}},
      {"update UserManagement set AllDatabases=0 where LoginName='ana'", {}},
      {"insert into UserDatabases (LoginName,Db_Name) values ('ANA','Korvel0003')", {"0003"}},
      {"insert into UserDatabases (LoginName,Db_Name) values ('ana','KORVEL0001')", {"0001", "0003"}},
      {"update UserDatabases set Db_Name=''' or 1=1 --' where Db_Name='Korvel0003'", {"0001"}},
      {"insert into UserDatabases (LoginName,Db_Name) values ('ana','1')", {"0001"}},
  };
  ASSERT_TRUE(world.LogIn("ana", "segredo"));
  for (const Seen& seen : kSeen) {
    world.RunConfig(seen.rights);
    ASSERT_TRUE(form.Load(context)) << seen.rights;
    EXPECT_EQ(Codes(), seen.codes) << seen.rights;
    EXPECT_FALSE(form.HasAdminMenus());
  }
  world.RunConfig("delete from UserManagement where LoginName='ana'");
  EXPECT_FALSE(form.LoadEmpresas(context));
  EXPECT_EQ(server.dialogs.LastText(), "Não Foi Possível Aceder à Informação do Utilizador!");
  EXPECT_EQ(server.dialogs.LastTitle(), "Atenção:");
}

TEST_F(Selection, OlderTableStillTellsWhoSeesWhat) {
  world.RunConfig("insert into UsersEmpresas (Login,DBName) values ('ana','KORVEL0002')");
  const auto config = server.Open("KorvelConfig");
  EXPECT_EQ(ListCompaniesOfOlderTable(context, *config).size(), 3u);
  server.session.gSysAdmin = false;
  EXPECT_THAT(ListCompaniesOfOlderTable(context, *config), IsEmpty());
  server.session.gLogin = "ANA";
  const CompanyLines lines = ListCompaniesOfOlderTable(context, *config);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].code, "0002");
}

TEST_F(Selection, AdministrativeMenusNeedTheTasksToo) {
  world.AddLogin("chefe", "senha", true);
  ASSERT_TRUE(world.LogIn("chefe", "senha"));
  for (const auto& [tasks, available] :
       {std::pair("0", false), std::pair("1", true), std::pair("null", false)}) {
    world.RunConfig(std::string("update UserManagement set AdminTasks=") + tasks +
                    " where LoginName='chefe'");
    ASSERT_TRUE(form.Load(context));
    EXPECT_EQ(form.HasAdminMenus(), available) << tasks;
  }
  world.RunConfig("update UserManagement set AdminTasks=null where LoginName='sa'");
  ASSERT_TRUE(world.LogIn("sa"));
  ASSERT_TRUE(form.Load(context));
  EXPECT_TRUE(form.HasAdminMenus());
}

TEST_F(Selection, NothingHappensWithoutAChoice) {
  ASSERT_TRUE(form.Load(context));
  server.statements.clear();
  EXPECT_FALSE(form.Selecionar(context));
  EXPECT_FALSE(form.Select("0009"));
  EXPECT_FALSE(form.Selecionar(context));
  form.SelectLine(17);
  EXPECT_FALSE(form.Selecionar(context));
  EXPECT_FALSE(form.EliminarEmpresa(context) || form.BloquearEmpresa(context) ||
               form.VerificarEmpresa(context));
  EXPECT_THAT(server.statements, IsEmpty());
}

}  // namespace
}  // namespace korvel::session
