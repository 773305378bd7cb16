#include "session/lookups.h"

#include <gtest/gtest.h>

#include "support/scripted_world.h"

namespace korvel::session {
namespace {

class Lookups : public testing::Test {
 protected:
  Lookups() {
    world_.UseCompany("0001");
    world_.Run(world_.session.gBaseDados,
               "create table Pais (NumRegisto int identity(1,1), Codigo varchar(10), Nome varchar(50) null, "
               "Ordem int)");
    world_.Run(world_.session.gBaseDados,
               "insert into Pais (Codigo,Nome,Ordem) values ('PT','Portugal',1)\n"
               "insert into Pais (Codigo,Nome,Ordem) values ('O''B',null,2)\n"
               "insert into Pais (Codigo,Nome,Ordem) values ('','Sem',3)");
    connection_ = world_.Open(world_.session.gBaseDados);
  }
  std::string Name(std::string_view code, std::string_view extra = {}) {
    return LerCampoTabela(*connection_, "Pais", "Nome", {"Codigo", code}, extra);
  }

  test::TestServer world_;
  std::unique_ptr<data::Connection> connection_;
};

TEST_F(Lookups, ReadOneField) {
  EXPECT_EQ(Name("pt"), "Portugal");
  EXPECT_EQ(Name("XX"), "");
  EXPECT_EQ(Name("O'B"), "");
  EXPECT_EQ(Name(""), "Sem");
  EXPECT_EQ(Name("PT", " and Ordem=2"), "");
  EXPECT_EQ(Name("x' or '1'='1"), "");
  EXPECT_EQ(LerCampoTabela(*connection_, "Pais", "Nome"), "Portugal");
  EXPECT_EQ(LerCampoTabela(*connection_, "Pais", "Codigo", {"Ordem", "2", true}), "O'B");
  EXPECT_THROW(LerCampoTabela(*connection_, "Pais", "Codigo", {"Ordem", "1 or 1=1", true}), data::Error);
  EXPECT_THROW(LerCampoTabela(*connection_, "Nada", "Codigo"), data::Error);
  EXPECT_EQ(LerCampoTabela(world_.Context(), "Pais", "Nome", {"Codigo", "PT"}), "Portugal");
}

TEST_F(Lookups, SendTheirStatementAsItIsKnown) {
  world_.statements.clear();
  Name("PT", " and Ordem=1");
  ASSERT_EQ(world_.statements.size(), 1u);
  EXPECT_EQ(world_.statements[0], "select Nome  from Pais With (NoLock) where Codigo='PT' and Ordem=1");
}

TEST_F(Lookups, CountAndTestRows) {
  EXPECT_EQ(ContaRegistos_lng(*connection_, "Pais", ""), 3);
  EXPECT_EQ(ContaRegistos_lng(*connection_, "Pais", "Where Ordem>1"), 2);
  EXPECT_EQ(ContaRegistos_lng(*connection_, " ", "Where Ordem>1"), 0);
  EXPECT_TRUE(VerSeExiste(*connection_, "select * from Pais where Ordem=1"));
  EXPECT_FALSE(VerSeExiste(*connection_, "select * from Pais where Ordem=9"));
}

TEST_F(Lookups, SwallowOnlyWhereAskedFor) {
  EXPECT_EQ(GetFieldValue(*connection_, "select * from Pais where Ordem=1", "nome"), data::Value("Portugal"));
  EXPECT_TRUE(GetFieldValue(*connection_, "select * from Pais where Ordem=9", "Nome").IsNull());
  EXPECT_TRUE(GetFieldValue(*connection_, "select * from Pais where Ordem=1", "Outra").IsNull());
  EXPECT_TRUE(GetFieldValue(*connection_, "select * from Nada", "Nome").IsNull());
  EXPECT_THROW(VerSeExiste(*connection_, "select * from Nada"), data::Error);
  EXPECT_EQ(Name("PT"), "Portugal");  // the connection is free again
}

TEST_F(Lookups, AskTheServerForTheTime) {
  const data::DateTime moment = Get_DataSysServer(*connection_);
  EXPECT_TRUE(data::IsCalendarDate(moment.year, moment.month, moment.day));
  const data::DateTime day = Get_DataServer(*connection_);
  EXPECT_EQ(day, (data::DateTime{day.year, day.month, day.day}));
  EXPECT_GE(day.DateText(), moment.DateText());

  world_.session.gBaseDados = "KorvelNada";
  EXPECT_EQ(Get_DataSysServer(world_.Context()), world_.clock.now);
}

}  // namespace
}  // namespace korvel::session
