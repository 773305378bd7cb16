#include "security/password.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/logins.h"
#include "security_world.h"

namespace korvel::security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Password : public testing::Test, protected test::SecurityWorld {
 protected:
  Password() {
    databases::CreateLogin(context, "rita", "Velha'1", true);
    server.session.gLogin = server.session.gUtilizador = "RITA";
    server.session.gPassword = "Velha'1";
    server.dialogs.Clear();
  }
  bool Opens(std::string_view password) {
    return session::ValidateLogin(context, server.Name(), "master", "rita", password);
  }
};

TEST_F(Password, RefusalsChangeNothing) {
  const struct {
    PasswordChange change;
    const char* text;
  } cases[] = {
      {{"Velha'1", "nova", "Nova"}, "A nova password não condiz com a confirmação!"},
      {{"Velha'1", "", ""}, "A password não pode ser vazia !"},
      {{"Velha'1", "  ", "  "}, "A password não pode ser vazia !"},
      {{"velha'1", "nova", "nova"}, "Password inválida!"},
      {{"", "nova", "nova"}, "Password inválida!"},
  };
  for (const auto& [change, text] : cases) {
    EXPECT_FALSE(AlteraPassword(context, change)) << text;
    EXPECT_EQ(server.dialogs.LastText(), text);
  }
  server.dialogs.answers = {0};
  EXPECT_FALSE(AlteraPassword(context, {"Velha'1", "nova", "nova"})) << "not confirmed";
  ASSERT_EQ(server.dialogs.questions.size(), 1U);
  EXPECT_THAT(server.dialogs.questions.back().buttons, ElementsAre("Não", "Sim"));
  EXPECT_TRUE(Opens("Velha'1"));
  EXPECT_EQ(server.session.gPassword, "Velha'1");
  EXPECT_EQ(One("select count(*) from LogGeral"), "0");
}

TEST_F(Password, ChangeHoldsOnTheServerAndInTheSession) {
  server.dialogs.answers = {1};
  ASSERT_TRUE(AlteraPassword(context, {"Velha'1", "N'ova \"2\"", "N'ova \"2\""}));
  EXPECT_EQ(server.dialogs.LastText(), "A sua password foi mudada com sucesso.");
  EXPECT_EQ(server.session.gPassword, "N'ova \"2\"");
  EXPECT_TRUE(Opens("N'ova \"2\""));
  EXPECT_FALSE(Opens("Velha'1"));
  EXPECT_THAT(Rows("select Modulo,Accao,FormCaption,Utilizador,Conteudo from LogGeral"),
              ElementsAre("UT\tA\tAlteração de Password\tRITA\tRITA"));
  for (const std::string& text : server.dialogs.Texts()) EXPECT_EQ(text.find("ova \"2"), std::string::npos);
}

TEST_F(Password, LockOpensWhateverTheCase) {
  server.session.gPassword = "Ção'1";
  const std::pair<const char*, bool> cases[] = {
      {"ção'1", true}, {"ÇÃO'1", true}, {"cao'1", false}, {"ção'1 ", false}, {"", false}};
  for (const auto& [password, opens] : cases) {
    server.dialogs.Clear();
    EXPECT_EQ(DesbloqueiaPrograma(context, password), opens) << password;
    EXPECT_EQ(server.dialogs.LastText(), opens ? "" : "Password Inválida !");
    EXPECT_EQ(server.dialogs.LastFocus(), opens ? "" : "txtPassword");
  }
}

TEST_F(Password, ALoginIsAskedUntilItIsGiven) {
  server.dialogs.logins = {toolkit::Credentials{" ", "x"}, toolkit::Credentials{"ana", "y"}, std::nullopt};
  const auto given = RequestPassword(context);
  ASSERT_TRUE(given);
  EXPECT_EQ(given->login, "ana");
  EXPECT_EQ(given->password, "y");
  EXPECT_THAT(server.dialogs.Texts(), ElementsAre("Tem Que Introduzir o Login!"));
  EXPECT_EQ(server.dialogs.LastTitle(), "Atenção:");
  EXPECT_FALSE(RequestPassword(context));
}

}  // namespace
}  // namespace korvel::security
