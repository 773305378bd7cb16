#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

class EmbeddedErrors : public EmbeddedServerTest {
 protected:
  EmbeddedErrors() {
    connection->Execute(
        "create table T (NumRegisto numeric(18,0) identity (1,1) not null, a varchar(5) null, b varchar(5) "
        "null, x text)");
    connection->Execute(
        "ALTER TABLE [dbo].[T] WITH NOCHECK ADD  CONSTRAINT [UQ_T] UNIQUE  CLUSTERED ( a )  ON [PRIMARY]");
    connection->Execute("create view V as select a from T");
  }
};

TEST_F(EmbeddedErrors, CarryTheServersNumbers) {
  ExpectErrors(*connection,
               {
                   {"select * from Nada", "208 42S02"},
                   {"select * from outra.dbo.T", "208 42S02"},
                   {"select * from alguem.T", "208 42S02"},
                   {"select c from T", "207 42S22"},
                   {"select T.a from T t2", "207 42S22"},
                   {"insert into T (c) values (1)", "207 42S22"},
                   {"update T set c=1", "207 42S22"},
                   {"Update T set a=SupplierID where a is null", "207 42S22"},
                   {"select a from T t1, T t2", "209 42000"},
                   {"insert into T (a,b) values ('1')", "213 21S01"},
                   {"insert into T values ('1')", "213 21S01"},
                   {"insert into T (NumRegisto,a) values (1,'1')", "544 42000"},
                   {"update T set NumRegisto=1", "8102 42000"},
                   {"insert into T (a) values ('1') insert into T (a) values ('1 ')", "2627 23000"},
                   {"insert into T (b) values ('1') insert into T (b) values ('2')", "2627 23000"},
                   {"create table t (x int)", "2714 42S01"},
                   {"create view T as select 1 as a", "2714 42S01"},
                   {"create table Z (x int, X int)", "2705 42S21"},
                   {"create table Z (x geometria)", "2715 42000"},
                   {"create table Z (x varchar(9000))", "2715 42000"},
                   {"create table Z (x numeric(5,6))", "2715 42000"},
                   {"drop table Nada", "3701 42S02"},
                   {"drop table V", "3701 42S02"},
                   {"drop index T.Nada", "3701 42S02"},
                   {"alter table T drop constraint Nada", "3728 42000"},
                   {"alter table T alter column Nada varchar(3)", "4924 42000"},
                   {"alter table T drop column a", "5074 42000"},
                   {"alter table T add constraint PK primary key (b)", "8111 42000"},
                   {"insert into V values (1)", "4405 42000"},
                   {"use Nada", "911 42000"},
                   {"create database BASE", "1801 42000"},
                   {"drop database Nada", "3701 42S02"},
                   {"begin tran create database X", "226 42000"},
                   {"rollback rollback", "3902 42000"},
                   {"sp_nada 1", "2812 42000"},
                   {"sp_columns", "201 42000"},
                   {"sp_tables @nada='x'", "201 42000"},
                   {"select nada(1)", "195 42000"},
                   {"select left('a')", "213 21S01"},
                   {"select a from T where x='1'", "306 42000"},
                   {"select distinct x from T", "306 42000"},
                   {"select a from T order by x", "306 42000"},
                   {"select a,count(*) from T", "8120 42000"},
                   {"select a from T where count(*)>1", "147 42000"},
                   {"select sum(a) from T", "8117 42000"},
                   {"select 'a'*'b'", "8117 42000"},
                   {"select a from T union select a,b from T", "213 21S01"},
                   {"select (select a,b from T)", "213 21S01"},
                   {"select a from T order by 2", "207 42S22"},
               });
}

TEST_F(EmbeddedErrors, AViewTellsOfItsMissingTable) {
  connection->Execute("drop table T");
  try {
    connection->Query("select * from V");
    FAIL() << "the view was read";
  } catch (const Error& error) {
    EXPECT_EQ(error.Kind(), Failure::NoTable);
    EXPECT_NE(std::string_view(error.what()).find("'T'"), std::string_view::npos) << error.what();
  }
}

TEST_F(EmbeddedErrors, RefusesTextsItDoesNotUnderstandBeforeAnythingRuns) {
  const std::string texts =
      "delete * from T|select|select 1 +|select 'abc|select [abc|select /* abc|select 1 where|"
      "insert into T|update T a=1|select * from T where a|select a=1=2|select a from T limit 1|"
      "create table Z|create table Z ()|drop|declare x int|if 1 select 1|select ~1|"
      "select a from T where a not 1|select 1 as select|set nocount|"
      "select top 10 percent a from T|waitfor delay '1'|insert into T (a) values (1|"
      "select convert(int)|select a.b.c.d.e.f from T|set implicit_transactions on|"
      "create view W as select a from T order by a|select References from T";
  for (const std::string& text : Pieces(texts)) {
    EXPECT_EQ(ErrorOf(*connection, text), "102 42000") << text;
    EXPECT_EQ(ErrorOf(*connection, "insert into T (a) values ('não') " + text), "102 42000") << text;
  }
  EXPECT_EQ(Rows(*connection, "select count(*) from T"), "0");
}

TEST_F(EmbeddedErrors, QuoteTheTextWithoutItsValues) {
  try {
    connection->Execute("sp_nada 'segredo' select 'senha' 'x' fim fim");
    FAIL();
  } catch (const Error& error) {
    const std::string text = error.what();
    EXPECT_NE(text.find("sp_nada"), std::string::npos) << text;
    EXPECT_EQ(text.find("segredo"), std::string::npos) << text;
    EXPECT_EQ(text.find("senha"), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace korvel::data
