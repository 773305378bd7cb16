#include "session/entry/company_selection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "databases/sql_admin.h"
#include "databases/version.h"
#include "session_entry/selection_world.h"

namespace korvel::session {
namespace {

using test::Selection;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(Selection, EntersACompany) {
  server.session.gAnoAberto = "2009";
  OpenAs("sa", "", "0001");
  ASSERT_TRUE(form.Selecionar(context)) << server.dialogs.LastText();
  EXPECT_EQ(server.session.gCodEmpresa, "0001");
  EXPECT_EQ(server.session.gBaseDados, "Korvel0001");
  EXPECT_EQ(server.session.gNomeEmpresa, "Padaria");
  EXPECT_EQ(server.session.gAnoAberto, "");
  EXPECT_THAT(world.Config(
                  "select Modulo,Accao,FormCaption,Conteudo,CodEmpresa,DescEmpresa,Utilizador from LogGeral"),
              ElementsAre("I\tI\tLog In\tEntrou na Empresa 0001\t0001\tPadaria\tSA"));
  EXPECT_THAT(server.dialogs.Texts(), IsEmpty());
}

TEST_F(Selection, SaysThatACompanyHasGone) {
  ASSERT_TRUE(form.Load(context));
  ASSERT_TRUE(form.Select("0001"));
  server.Run("master", "drop database Korvel0001");
  EXPECT_FALSE(form.Selecionar(context));
  EXPECT_THAT(server.dialogs.Texts(),
              ElementsAre(HasSubstr(" - Não foi possivel abrir a Empresa seleccionada!\n")));
  EXPECT_EQ(server.session.gCodEmpresa, "");
}

TEST_F(Selection, AsksForTheUpgradeOfAnOlderCompanyAndStopsAtANewerOne) {
  OpenAs("sa", "", "0001");
  SetVersion("Korvel0001", "000000000001");
  server.dialogs.answers = {1};
  EXPECT_FALSE(form.Selecionar(context));
  ASSERT_EQ(server.dialogs.questions.size(), 1u);
  EXPECT_EQ(server.dialogs.questions[0].text, "Quer Actualizar a Base de Dados?");
  EXPECT_THAT(server.dialogs.questions[0].buttons, ElementsAre("Sim", "Não"));
  EXPECT_EQ(VersionOf("Korvel0001"), "000000000001");

  server.dialogs.answers = {0};
  EXPECT_TRUE(form.Selecionar(context)) << server.dialogs.LastText();
  EXPECT_EQ(VersionOf("Korvel0001"), databases::SchemaVersion());

  SetVersion("Korvel0001", "999900000000");
  server.dialogs.answers = {0};
  EXPECT_FALSE(form.Selecionar(context));
  EXPECT_THAT(server.dialogs.LastText(),
              HasSubstr("Não pode Actualizar a Empresa 0001 porque têm o aplicativo desactualizado!"));
  EXPECT_EQ(VersionOf("Korvel0001"), "999900000000");
}

TEST_F(Selection, OrdinaryUserEntersWhereTheServerLetsHimAndIsNotAskedForAnUpgrade) {
  world.AddLogin("ana");
  OpenAs("ana", "segredo", "0001");
  EXPECT_EQ(form.Companies()[0].version, "");
  EXPECT_FALSE(form.Selecionar(context));
  EXPECT_THAT(server.dialogs.Texts(),
              ElementsAre(HasSubstr("Não foi possivel abrir a Empresa seleccionada!")));
  EXPECT_THAT(world.Config("select * from Acessos where Utilizador='ana'"), IsEmpty());

  BecomeLogin("sa", "");
  world.LetIn("ana", "0001");
  SetVersion("Korvel0001", "000000000001");
  OpenAs("ana", "segredo", "0001");
  EXPECT_FALSE(form.Selecionar(context));
  EXPECT_THAT(server.dialogs.questions, IsEmpty());
  EXPECT_EQ(server.dialogs.LastText(), "Contacte o Administrador do Sistema antes de Operar.");

  SetVersion("Korvel0001", databases::SchemaVersion());
  BecomeLogin("sa", "");
  ASSERT_TRUE(databases::DeleteLogin(context, "ana")) << server.session.gErroDescricao;
  BecomeLogin("ANA", "segredo");
  EXPECT_FALSE(form.Selecionar(context)) << "the login was dropped meanwhile";
  EXPECT_EQ(server.session.gCodEmpresa, "");
}

/// Presses the button again while a question of the first entry stands open.
class ImpatientDialogs final : public toolkit::Dialogs {
 public:
  ImpatientDialogs(test::TestServer& server, CompanySelection& form) : server_(server), form_(form) {}
  void Message(toolkit::Icon, std::string_view, std::string_view) override {}
  std::size_t Ask(std::string_view, std::span<const std::string_view>) override {
    ++asked;
    const Context context{server_.session,  server_.servers,  *this,
                          server_.progress, server_.settings, server_.clock};
    enteredTwice = form_.Selecionar(context);
    return 0;
  }
  std::size_t Alert(std::string_view, std::span<const std::string_view>) override { return 0; }
  bool ConfirmDeletion(std::string_view, std::string_view) override { return false; }
  std::optional<toolkit::Credentials> AskLogin(std::string_view, std::string_view) override { return {}; }
  void Focus(std::string_view) override {}

  int asked = 0;
  bool enteredTwice = false;

