#include "periods/warehouses.h"

#include <gtest/gtest.h>

#include "company_world.h"

namespace korvel::periods {
namespace {

class Warehouses : public testing::Test, protected test::CompanyWorld {};

TEST_F(Warehouses, CarryWhatWasClassifiedBefore) {
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
