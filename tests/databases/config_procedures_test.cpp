#include "databases/config_procedures.h"

#include <gtest/gtest.h>

#include "databases/config_upgrade.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

using data::ProcedureArgument;

class ConfigProceduresTest : public testing::Test {
 protected:
  ConfigProceduresTest() {
    EnsureConfigDatabase(server.Context());
    config = server.Open("KorvelConfig");
  }

  std::int64_t Log(std::vector<ProcedureArgument> more) {
    std::vector<ProcedureArgument> arguments{{"0001"},
                                             {"Padaria d'Ana"},
                                             {"I"},
                                             {"A"},
                                             {std::string(9000, 't')},
                                             {"Log In"},
                                             {data::Currency::FromText("12.5").value()},
                                             {"ANA"}};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return config->Call("InsertLog", arguments);
  }
  std::string Principal(std::string_view given) {
    ProcedureArgument company{data::Value(given), true};
    config->Call("GetAcessoPrincipal", std::span(&company, 1));
    return data::ToText(company.value);
  }
  std::int64_t Independent(std::string_view code) {
    ProcedureArgument company{data::Value(code)};
    return config->Call("GetAcessoIndependente", std::span(&company, 1));
  }

  test::TestServer server;
  std::unique_ptr<data::Connection> config;
};

TEST_F(ConfigProceduresTest, InsertLogFillsWhatIsLeftOut) {
  EXPECT_EQ(Log({}), 0);
  EXPECT_EQ(Log({{"2009-12-31"}, {"23:59"}}), 0);
  const auto rows = server.Rows(
      "KorvelConfig",
      "select Utilizador,CodEmpresa,DescEmpresa,Modulo,Accao,FormCaption,Valor,datalength(Conteudo) from "
      "LogGeral");
  EXPECT_EQ(rows, (std::vector<std::string>(2, "ANA\t0001\tPadaria d'Ana\tI\tA\tLog In\t12.5\t9000")));
  const auto moments =
      server.Rows("KorvelConfig",
                  "select case when Data=convert(varchar(10),getdate(),120) then 'hoje' else Data end, "
                  "case when DataMov=Data then 'hoje' else DataMov end, "
                  "case when Hora like '[0-2][0-9]:[0-5][0-9]' then 'agora' else Hora end from LogGeral "
                  "order by NumRegisto");
  EXPECT_EQ(moments, (std::vector<std::string>{"hoje\thoje\tagora", "hoje\t2009-12-31\tagora"}));
  EXPECT_EQ(server.Rows("KorvelConfig", "select Hora from LogGeral order by NumRegisto").at(1), "23:59");
}

TEST_F(ConfigProceduresTest, MainAndIndependentCompanies) {
  EXPECT_EQ(Principal(""), "");
  EXPECT_EQ(Principal("0007"), "0007") << "unchanged without a main company";
  config->Execute("insert into Empresas (Codigo,AcessoPrincipal,AcessoIndependente) values ('0001',0,1)");
  config->Execute("insert into Empresas (Codigo,AcessoPrincipal) values ('0002',1)");
  EXPECT_EQ(Principal(""), "0002");
  EXPECT_EQ(Independent("0001"), 1);
  EXPECT_EQ(Independent("0002"), 0) << "a NULL flag";
  EXPECT_EQ(Independent("0009"), 0) << "no such company";
}

TEST_F(ConfigProceduresTest, RightIsLookedForByUserCompanyAndKey) {
  config->Execute(
      "insert into Acessos (Chave,Utilizador,Empresa,Form) values ('wmenu.ABRIR','ANA','0001','WMenu')");
  const auto look = [&](const char* company) {
    ProcedureArgument arguments[] = {{"WMENU.abrir", true}, {"ana"}, {company}, {"?", true}};
    config->Call("VerSeExisteCopiaAcessosBase", arguments);
    return data::ToText(arguments[0].value) + " " + data::ToText(arguments[3].value);
  };
  EXPECT_EQ(look("0001"), "wmenu.ABRIR WMenu");
  EXPECT_EQ(look("0002"), "WMENU.abrir ?");
}

}  // namespace
}  // namespace korvel::databases