 private:
  test::TestServer& server_;
  CompanySelection& form_;
};

TEST_F(Selection, EntersOnceHoweverOftenItIsPressed) {
  OpenAs("sa", "", "0001");
  SetVersion("Korvel0001", "000000000001");
  ImpatientDialogs dialogs(server, form);
  const Context impatient{server.session,  server.servers,  dialogs,
                          server.progress, server.settings, server.clock};
  EXPECT_TRUE(form.Selecionar(impatient));
  EXPECT_EQ(dialogs.asked, 1);
  EXPECT_FALSE(dialogs.enteredTwice);
  EXPECT_EQ(world.Config("select count(*) from LogGeral"), std::vector<std::string>{"1"});
  EXPECT_TRUE(form.Selecionar(context)) << "the button is free again";
}

TEST_F(Selection, RightsAreThoseOfTheMainCompanyUnlessItsOwnCount) {
  world.AddLogin("ana");
  for (const char* code : {"0001", "0002", "0003"}) world.LetIn("ana", code);
  OpenAs("ana", "segredo", "0001");
  EXPECT_TRUE(form.Selecionar(context)) << server.dialogs.LastText();
  constexpr const char* kCompanies =
      "select distinct Empresa from Acessos where Utilizador='ana' order by Empresa";
  EXPECT_THAT(world.Config(kCompanies), ElementsAre("0002"));
  ASSERT_TRUE(form.Select("0003"));
  EXPECT_TRUE(form.Selecionar(context)) << server.dialogs.LastText();
  EXPECT_THAT(world.Config(kCompanies), ElementsAre("0002", "0003"));

  world.RunConfig("update Acessos set Value=0 where Utilizador='ana' and Empresa='0002' and Chave='korvel'");
  for (const auto& [code, enters] :
       {std::pair("0001", false), std::pair("0002", false), std::pair("0003", true)}) {
    server.dialogs.Clear();
    ASSERT_TRUE(form.Select(code));
    EXPECT_EQ(form.Selecionar(context), enters) << code;
    EXPECT_EQ(server.dialogs.LastText(), enters ? "" : "Acesso negado à Empresa !") << code;
  }
}

TEST_F(Selection, DeletesACompanyForAnAdministratorAlone) {
  OpenAs("sa", "", "0001");
  server.dialogs.logins = {std::nullopt};
  EXPECT_FALSE(form.EliminarEmpresa(context));
  EXPECT_THAT(server.dialogs.Texts(),
              ElementsAre("Atenção que ao eliminar perde todos os dados existentes na Empresa.",
                          "Para Eliminar a Empresa , tem que ter um Login Administrativo.",
                          "O seu Login não lhe permite esta tarefa !"));
  server.dialogs.logins = {toolkit::Credentials{"sa", ""}};
  server.dialogs.confirmations = {false};
  EXPECT_FALSE(form.EliminarEmpresa(context));
  EXPECT_EQ(server.dialogs.deletions.back().title, "Confirmar Eliminação :");
  EXPECT_EQ(server.dialogs.deletions.back().text, "Eliminar a Empresa 0001 - Padaria");
  EXPECT_EQ(form.Companies().size(), 3u);

  world.RunConfig("insert into Acessos (Utilizador,Chave,Value,Empresa) values ('ana','korvel',1,'0001')");
  server.dialogs.logins = {toolkit::Credentials{"sa", ""}};
  server.dialogs.confirmations = {true};
  EXPECT_TRUE(form.EliminarEmpresa(context)) << server.dialogs.LastText();
  EXPECT_THAT(Codes(), ElementsAre("0002", "0003"));
  EXPECT_FALSE(databases::CheckDatabase(*server.Open(), "Korvel0001"));
  EXPECT_THAT(world.Config("select * from Acessos where Empresa='0001'"), IsEmpty());
}

TEST_F(Selection, ChecksACompanyOnceThatIsConfirmed) {
  OpenAs("sa", "", "0001");
  server.statements.clear();
  server.dialogs.answers = {1};
  EXPECT_FALSE(form.VerificarEmpresa(context));
  EXPECT_EQ(server.dialogs.questions.back().text, "Confirma a Verificação?");
  EXPECT_THAT(server.statements, IsEmpty());
  server.dialogs.answers = {0};
  EXPECT_TRUE(form.VerificarEmpresa(context)) << server.dialogs.LastText();
  EXPECT_THAT(server.statements, testing::Contains("update statistics TabHeader"));
  EXPECT_THAT(server.statements, testing::Contains("update statistics Empresas"));
}

TEST_F(Selection, BlocksAndUpgradesWhatItLists) {
  OpenAs("sa", "", "0001");
  server.dialogs.answers = {0};
  const bool asked = form.BloquearEmpresa(context);
  ASSERT_FALSE(server.dialogs.questions.empty());
  EXPECT_EQ(server.dialogs.questions.back().text, "Confirma ?");
  EXPECT_EQ(asked, form.Companies()[0].readOnly);

  SetVersion("Korvel0002", "000000000001");
  SetVersion("Korvel0003", "000000000001");
  server.dialogs.answers = {1, 1};
  EXPECT_TRUE(form.ActualizarEmpresas(context)) << server.dialogs.LastText();
  EXPECT_EQ(VersionOf("Korvel0002"), databases::SchemaVersion());
  EXPECT_EQ(form.Companies()[2].version, databases::ProgramVersion());
}

}  // namespace
}  // namespace korvel::session
