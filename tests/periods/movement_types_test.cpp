#include "periods/movement_types.h"

#include <gtest/gtest.h>

#include "company_world.h"

namespace korvel::periods {
namespace {

class MovementTypes : public testing::Test, protected test::CompanyWorld {};

TEST_F(MovementTypes, AreThoseThatTheAuditFileTakes) {
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

}  // namespace
}  // namespace korvel::periods
