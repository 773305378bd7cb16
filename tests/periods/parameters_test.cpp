#include "periods/parameters.h"

#include <gtest/gtest.h>

#include "company_world.h"
#include "periods/movement_types.h"
#include "periods/warehouses.h"

namespace korvel::periods {
namespace {

class ParametersTest : public testing::Test, protected test::CompanyWorld {
 protected:
  Parameters Pointing() {
    Parameters parameters;
    parameters.lunder = {server.Name(), "sa", "", "LunderDemo"};
    return parameters;
  }
  std::optional<Parameters> Stored() { return ReadParameters(*server.Open("Korvel0001")); }
};

TEST_F(ParametersTest, EveryValueComesBack) {
  EXPECT_FALSE(Stored());
  Parameters saved = Pointing();
  saved.brevant = {"srv", "o'login", "p'w\"d", "Brevant"};
  saved.CasasDec = 4;
  saved.Header_SaldoDiaAnterior = saved.GeneralLedgerEntries_IncluirSI = saved.IncluirDocumentosAnulados =
      true;
  saved.Header_ContaInicial = "21.1";
  saved.Header_ContaFinal = "29";
  saved.Product_Grupo = "G";
  saved.Product_Familia = "F";
  saved.Product_SubFamilia = "S";
  saved.Product_Situacao = "A";
  saved.Product_Patamar = "Familia";
  saved.ProductDescriptionDefault = "Pão d'Avó";
  saved.SourceDocuments_DescLinhaDoc = "Descricao";
  saved.EquivCliente = "ContaContabilD";
  saved.AgrupaContasClientes = saved.AgrupaIvas = false;
  ASSERT_TRUE(GravarParametros(context, saved, {}));
  ASSERT_TRUE(GravarParametros(context, saved, {})) << "changes the row that is there";
  EXPECT_EQ(
      Rows("select Servidor_Brevant,Login_Brevant,Password_Brevant,DBase_Brevant,CasasDec,"
           "Header_ApenasDiarioSI,Header_SaldoDiaAnterior,Header_ContaInicial,Header_ContaFinal,"
           "GeneralLedgerEntries_IncluirSI,Product_Grupo,Product_Familia,Product_SubFamilia,Product_Situacao,"
           "Product_Patamar,ProductDescriptionDefault,SourceDocuments_DescLinhaDoc,IncluirDocumentosAnulados,"
           "EquivCliente,AgrupaContasClientes,AgrupaIvas,Utilizador from ParamGeral"),
      std::vector<std::string>{"srv\to'login\tp'w\"d\tBrevant\t4\tN\tS\t21.1\t29\t1\tG\tF\tS\tA\tFamilia\t"
                               "Pão d'Avó\tDescricao\tS\tContaContabilD\t0\t0\tsa"});
  const Parameters read = Stored().value();
  EXPECT_EQ(read.brevant.password, "p'w\"d");
  EXPECT_EQ(read.lunder.database, "LunderDemo");
  EXPECT_EQ(read.CasasDec, 4);
  EXPECT_FALSE(read.Header_ApenasDiarioSI);
  EXPECT_TRUE(read.Header_SaldoDiaAnterior && read.GeneralLedgerEntries_IncluirSI &&
              read.IncluirDocumentosAnulados);
  EXPECT_EQ(read.Header_ContaInicial, "21.1");
  EXPECT_FALSE(read.AgrupaContasClientes || read.AgrupaIvas);
  EXPECT_EQ(server.session.gCasasDec, 4);
}

TEST_F(ParametersTest, RefusalsLeaveTheDatabaseAlone) {
  Script("insert into TabArmazens (Armazem,Classificacao) values ('A','PT')");
  EXPECT_FALSE(GravarParametros(context, {}, {}));
  EXPECT_EQ(server.dialogs.LastText(), "Deve preencher pelo menos uma Localização (Brevant/Lunder)");
  EXPECT_EQ(server.dialogs.LastFocus(), "Servidor_Brevant");
  const Warehouse open[] = {{"A", "Central", "PT"}, {"B", "Açores", ""}};
  EXPECT_FALSE(GravarParametros(context, Pointing(), open));
  EXPECT_EQ(server.dialogs.LastText(), "Não definiu os IVAS na grelha de Armazéns!");
  EXPECT_EQ(One("select count(*) from ParamGeral"), "0");
  EXPECT_EQ(Rows("select Armazem,Classificacao from TabArmazens"), std::vector<std::string>{"A\tPT"});
}

TEST_F(ParametersTest, FailureBehindTheFirstStatementRollsBack) {
  ASSERT_TRUE(GravarParametros(context, Pointing(), std::vector<Warehouse>{{"A", "", "PT"}}));
  Parameters changed = Pointing();
  changed.CasasDec = 3;
  EXPECT_THROW(GravarParametros(context, changed, std::vector<Warehouse>{{"TOOLONG", "", "PT"}}),
               data::Error);
  EXPECT_EQ(One("select CasasDec from ParamGeral"), "2");
  EXPECT_EQ(One("select Armazem from TabArmazens"), "A");
  EXPECT_EQ(server.session.gCasasDec, 2);
}

TEST_F(ParametersTest, BothBalanceChoicesInformAndAreKept) {
  Parameters parameters = Pointing();
  parameters.Header_ApenasDiarioSI = parameters.Header_SaldoDiaAnterior = true;
  ASSERT_TRUE(GravarParametros(context, parameters, {}));
  EXPECT_EQ(
      server.dialogs.LastText().rfind("Apenas deve ligar na opção  GENERAL LEDGER - PLANO DE CONTAS:\n[", 0),
      0U);
  EXPECT_EQ(Rows("select Header_ApenasDiarioSI,Header_SaldoDiaAnterior from ParamGeral"),
            std::vector<std::string>{"S\tS"});
}

TEST_F(ParametersTest, SessionValuesComeFromColumnsThatMayBeMissing) {
  EXPECT_FALSE(LoadSessionParameters(context, *server.Open("Korvel0001")));
  Script("insert into ParamGeral (CasasDec) values (3)");
  server.session.gAnoAberto = "1999";
  ASSERT_TRUE(LoadSessionParameters(context, *server.Open("Korvel0001")));
  EXPECT_EQ(server.session.gCasasDec, 3);
  EXPECT_EQ(server.session.gAnoAberto, "");
  EXPECT_FALSE(server.session.gContinuaAdicionar);
  Script(
      "alter table ParamGeral add AnoAberto varchar(4)\nGO\nalter table ParamGeral add ContinuaAdicionar "
      "varchar(1)\nGO\n"
      "update ParamGeral set AnoAberto='2010',ContinuaAdicionar='S'");
  ASSERT_TRUE(LoadSessionParameters(context, *server.Open("Korvel0001")));
  EXPECT_EQ(server.session.gAnoAberto, "2010");
  EXPECT_TRUE(server.session.gContinuaAdicionar);
}

TEST_F(ParametersTest, LinksAreTriedAndLocationsStoredAtOnce) {
  Script("insert into ParamGeral (CasasDec) values (3)");
  Parameters parameters = Pointing();
  parameters.brevant = {server.Name(), "sa", "errada", "BrevantDemo"};
  parameters.CasasDec = 0;
  const auto links = ActivarLigacoes(context, parameters);
  ASSERT_TRUE(links);
  EXPECT_FALSE(links->brevant);
  EXPECT_TRUE(links->lunder);
  EXPECT_EQ(Rows("select DBase_Brevant,DBase_Lunder,CasasDec from ParamGeral"),
            std::vector<std::string>{"BrevantDemo\tLunderDemo\t3"});
}

TEST_F(ParametersTest, CompaniesOfASourceServer) {
  server.Run("master", "create database Lunder0002");
  const Parameters parameters = Pointing();
  const auto list = [&](std::string_view base) {
    return Carrega_Empresas(context, parameters.brevant, parameters.lunder, base);
  };
  EXPECT_EQ(list("Lunder"), (std::vector<std::string>{"Lunder0002", "LunderDemo"}));
  EXPECT_EQ(list("LUNDER0"), std::vector<std::string>{"Lunder0002"});
  EXPECT_EQ(list("Lunder' or '1'='1"), std::vector<std::string>{});
  EXPECT_EQ(list("Brevant"), std::vector<std::string>{}) << "no location";
  EXPECT_EQ(list("Korvel"), std::vector<std::string>{}) << "no source product";
  EXPECT_TRUE(server.dialogs.messages.empty());
}

TEST_F(ParametersTest, MovementTypesAreThoseThatTheAuditFileTakes) {
  EXPECT_TRUE(CarregarTiposMov(context).empty()) << "no location";
  PointToSources();
  server.Run(
      "BrevantDemo",
      "create table TabTipoMov (NumRegisto numeric(18,0) identity (1,1) not null, Codigo varchar(4), "
      "Descricao varchar(50), Modulo varchar(2), AfectaCli varchar(2), AfectaStk varchar(2), "
      "AfectaIVA smallint, TipoMovClassifica varchar(3))\nGO\n"
      "insert into TabTipoMov (Codigo,Descricao,Modulo,AfectaCli,AfectaStk,AfectaIVA,TipoMovClassifica)"
      " values ('FT','Factura','CL','D','S',1,'FT'),('EN','Encomenda','CL','','',0,'@@@'),"
      "('XX','Interno','FC','','',0,''),('CR','Crédito','CL','C','E',0,'NC')");
  const auto types = CarregarTiposMov(context);
  ASSERT_EQ(types.size(), 2U);
  EXPECT_EQ(types[0].codigo, "CR");
  EXPECT_EQ(types[0].afectaIVA, "N");
  EXPECT_EQ(types[1].classificacao, "FT");
  EXPECT_EQ(types[1].afectaCli + types[1].afectaStk + types[1].modulo + types[1].afectaIVA, "DSCLS");
}

TEST_F(ParametersTest, WarehousesCarryWhatWasClassifiedBefore) {
  EXPECT_TRUE(CarregarArmazens(context, *server.Open("Korvel0001")).empty()) << "no location";
  PointToSources();
  server.Run("BrevantDemo",
             "create table Armazens (NumRegisto numeric(18,0) identity (1,1) not null, Codigo varchar(3), "
             "Descricao varchar(50))\nGO\n"
             "insert into Armazens (Codigo,Descricao) values ('b','Açores'),('A','D''Avila')");
  Script("insert into TabArmazens (Armazem,Classificacao) values ('B','PT-AC'),('Z','PT')");
  const auto company = server.Open("Korvel0001");
  const auto warehouses = CarregarArmazens(context, *company);
  ASSERT_EQ(warehouses.size(), 2U);
  EXPECT_EQ(warehouses[0].descricao, "D'Avila");
  EXPECT_EQ(warehouses[0].classificacao, "");
  EXPECT_EQ(warehouses[1].classificacao, "PT-AC") << "codes compare as the server compares";
  ReplaceWarehouses(*company, warehouses);
  EXPECT_EQ(Rows("select Armazem,Classificacao from TabArmazens order by NumRegisto"),
            (std::vector<std::string>{"A\t", "b\tPT-AC"}));
  Script("update ParamGeral set DBase_Brevant='Falta'");
  const auto kept = CarregarArmazens(context, *company);
  ASSERT_EQ(kept.size(), 2U) << "without the product what is stored stays";
  EXPECT_EQ(kept[1].classificacao, "PT-AC");
}

}  // namespace
}  // namespace korvel::periods
