#include "security/users.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "databases/logins.h"
#include "security/activity_log.h"
#include "security/password.h"
#include "security/rights.h"
#include "security/user_card.h"
#include "security_world.h"

namespace korvel::security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Users : public testing::Test, protected test::SecurityWorld {
 protected:
  Users() {
    for (const char* code : {"0001", "0002", "0003"}) AddCompany(code, false, false, true);
    AddCompany("0009");  // its database has gone
    server.session.gUtilizador = "sa";
  }
  UserCard Card(std::string_view login, std::vector<std::string> codes) {
    UserCard card = NewUserCard(*Config());
    card.login = login;
    card.password = card.confirmation = "Seg'redo";
    Tick(card, codes);
    return card;
  }
  /// The session as another login.
  void LogIn(std::string_view login, std::string_view password = "Seg'redo") {
    server.session.gLogin = server.session.gUtilizador = login;
    server.session.gPassword = password;
  }
  static void Tick(UserCard& card, const std::vector<std::string>& codes) {
    card.allCompanies = codes == std::vector<std::string>{"*"};
    for (UserCompany& company : card.companies)
      company.ticked = std::find(codes.begin(), codes.end(), company.code) != codes.end();
  }
  bool Change(std::string_view login, std::vector<std::string> codes, bool admin = false) {
    auto card = LoadUserCard(*Config(), *server.Open(), login);
    if (!card) return false;
    Tick(*card, codes);
    card->admin = admin;
    return ChangeFromCard(context, *card);
  }
  bool Opens(std::string_view login, std::string_view database, std::string_view password = "Seg'redo") {
    return session::ValidateLogin(context, server.Name(), database, login, password);
  }
  /// Which of the companies' databases have the login as a user.
  std::vector<std::string> UserIn(std::string_view login) {
    std::vector<std::string> codes;
    for (const char* code : {"0001", "0002", "0003"}) {
      if (databases::CheckUserInDB(context, "Korvel" + std::string(code), login)) codes.emplace_back(code);
    }
    return codes;
  }
  std::vector<std::string> Databases(std::string_view login) {
    return Rows("select Db_Name from UserDatabases where LoginName='" + std::string(login) +
                "' order by Db_Name");
  }
  std::string Management(std::string_view login) {
    const auto rows = Rows("select AdminTasks,AllDatabases from UserManagement where LoginName='" +
                           std::string(login) + "'");
    return rows.empty() ? "" : rows.front();
  }
};

TEST_F(Users, NewUserOfSomeCompaniesEntersThemAndHisCardShowsThem) {
  ASSERT_TRUE(CreateFromCard(context, Card("rui", {"0001", "0003", "0009"})));
  EXPECT_THAT(server.dialogs.messages, IsEmpty()) << "a company without its database is passed over";
  EXPECT_EQ(Management("rui"), "0\t0");
  EXPECT_THAT(Databases("rui"), ElementsAre("Korvel0001", "Korvel0003", "Korvel0009"));
  EXPECT_THAT(Rows("select DBName from UsersEmpresas where Login='rui' order by DBName"),
              ElementsAre("Korvel0001", "Korvel0003", "Korvel0009"));
  EXPECT_EQ(One("select count(*) from Admins"), "0");
  EXPECT_THAT(UserIn("rui"), ElementsAre("0001", "0003"));
  for (const char* database : {"master", "KorvelConfig", "Korvel0001"}) EXPECT_TRUE(Opens("rui", database));
  EXPECT_FALSE(Opens("rui", "Korvel0002"));
  EXPECT_FALSE(Opens("rui", "master", "outra"));
  const auto card = LoadUserCard(*Config(), *server.Open(), "RUI");
  ASSERT_TRUE(card);
  EXPECT_FALSE(card->admin || card->allCompanies || card->windowsAccount);
  std::string ticks;
  for (const UserCompany& company : card->companies) ticks += company.ticked ? '1' : '0';
  EXPECT_EQ(ticks, "1011");
  for (const char* none : {"ninguém", "x' or '1'='1"})
    EXPECT_FALSE(LoadUserCard(*Config(), *server.Open(), none)) << none;
}

TEST_F(Users, ChangesBackAndForthBetweenSomeAndAllCompanies) {
  ASSERT_TRUE(CreateFromCard(context, Card("rui", {"0001", "0002"})));
  for (const char* code : {"0001", "0002", "0003"}) AccCreateAPP(*Config(), kProgramFile, "rui", code);
  AccCreateAPP(*Config(), kProgramFile, "ana", "0001");
  ASSERT_TRUE(Change("rui", {"*"}));
  EXPECT_EQ(Management("rui"), "0\t1");
  EXPECT_THAT(Databases("rui"), IsEmpty());
  EXPECT_THAT(UserIn("rui"), ElementsAre("0001", "0002", "0003"));
  EXPECT_EQ(One("select count(*) from Acessos where Utilizador='rui'"), "3");
  ASSERT_TRUE(Change("rui", {"0002"}));
  EXPECT_EQ(Management("rui"), "0\t0");
  EXPECT_THAT(Databases("rui"), ElementsAre("Korvel0002"));
  EXPECT_THAT(UserIn("rui"), ElementsAre("0002"));
  EXPECT_THAT(Rows("select Utilizador+Empresa from Acessos order by Utilizador,Empresa"),
              ElementsAre("ana0001", "rui0002"));
  ASSERT_TRUE(Change("rui", {}));
  EXPECT_THAT(Databases("rui"), IsEmpty());
  EXPECT_THAT(UserIn("rui"), IsEmpty());
  EXPECT_TRUE(Opens("rui", "KorvelConfig")) << "the login stays, its companies have gone";
}

