#include "databases/version_check.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "databases/companies.h"
#include "databases/config_upgrade.h"
#include "databases/version.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

constexpr const char* kNeeded =
    "A Versão do Aplicativo Requer que seja efectuada a Actualização de Base de Dados!";
constexpr const char* kWhere =
    "Na Selecção de Empresas, Execute Utilitários -> Actualizar Todas as Empresas.";

class VersionCheck : public testing::Test {
 protected:
  VersionCheck() {
    CreateCompany(context, {.code = "0001", .description = "Um"});
    server.session.gAutenticacaoWindows = false;
  }

  void SetVersion(std::string_view database, std::string_view version) {
    server.Open(database)->Execute("update Actualiza set Versao=?", {version});
  }

  test::TestServer server;
  session::Context context = server.Context();
};

TEST_F(VersionCheck, TellsWhatToDo) {
  const std::string company = std::string("Recomendamos que Actualize Todas as Bases de Dados:\n") + kWhere;
  const struct {
    std::string_view version;
    VersionQuestion question;
    std::vector<std::string> said;
  } cases[] = {
      {"", {"0001"}, {kNeeded}},
      {"", {"0001", false, true}, {}},
      {"000000000001", {"0001"}, {kNeeded, company}},
      {"000000000001", {"0001", true}, {std::string(kNeeded) + " do Módulo Principal", company}},
      {"000000000001", {""}, {kNeeded, kWhere}},
      {"000000000001", {"0001", true, true}, {}},
      {"999900000000",
       {"0001"},
       {"A Versão do Aplicativo Encontra-se Desactualizada!", "Contacte o Administrador do Sistema!"}},
      {"999900000000", {"", false, true}, {}},
  };
  for (const auto& c : cases) {
    SetVersion(c.question.code.empty() ? "KorvelConfig" : "Korvel0001", c.version);
    server.dialogs.Clear();
    EXPECT_FALSE(VerificaVersao(context, c.question)) << c.version;
    EXPECT_EQ(server.dialogs.Texts(), c.said) << c.version;
  }
}

TEST_F(VersionCheck, EqualVersionsPassInSilenceAlsoThatOfAnOldConfiguration) {
  EXPECT_TRUE(VerificaVersao(context, {"0001"}));
  EXPECT_TRUE(VerificaVersao(context, {""}));
  EXPECT_EQ(server.dialogs.Texts(), std::vector<std::string>{});
  EXPECT_FALSE(VerificaVersao(context, {"0002", false, true}));
  EXPECT_EQ(server.dialogs.LastText(),
            fmt::format("{}\n{}", server.session.gErroDescricao, server.session.gErroNumero))
      << "a database that does not open is shown even in silence";
  server.Run("KorvelConfig", "drop table Actualiza");
  EXPECT_FALSE(VerificaVersao(context, {""})) << "no row in Entidade";
  server.Open("KorvelConfig")->Execute("insert into Entidade (Versao) values (?)", {SchemaVersion()});
  EXPECT_TRUE(VerificaVersao(context, {""}));
}

TEST(ShownVersion, IsWithoutLeadingZeros) {
  const std::pair<const char*, const char*> cases[] = {
      {"000300000560", "3.0.560"}, {"", ""}, {"    ", ""}, {"0003", "3.0.0"}, {"00x300000001", "0.0.1"}};
  for (const auto& [digits, shown] : cases) EXPECT_EQ(ShownVersion(digits), shown) << digits;
}

}  // namespace
}  // namespace korvel::databases
