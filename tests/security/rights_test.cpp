#include "security/rights.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "databases/sql_admin.h"
#include "security_world.h"

namespace korvel::security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Rights : public testing::Test, protected test::SecurityWorld {
 protected:
  std::size_t GuardableButtons() {
    std::size_t count = 0;
    for (const CatalogueForm& form : RightsCatalogue()) {
      for (const FormButton& button : form.buttons) count += IsGuardable(button.name, button.caption) ? 1 : 0;
    }
    return count;
  }
  bool Copy(std::string_view user, std::string_view company) {
    return AccCopiaAcessosBase(context, *Config(), user, company);
  }
  std::string Count(std::string_view where) {
    return One("select count(*) from Acessos where " + std::string(where));
  }
};

TEST_F(Rights, BaseSetIsTheCatalogueUnderTheProgramsOwnRow) {
  server.dialogs.answers = {0};
  ASSERT_TRUE(CriaAcessosBase(context));
  EXPECT_EQ(server.dialogs.questions.front().text, "Confirma a Criação ?");
  EXPECT_EQ(Count("Utilizador='XX' and Empresa='XXXX'"),
            std::to_string(1 + RightsCatalogue().size() + GuardableButtons()));
  EXPECT_THAT(Rows("select Chave,Chave1,Form,Ctrl,Caption,CtrlCap,Value from Acessos where "
                   "Form in ('','frmLogGeral') order by Chave"),
              ElementsAre("korvel\t\t\t\tKorvel - Exportação - Ficheiro Auditor\t\t0",
                          "korvelfrmLogGeral\tkorvel\tfrmLogGeral\t\tHistórico de Trabalho\t\t1",
                          "korvelfrmLogGeralcmdImprimir\tkorvelfrmLogGeral\tfrmLogGeral\tcmdImprimir\t"
                          "Histórico de Trabalho\tImprimir\t1",
                          "korvelfrmLogGeralcmdProcurar\tkorvelfrmLogGeral\tfrmLogGeral\tcmdProcurar\t"
                          "Histórico de Trabalho\tProcurar\t1"));
}

TEST_F(Rights, BaseSetMadeAgainRefreshesCaptionsAndKeepsTheRest) {
  MakeBaseSet();
  const auto rows = Rows("select * from Acessos order by NumRegisto");
  Script(
      "update Acessos set Caption='velho' where Form='frmWizard' and Ctrl=''\nGO\n"
      "update Acessos set CtrlCap='velho',Caption='velho' where Ctrl='cmdExportar'");
  MakeBaseSet();
  EXPECT_EQ(Rows("select * from Acessos order by NumRegisto"), rows);
  server.dialogs.answers = {1};
  EXPECT_FALSE(CriaAcessosBase(context)) << "refused";
}

TEST_F(Rights, DeletionTakesEverybodysRights) {
  MakeBaseSet();
  ASSERT_TRUE(Copy("ana", "0001"));
  server.dialogs.answers = {1, 0};
  EXPECT_FALSE(EliminaAcessos(context));
  EXPECT_NE(Count("1=1"), "0");
  EXPECT_TRUE(EliminaAcessos(context));
  EXPECT_EQ(Count("1=1"), "0");
}

TEST_F(Rights, FirstCopyAllowsEverythingAndNobodyElseIsTouched) {
  MakeBaseSet();
  ASSERT_TRUE(Copy("ana", "0001"));
  const std::string all = std::to_string(1 + RightsCatalogue().size() + GuardableButtons());
  EXPECT_EQ(Count("Utilizador='ana' and Empresa='0001' and Value=1"), all);
  EXPECT_EQ(Count("1=1"), std::to_string(2 * std::stoi(all)));
  const auto config = Config();
  server.statements.clear();
  ASSERT_TRUE(AccCopiaAcessosBase(context, *config, "ana", "0001"));
  EXPECT_EQ(server.statements.size(), 2U) << "a copy that changes nothing reads and writes nothing";
}

TEST_F(Rights, LaterCopyAddsWhatIsNewAndKeepsWhatWasSwitched) {
  MakeBaseSet();
  ASSERT_TRUE(Copy("ana", "0001"));
  Script(
      "update Acessos set Value=0 where Utilizador='ana' and Form='frmWizard'\nGO\n"
      "update Acessos set Value=0,Caption='Outra' where Utilizador='ana' and Form=''\nGO\n"
      "update Acessos set Caption='Novo título' where Utilizador='XX' and Form='frmTabHeader'\nGO\n"
      "insert into Acessos (Utilizador,Empresa,Chave,Chave1,Form,Ctrl,Caption,CtrlCap,Value) values "
      "('XX','XXXX','korvelfrmNova','korvel','frmNova','','Nova d''ela','',0)");
  const std::string denied = Count("Utilizador='ana' and Value=0");
  ASSERT_TRUE(Copy("ANA", "0001"));
  EXPECT_EQ(Count("Utilizador='ana' and Value=0"), denied);
  EXPECT_EQ(One("select Caption from Acessos where Utilizador='ana' and Form=''"), "Outra");
  EXPECT_EQ(Rows("select distinct Caption from Acessos where Utilizador='ana' and Form='frmTabHeader'"),
            std::vector<std::string>{"Novo título"});
  EXPECT_EQ(Rows("select Chave1,Caption,Value from Acessos where Utilizador='ana' and Form='frmNova'"),
            std::vector<std::string>{"korvel\tNova d'ela\t1"});
}