TEST_F(Users, AdministrativeTasksFollowInTheOlderTable) {
  UserCard card = Card("rui", {"*"});
  card.admin = true;
  ASSERT_TRUE(CreateFromCard(context, card));
  EXPECT_EQ(Management("rui"), "1\t1");
  EXPECT_THAT(Rows("select Uid from Admins"), ElementsAre("rui"));
  EXPECT_TRUE(databases::ValidarLoginSysAdmin(context, "rui", "Seg'redo"));
  ASSERT_TRUE(Change("rui", {"*"}, true));
  EXPECT_THAT(Rows("select Uid from Admins"), ElementsAre("rui")) << "once";
  ASSERT_TRUE(Change("rui", {"*"}, false));
  EXPECT_EQ(Management("rui"), "0\t1");
  EXPECT_EQ(One("select count(*) from Admins"), "0");
  UserCard longName = Card("um-login-de-mais-de-vinte-letras", {"0001"});
  longName.admin = true;
  EXPECT_TRUE(CreateFromCard(context, longName));
  EXPECT_EQ(Management(longName.login), "1\t0");
}

TEST_F(Users, PasswordChangesOnlyWhenOneWasTyped) {
  ASSERT_TRUE(CreateFromCard(context, Card("rui", {"0001"})));
  ASSERT_TRUE(Change("rui", {"0001"}));
  EXPECT_TRUE(Opens("rui", "master"));
  UserCard card = *LoadUserCard(*Config(), *server.Open(), "rui");
  card.password = "nova";
  EXPECT_FALSE(ChangeFromCard(context, card));
  EXPECT_EQ(server.dialogs.LastText(), "As Passwords não condizem!");
  card.confirmation = "nova";
  ASSERT_TRUE(ChangeFromCard(context, card));
  EXPECT_TRUE(Opens("rui", "master", "nova"));
  EXPECT_FALSE(Opens("rui", "master"));
}

TEST_F(Users, RefusedCardsLeaveNothing) {
  ASSERT_TRUE(CreateFromCard(context, Card("rui", {"0001"})));
  const std::string required = "Os Campos de Login e Password são obrigatórios!";
  const std::string failed = "Não foi possivel criar o Utilizador";
  const struct {
    std::string login, password, confirmation, text;
  } cases[] = {
      {"", "x", "x", required},
      {"  ", "x", "x", required},
      {"ana", "", "", required},
      {"ana", "x", "X", "As passwords não condizem !"},
      {"rui", "x", "x", failed},
      {"ana'; drop table usermanagement --", "x", "x", failed},
      {"ana] with password='x' --", "x", "x", failed},
      {std::string(129, 'a'), "x", "x", failed},
  };
  for (const auto& [login, password, confirmation, text] : cases) {
    UserCard card = Card(login, {"*"});
    card.password = password;
    card.confirmation = confirmation;
    EXPECT_FALSE(CreateFromCard(context, card)) << login;
    EXPECT_EQ(server.dialogs.LastText(), text) << login;
  }
  EXPECT_EQ(One("select count(*) from UserManagement where LoginName like 'ana%'"), "0");
  EXPECT_EQ(One("select count(*) from UserManagement where LoginName like 'aaa%'"), "0");
  EXPECT_EQ(Management("rui"), "0\t0");
}

TEST_F(Users, DeletionTakesTheLoginItsUsersAndItsRows) {
  ASSERT_TRUE(CreateFromCard(context, Card("rui", {"0001", "0002"})));
  ASSERT_TRUE(CreateFromCard(context, Card("ana", {"0001"})));
  server.dialogs.confirmations = {false, true};
  EXPECT_FALSE(EliminaUtilizador(context, "rui"));
  EXPECT_TRUE(Opens("rui", "Korvel0001"));
  EXPECT_TRUE(EliminaUtilizador(context, "rui"));
  EXPECT_EQ(server.dialogs.deletions.back().title, "Confirmar Eliminação :");
  EXPECT_EQ(server.dialogs.deletions.back().text, "Eliminar o Utilizador rui");
  EXPECT_FALSE(Opens("rui", "master"));
  EXPECT_EQ(Management("rui"), "");
  EXPECT_THAT(Databases("rui"), IsEmpty());
  EXPECT_THAT(UserIn("rui"), IsEmpty());
  EXPECT_TRUE(Opens("ana", "Korvel0001"));
  EXPECT_THAT(Databases("ana"), ElementsAre("Korvel0001"));
}

