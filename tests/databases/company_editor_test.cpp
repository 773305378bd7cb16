#include "databases/company_editor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/config_upgrade.h"
#include "databases/logins.h"
#include "support/in_process.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

class CompanyEditor : public testing::Test {
 protected:
  CompanyEditor() {
    EnsureConfigDatabase(context);
    AddLogin("ANA", 0);
    AddLogin("RUI", 0);
    AddLogin("TUDO", 1);
    server.Run("KorvelConfig",
               "insert into UserManagement (LoginName,AdminTasks,AllDatabases) values ('sa',1,1)");
  }

  void AddLogin(const std::string& login, int all) {
    EXPECT_TRUE(CreateLogin(context, login, "x", false)) << server.session.gErroDescricao;
    server.Open("KorvelConfig")
        ->Execute("insert into UserManagement (LoginName,AdminTasks,AllDatabases) values (?,0,?)",
                  {login, all});
  }
  CompanyCard NewCard(std::string description, const std::vector<std::string>& ticked) {
    CompanyCard card = NewCompanyCard(*server.Open("KorvelConfig"));
    card.company.description = std::move(description);
    return Ticked(card, ticked);
  }
  CompanyCard Ticked(CompanyCard card, const std::vector<std::string>& logins) {
    for (CompanyUser& user : card.users) user.ticked = std::ranges::find(logins, user.login) != logins.end();
    return card;
  }
  CompanyCard Card(std::string_view code) {
    return LoadCompanyCard(*server.Open("KorvelConfig"), code).value();
  }
  std::vector<std::string> TickedIn(std::string_view code) {
    std::vector<std::string> logins;
    for (const CompanyUser& user : Card(code).users) {
      if (user.ticked) logins.push_back(user.login);
    }
    return logins;
  }
  bool Enters(std::string_view login, std::string_view database) {
    return session::ValidateLogin(context, server.Name(), database, login, "x");
  }

  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(CompanyEditor, CreationLetsTheTickedUsersIn) {
  server.dialogs.answers = {0, 0};
  ASSERT_TRUE(CreateFromCard(context, NewCard("Padaria", {"ANA", "TUDO", "sa"})));
  EXPECT_EQ(TickedIn("0001"), std::vector<std::string>{"ANA"}) << "who sees all companies needs no row";
  for (const char* database : {"Korvel0001", "KorvelConfig"}) {
    EXPECT_TRUE(Enters("ANA", database)) << database;
    EXPECT_TRUE(Enters("TUDO", database)) << database;
    EXPECT_FALSE(Enters("RUI", database)) << database;
  }
  ASSERT_TRUE(CreateFromCard(context, NewCard("Café", {"ANA", "RUI"}))) << "ANA is in KorvelConfig already";
  EXPECT_EQ(TickedIn("0002"), (std::vector<std::string>{"ANA", "RUI"}));
  EXPECT_FALSE(Enters("RUI", "Korvel0001"));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
}

TEST_F(CompanyEditor, ChangeLetsUsersInAndOut) {
  server.dialogs.answers = {0, 0, 0};
  ASSERT_TRUE(CreateFromCard(context, NewCard("Padaria", {"ANA"})));
  server.Run("KorvelConfig",
             "insert into Acessos (Utilizador,Chave,Empresa) values ('ANA','WMenu','0001')\nGO\n"
             "insert into Acessos (Utilizador,Chave,Empresa) values ('ANA','WMenu','0002')");
  CompanyCard card = Ticked(Card("0001"), {"RUI"});
  card.company.description = "Pastelaria d'Ana";
  card.company.independent = true;
  ASSERT_TRUE(ChangeFromCard(context, card));
  EXPECT_EQ(TickedIn("0001"), std::vector<std::string>{"RUI"});
  EXPECT_FALSE(Enters("ANA", "Korvel0001"));
  EXPECT_TRUE(Enters("RUI", "Korvel0001"));
  EXPECT_EQ(server.Rows("KorvelConfig", "select Empresa from Acessos"), std::vector<std::string>{"0002"});
  EXPECT_EQ(server.Rows("KorvelConfig", "select Descricao,AcessoPrincipal,AcessoIndependente from Empresas"),
            std::vector<std::string>{"Pastelaria d'Ana\t0\t1"});
  ASSERT_TRUE(ChangeFromCard(context, Ticked(Card("0001"), {"RUI"}))) << "nothing changes";
}

TEST_F(CompanyEditor, ChangedMainCompanyTakesTheFlag) {
  server.dialogs.answers = {0, 0, 0};
  CompanyCard first = NewCard("Um", {});
  first.company.main = true;
  ASSERT_TRUE(CreateFromCard(context, first));
  ASSERT_TRUE(CreateFromCard(context, NewCard("Dois", {})));
  CompanyCard second = Card("0002");
  second.company.main = true;
  ASSERT_TRUE(ChangeFromCard(context, second));
  EXPECT_FALSE(Card("0001").company.main);
  EXPECT_TRUE(Card("0002").company.main);
}

TEST_F(CompanyEditor, QuestionsComeAfterTheCode) {
  CompanyCard card = NewCard("Um", {});
  card.company.code = "00A1";
  EXPECT_FALSE(CreateFromCard(context, card));
  EXPECT_FALSE(ChangeFromCard(context, card));
  EXPECT_EQ(server.dialogs.Texts(),
            std::vector<std::string>(2, "O Codigo da Empresa tem que ser numérico !"));
  card.company.code = "1";
  server.dialogs.answers = {1, 1};
  EXPECT_FALSE(CreateFromCard(context, card));
  EXPECT_FALSE(ChangeFromCard(context, card));
  EXPECT_EQ(server.One("master", "select count(*) from sysdatabases where name='Korvel0001'"), "0");
}

TEST_F(CompanyEditor, LoginWithoutTheRightToCreateIsTold) {
  AddOwnerToDB(context, "KorvelConfig", "ANA");
  server.session.gLogin = "ANA";
  server.session.gPassword = "x";
  server.dialogs.answers = {0};
  CompanyCard card;
  card.company = {.code = "0001", .description = "Um"};
  EXPECT_FALSE(CreateFromCard(context, card));
  EXPECT_EQ(server.dialogs.LastText(),
            "O seu Login não tem direitos para criar empresas !\nContacte o seu supervisor.");
}

TEST_F(CompanyEditor, OfTwoProcessesThatCreateTheSameCompanyOneWins) {
  const auto create = [&](const std::function<void()>&) {
    const bool made = CreateCompany(context, {.code = "0001", .description = "Um"}).has_value();
    const bool told = server.dialogs.LastText() == "Empresa Já  Existente!";
    return made && server.dialogs.messages.empty() ? 1 : told ? 2 : 3;
  };
  std::vector<int> results;
  {
    test::InProcess first(create);
    test::InProcess second(create);
    results = {first.Wait(), second.Wait()};
  }
  EXPECT_THAT(results, testing::UnorderedElementsAre(1, 2));
  EXPECT_EQ(server.One("KorvelConfig", "select count(*) from Empresas"), "1");
  EXPECT_EQ(server.One("Korvel0001", "select count(*) from Actualiza"), "1");
}

TEST_F(CompanyEditor, DeletionTakesDatabaseRowAndRights) {
  server.dialogs.answers = {0, 0};
  ASSERT_TRUE(CreateFromCard(context, NewCard("Um", {"ANA"})));
  server.Run("KorvelConfig", "insert into Acessos (Utilizador,Chave,Empresa) values ('ANA','WMenu','0001')");
  ASSERT_TRUE(DeleteCompany(context, "0001")) << server.dialogs.LastText();
  EXPECT_EQ(server.One("master", "select count(*) from sysdatabases where name='Korvel0001'"), "0");
  for (const char* table : {"Empresas", "Acessos", "UserDatabases"}) {
    EXPECT_EQ(server.One("KorvelConfig", fmt::format("select count(*) from {}", table)), "0") << table;
  }
  ASSERT_TRUE(CreateFromCard(context, NewCard("Outra", {"ANA"}))) << "the code is free again";
}

TEST_F(CompanyEditor, CompanyInUseStaysWholeAndOneWithoutDatabaseCanBeTakenOffTheList) {
  ASSERT_TRUE(CreateCompany(context, {.code = "0001", .description = "Um"}));
  {
    const auto user = server.Open("Korvel0001");
    EXPECT_FALSE(DeleteCompany(context, "0001"));
  }
  EXPECT_THAT(server.dialogs.LastText(), testing::StartsWith("Não foi possivel Eliminar a Empresa!\n"));
  EXPECT_FALSE(DeleteCompany(context, "1; drop database KorvelConfig"));
  EXPECT_EQ(server.One("KorvelConfig", "select count(*) from Empresas"), "1");
  server.Run("master", "drop database Korvel0001");
  EXPECT_TRUE(DeleteCompany(context, "0001"));
  EXPECT_EQ(server.One("KorvelConfig", "select count(*) from Empresas"), "0");
}

TEST_F(CompanyEditor, InstallMarkGoesBackAndForth) {
  EXPECT_FALSE(SwitchInstallMark(context)) << "the column comes with the company selection";
  server.Run("KorvelConfig",
             "alter table Entidade add SetForms smallint null\nGO\n"
             "insert into Entidade (SetForms) values (null)");
  for (const char* mark : {"99", "0", "99"}) {
    EXPECT_TRUE(SwitchInstallMark(context));
    EXPECT_EQ(server.One("KorvelConfig", "select SetForms from Entidade"), mark);
    EXPECT_EQ(server.dialogs.LastText(), "Verificação Concluida");
  }
}

}  // namespace
}  // namespace korvel::databases