TEST_F(Rights, TwoEntriesAtOnceGiveOneSet) {
  MakeBaseSet();
  server.servers.observer = nullptr;  // it serves one thread
  const std::string set = Count("1=1");
  for (const char* user : {"ana", "rui", "eva"}) {
    const auto first = Config(), second = Config();
    bool copied[2] = {};
    std::thread other([&] { copied[0] = AccCopiaAcessosBase(context, *first, user, "0001"); });
    copied[1] = AccCopiaAcessosBase(context, *second, user, "0001");
    other.join();
    EXPECT_TRUE(copied[0] && copied[1]) << user;
    EXPECT_EQ(Count("Value=1 and Utilizador='" + std::string(user) + "'"), set);
  }
}

TEST_F(Rights, WithoutABaseSetThereIsNothingToCopyAndNoEntry) {
  EXPECT_FALSE(Copy("ana", "0001"));
  EXPECT_THAT(server.dialogs.LastText(), testing::StartsWith("Não Há Acessos Base Definidos !\n"));
  EXPECT_EQ(Count("1=1"), "0");
  EXPECT_FALSE(EnterWithRights(context, *Config(), "0001"));
  EXPECT_EQ(server.dialogs.LastText(), "Acesso negado à Empresa !");
}

TEST_F(Rights, TestsOfOneRight) {
  MakeBaseSet();
  ASSERT_TRUE(Copy("ana", "0001"));
  ASSERT_TRUE(Copy("O'Neil'; drop table acessos --", "0001"));
  Script(
      "update Acessos set Value=0 where Utilizador='ana' and Ctrl='cmdProcessar'\nGO\n"
      "update Acessos set Value=2 where Utilizador='ana' and Ctrl='cmdExportar'\nGO\n"
      "update Acessos set Value=null where Utilizador='ana' and Form='frmParamGeral' and Ctrl=''");
  const struct {
    const char* user;
    const char* company;
    const char* form;
    const char* control;
    bool may;
  } cases[] = {
      {"ana", "0001", "frmExportaSAFT", "", true},
      {"ANA", "0001", "FRMEXPORTASAFT", "", true},
      {"ana", "0001", "frmExportaSAFT", "cmdProcessar", false},
      {"ana", "0001", "frmWizard", "cmdExportar", false},
      {"ana", "0001", "frmParamGeral", "", false},
      {"ana", "0001", "frmNenhum", "", false},
      {"ana", "0002", "frmExportaSAFT", "", false},
      {"rui", "0001", "frmExportaSAFT", "", false},
      {"", "0001", "frmExportaSAFT", "", false},
      {"ana' or '1'='1", "0001", "frmExportaSAFT", "cmdProcessar", false},
      {"O'Neil'; drop table acessos --", "0001", "frmExportaSAFT", "cmdProcessar", true},
      {"sa", "0001", "frmNenhum", "cmdNada", true},
      {"Sa", "", "frmNenhum", "", true},
      {"quilt", "0001", "frmNenhum", "", true},
      {"quilts", "0001", "frmNenhum", "", false},
  };
  const auto config = Config();
  for (const auto& [user, company, form, control, may] : cases) {
    EXPECT_EQ(AccCheckAcesso(*config, user, company, kProgramFile, form, control), may)
        << user << " " << company << " " << form << control;
  }
  server.statements.clear();
  EXPECT_TRUE(AccCheckAcesso(*config, "sA", "0001", kProgramFile, "frmWizard"));
  EXPECT_TRUE(AccCheckUtilizApp(*config, "QUILT", "0001", kProgramFile));
  EXPECT_THAT(server.statements, IsEmpty());
}

TEST_F(Rights, DeletingRights) {
  const struct {
    const char* user;
    const char* company;
    std::vector<std::string> left;
  } cases[] = {{"ana", "0001", {"ana 0002", "rui 0001", "rui 0002"}},
               {"TODOS", "0001", {"ana 0002", "rui 0002"}},
               {"TODOS", "TODOS", {}},
               {"ana", "TODOS", {"ana 0001", "ana 0002", "rui 0001", "rui 0002"}},
               {"x' or '1'='1", "0001", {"ana 0001", "ana 0002", "rui 0001", "rui 0002"}}};
  const auto config = Config();
  for (const auto& [user, company, left] : cases) {
    config->Execute("delete from acessos");
    for (const char* login : {"ana", "rui"}) {
      for (const char* code : {"0001", "0002"}) AccCreateAPP(*config, kProgramFile, login, code);
    }
    AccApagaTodososAcessos(*config, user, company);
    EXPECT_EQ(Rows("select Utilizador+' '+Empresa from Acessos order by Utilizador,Empresa"), left)
        << user << " " << company;
  }
}

