#include "session/records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/scripted_world.h"

namespace korvel::session {
namespace {

using testing::ElementsAre;

class Records : public testing::Test {
 protected:
  Records() {
    world_.UseCompany("0001");
    world_.Run(
        world_.session.gBaseDados,
        "create table Conta (NumRegisto int identity(1,1), Ano varchar(4) null, Nome varchar(50) null, "
        "Valor money null, Ordem smallint null, Taxa numeric(8,2) null, Total int null, Feito smalldatetime "
        "null)");
    connection_ = world_.Open(world_.session.gBaseDados);
  }
  std::vector<std::string> Rows(std::string_view query) {
    return world_.Rows(world_.session.gBaseDados, query);
  }

  test::TestServer world_;
  std::unique_ptr<data::Connection> connection_;
};

TEST_F(Records, RunSQLTellsByItsResultAlone) {
  EXPECT_TRUE(RunSQL(*connection_, "insert into Conta (Ano) values ('2011')"));
  EXPECT_FALSE(RunSQL(*connection_, "insert into Nada (Ano) values ('2011')"));
  EXPECT_FALSE(RunSQL(*connection_, "isto não é uma instrução"));
  EXPECT_TRUE(world_.dialogs.messages.empty());
  EXPECT_THAT(Rows("select Ano from Conta"), ElementsAre("2011"));
}

TEST_F(Records, NullsAreFilledByType) {
  connection_->Execute("insert into Conta (Ano) values (null)");
  connection_->Execute(
      "insert into Conta (Ano,Nome,Valor,Ordem,Taxa,Total,Feito) values "
      "('2011','x',1.5,2,3.25,4,'2011-03-02')");
  Limpa_NULOS(*connection_, "Conta");
  EXPECT_THAT(Rows("select Ano,Nome,Ordem,Total from Conta order by NumRegisto"),
              ElementsAre("\t\t0\t0", "2011\tx\t2\t4"));
  EXPECT_THAT(Rows("select count(*) from Conta where Valor=0 and Taxa=0 and Feito is null"),
              ElementsAre("1"));
  EXPECT_THAT(Rows("select count(*) from Conta where Valor=1.5 and Taxa=3.25 and Feito='2011-03-02'"),
              ElementsAre("1"));
}

TEST_F(Records, AreCopiedUnderANewKey) {
  connection_->Execute("insert into Conta (Ano,Nome,Valor) values ('2010','D''Ávila',12.3456)");
  connection_->Execute("insert into Conta (Ano,Nome) values ('2009','outra')");
  const std::int64_t key =
      Duplica_Registo(*connection_, *connection_, "Conta", "ANO", "2011", " where Nome like 'D%'");
  EXPECT_EQ(key, 3);
  EXPECT_THAT(Rows("select NumRegisto,Nome from Conta where Ano='2011' and Valor=12.3456 and Ordem is null"),
              ElementsAre("3\tD'Ávila"));
  EXPECT_THAT(Rows("select Ano from Conta order by NumRegisto"), ElementsAre("2010", "2009", "2011"));
  EXPECT_EQ(Duplica_Registo(*connection_, *connection_, "Conta", "Ano", "2012", "where Ano='1999'"), 0);
  EXPECT_THROW(Duplica_Registo(*connection_, *connection_, "Conta", "Ano", "demasiado", "where Ano='2011'"),
               data::Error);
}

TEST_F(Records, SingleValuesComeOverTheirOwnConnection) {
  EXPECT_EQ(Executa_SQL_var(world_.Context(), "select 'x' as Valor"), data::Value("x"));
  EXPECT_TRUE(Executa_SQL_var(world_.Context(), "select Ano from Conta").IsNull());
  EXPECT_TRUE(Executa_SQL_var(world_.Context(), "select 1", OwnDatabase::Config).IsNull());
  EXPECT_EQ(world_.dialogs.LastText(),
            std::to_string(world_.session.gErroNumero) + "\n" + world_.session.gErroDescricao);
}

}  // namespace
}  // namespace korvel::session