TEST_F(Users, AccountsThatStay) {
  UserCard admin = Card("chefe", {"*"});
  admin.admin = true;
  ASSERT_TRUE(CreateFromCard(context, admin));
  LogIn("CHEFE");
  const struct {
    bool (*may)(const session::Context&, std::string_view);
    const char* login;
    const char* text;
    const char* title;
  } cases[] = {
      {MayChangeUser, "chefe", "Não Pode Alterar a Conta em Uso.", "Atenção:"},
      {MayChangeUser, "Sa", "Não Pode Alterar a Conta de Serviço do Sistema!", "Atenção:"},
      {MayDeleteUser, "SA", "Não pode eliminar esta Conta!", ""},
      {MayDeleteUser, "Chefe ", "Não pode eliminar a conta em uso !", ""},
      {EliminaUtilizador, "sa", "Não pode eliminar esta Conta!", ""},
  };
  for (const auto& [may, login, text, title] : cases) {
    EXPECT_FALSE(may(context, login)) << text;
    EXPECT_EQ(server.dialogs.LastText(), text);
    EXPECT_EQ(server.dialogs.LastTitle(), title);
  }
  EXPECT_TRUE(MayChangeUser(context, "rui"));
  EXPECT_TRUE(MayCreateUser(context));
}

TEST_F(Users, AnOrdinaryUserLivesWithHisRights) {
  MakeBaseSet();
  ASSERT_TRUE(CreateFromCard(context, Card("rui", {"0001"})));
  LogIn("RUI");
  server.session.gCodEmpresa = "0001";
  server.session.gBaseDados = "Korvel0001";
  ASSERT_TRUE(EnterWithRights(context, *Config(), "0001"));
  EXPECT_TRUE(MayOpenForm(context, "frmTabHeader"));
  EXPECT_TRUE(Acessos_bln(context, "frmTabHeader", "cmdAdicionar", true));
  EXPECT_TRUE(InsertLog(context, {module::kTables, action::kNew, "registo", "janela"}));
  server.dialogs.answers = {1};
  EXPECT_TRUE(AlteraPassword(context, {"Seg'redo", "nova", "nova"}));
  EXPECT_EQ(One("select count(*) from LogGeral where Utilizador='RUI'"), "2");
  server.session.gBaseDados = "Korvel0002";
  server.dialogs.answers = {0};
  EXPECT_FALSE(Acessos_bln(context, "frmTabHeader", "cmdAdicionar", true)) << "another's company";
}

TEST_F(Users, AUserWhoIsRemovedMeanwhileIsNotChangedAndCanDoNothingMore) {
  MakeBaseSet();
  ASSERT_TRUE(CreateFromCard(context, Card("rui", {"0001"})));
  const auto card = LoadUserCard(*Config(), *server.Open(), "rui");
  server.dialogs.confirmations = {true};
  ASSERT_TRUE(EliminaUtilizador(context, "rui"));
  EXPECT_FALSE(ChangeFromCard(context, *card));
  EXPECT_EQ(server.dialogs.LastText(), "Não foi possivel alterar o Utilizador");
  EXPECT_EQ(Management("rui"), "");
  server.dialogs.Clear();
  LogIn("RUI");
  EXPECT_FALSE(InsertLog(context, {module::kTables, action::kNew, "registo", "janela"}));
  EXPECT_THAT(server.dialogs.messages, IsEmpty());
  server.dialogs.answers = {0};
  EXPECT_FALSE(Acessos_bln(context, "frmTabHeader", "cmdAdicionar", true));
  EXPECT_FALSE(AlteraPassword(context, {"Seg'redo", "nova", "nova"}));
  EXPECT_EQ(server.dialogs.LastText(), "Password inválida!");
}

TEST_F(Users, OnlyAdministratorsMayTouchUsers) {
  ASSERT_TRUE(CreateFromCard(context, Card("rui", {"*"})));
  LogIn("RUI");
  EXPECT_FALSE(MayCreateUser(context));
  EXPECT_EQ(server.dialogs.LastText(), "o Seu Login não lhe permite esta tarefa !");
  EXPECT_FALSE(MayChangeUser(context, "ana"));
  EXPECT_FALSE(EliminaUtilizador(context, "ana"));
  EXPECT_EQ(server.dialogs.LastText(), "O seu Login não lhe permite fazer esta tarefa!");
  EXPECT_FALSE(CreateFromCard(context, Card("intruso", {"*"}))) << "the server itself refuses";
  EXPECT_EQ(server.dialogs.LastText(), "Não foi possivel criar o Utilizador");
  EXPECT_EQ(Management("intruso"), "");
}

}  // namespace
}  // namespace korvel::security