TEST_F(Rights, MainCompanysRightsCountUnlessACompanyKeepsItsOwn) {
  AddCompany("0001", false);
  AddCompany("0002", false, true);
  const auto expect = [&](std::vector<std::string> companies) {
    const auto config = Config();
    std::vector<std::string> found;
    for (const char* code : {"0001", "0002", "0003", "9999"}) found.push_back(RightsCompany(*config, code));
    EXPECT_EQ(found, companies);
  };
  AddCompany("0003");
  expect({"0001", "0002", "0003", "9999"});
  Script(
      "update Empresas set AcessoPrincipal=1 where Codigo='0003'\nGO\n"
      "update Empresas set AcessoIndependente=null where Codigo='0001'");
  expect({"0003", "0002", "0003", "0003"});
}

TEST_F(Rights, EntryCopiesTheSetOfTheCompanyThatCounts) {
  AddCompany("0001", true);
  AddCompany("0002");
  AddCompany("0003", false, true);
  MakeBaseSet();
  for (const char* code : {"0002", "0003"}) EXPECT_TRUE(EnterWithRights(context, *Config(), code)) << code;
  EXPECT_THAT(Rows("select distinct Empresa from Acessos where Utilizador='ana' order by Empresa"),
              ElementsAre("0001", "0003"));
  Script("update Acessos set Value=0 where Utilizador='ana' and Form='' and Empresa='0001'");
  EXPECT_FALSE(EnterWithRights(context, *Config(), "0002"));
  EXPECT_EQ(server.dialogs.LastText(), "Acesso negado à Empresa !");
  EXPECT_TRUE(EnterWithRights(context, *Config(), "0003"));
  server.session.gUtilizador = "SA";
  EXPECT_TRUE(EnterWithRights(context, *Config(), "0002"));
}

TEST_F(Rights, FormsAndButtonsAreGuardedByTheCompanyThatCounts) {
  AddCompany("0001", true);
  AddCompany("0002", false, false, true);
  MakeBaseSet();
  server.session.gCodEmpresa = "0002";
  server.session.gBaseDados = "Korvel0002";
  ASSERT_TRUE(EnterWithRights(context, *Config(), "0002"));
  Script("update Acessos set Value=0 where Utilizador='ana' and (Ctrl='cmdEliminar' or Form='frmLogGeral')");
  EXPECT_TRUE(MayOpenForm(context, "frmTabHeader"));
  EXPECT_TRUE(Acessos_bln(context, "frmTabHeader", "cmdAdicionar", true));
  EXPECT_THAT(server.dialogs.messages, IsEmpty());
  EXPECT_FALSE(MayOpenForm(context, "frmLogGeral"));
  EXPECT_EQ(server.dialogs.messages.back(),
            (test::ScriptedDialogs::Box{toolkit::Icon::Critical, "", "Acesso Negado!"}));
  EXPECT_FALSE(Acessos_bln(context, "frmTabHeader", "cmdEliminar", false));
  EXPECT_EQ(server.dialogs.messages.back(),
            (test::ScriptedDialogs::Box{toolkit::Icon::Critical, "", "Acesso Negado !"}));
}

TEST_F(Rights, ReadOnlyCompanyTakesNoWriting) {
  AddCompany("0001", true, false, true);
  server.session.gCodEmpresa = "0001";
  server.session.gBaseDados = "Korvel0001";
  server.session.gUtilizador = "sa";
  databases::SetReadOnly(*server.Open(), "Korvel0001", true);
  EXPECT_TRUE(Acessos_bln(context, "frmTabHeader", "cmdVer", false));
  EXPECT_FALSE(Acessos_bln(context, "frmTabHeader", "cmdAdicionar", true));
  EXPECT_EQ(server.dialogs.LastTitle(), "Não é Possível Continuar:");
  EXPECT_EQ(server.dialogs.LastText(),
            "Não Pode Efectuar Mudanças à Empresa Devido ao Facto de a Mesma se Encontrar Bloqueada!");
  databases::SetReadOnly(*server.Open(), "Korvel0001", false);
  EXPECT_TRUE(Acessos_bln(context, "frmTabHeader", "cmdAdicionar", true));
}

TEST_F(Rights, WithoutTheConfigurationNothingIsAllowed) {
  server.session.gUtilizador = "sa";
  server.Run("master", "drop database KorvelConfig");
  server.dialogs.answers = {0, 0, 1};
  EXPECT_FALSE(Acessos_bln(context, "frmTabHeader", "cmdVer", false));
  EXPECT_THAT(server.dialogs.messages, IsEmpty());
  EXPECT_FALSE(MayOpenForm(context, "frmTabHeader"));
  EXPECT_EQ(server.dialogs.messages.size(), 1U);
  EXPECT_THROW(MayOpenForm(context, "frmTabHeader"), session::EndProgram);
  EXPECT_EQ(server.dialogs.alerts.size(), 3U);
}

}  // namespace
}  // namespace korvel::security
