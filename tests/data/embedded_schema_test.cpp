#include <fstream>
#include <sstream>

#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

using EmbeddedSchema = EmbeddedServerTest;

TEST_F(EmbeddedSchema, BuildsTheSourceDatabasesFromTheirScripts) {
  for (const char* name : {"brevant", "lunder"}) {
    std::ifstream file(std::string(KORVEL_SHARED_DIR) + "/sources/" + name + ".sql");
    ASSERT_TRUE(file) << name;
    std::stringstream script;
    script << file.rdbuf();
    connection->Execute("use master create database " + std::string(name) + " use " + name);
    RunScript(*connection, script.str());
    EXPECT_NE(Rows(*connection, "select count(*) from sysobjects where xtype='U'"), "0");
    EXPECT_EQ(Rows(*connection, "select count(*) from Configura"), "0");
  }
  connection->Execute("use brevant");
  EXPECT_EQ(Rows(*connection,
                 "select count(*) from CodigosIva Full outer Join V_TabPostal on V_TabPostal.Codigo="
                 "CodigosIva.Codigo where CodigosIva.NumRegisto>0"),
            "0");
}

TEST_F(EmbeddedSchema, StatementsOfAnUpgradeRunTwiceToTheSameSchema) {
  const std::vector<std::string_view> upgrade = {
      "CREATE TABLE [dbo].[Acessos] ( [NumRegisto] [numeric](18, 0) IDENTITY (1, 1) NOT NULL , [Utilizador] "
      "[varchar] (20) NULL , [Chave] [varchar] (100) NULL , [Empresa] [varchar] (4) NULL, DataSys datetime "
      "default getdate() , CONSTRAINT [IX_Acessos] UNIQUE  NONCLUSTERED ( [Empresa], [Utilizador], [Chave] ) "
      " ON [PRIMARY] ) ON [PRIMARY]",
      "ALTER TABLE [dbo].[Acessos] WITH NOCHECK ADD  CONSTRAINT [PK_Acessos] PRIMARY KEY  NONCLUSTERED  ( "
      "[NumRegisto] )  ON [PRIMARY]",
      "CREATE INDEX [Acessos0] on [dbo].[Acessos] ( Utilizador ) ON [PRIMARY]",
      " alter table Acessos add Hash varchar (40)",
      "Update Acessos set Hash='' where Hash is null",
      "Drop Index Acessos.Acessos0",
      "Alter Table Acessos Drop Constraint Ix_Acessos",
      "Alter Table Acessos Alter Column Utilizador varchar (128) null",
      " alter table Acessos ALTER COLUMN Hash text",
      " create table Actualiza ( NumRegisto numeric (18,0) identity (1,1) not null )",
      " alter table Actualiza add Versao varchar(50)",
      "create view V_Acessos as select Chave as C, n=NumRegisto+1 from Acessos where Chave like 'a%'"};
  const auto run = [&] {
    for (const std::string_view sql : upgrade) ErrorOf(*connection, sql);
    return Rows(*connection,
                "select o.name,c.name,c.xtype,c.length,c.isnullable from sysobjects o, syscolumns c where "
                "o.id=c.id order by o.name,c.colid");
  };
  const std::string first = run();
  connection->Execute("insert Acessos (Utilizador,Chave,Hash) values ('a','ab','h')");
  EXPECT_EQ(first, run());
  EXPECT_EQ(
      first,
      "Acessos|NumRegisto|108|18|0/Acessos|Utilizador|167|128|1/Acessos|Chave|167|100|1/"
      "Acessos|Empresa|167|4|1/"
      "Acessos|DataSys|61|8|1/Acessos|Hash|35|8|1/Actualiza|NumRegisto|108|18|0/Actualiza|Versao|167|50|1/"
      "V_Acessos|C|167|100|1/V_Acessos|n|108|19|1");
  EXPECT_EQ(Rows(*connection, "select C,n from v_acessos v where v.c='AB'"), "ab|2");
}

TEST_F(EmbeddedSchema, UniqueKeysCountNullAsAValue) {
  connection->Execute("create table T (a varchar(5) null, b int null)\ncreate unique index I on T (a,b)");
  connection->Execute("insert T values ('x',null),(null,1),(null,null)");
  ExpectErrors(*connection, {{"insert T values ('X ',null)", "2601 23000"},
                             {"insert T values (null,1)", "2601 23000"},
                             {"insert T values (null,null)", "2601 23000"},
                             {"insert T values ('y',null)", "ok"},
                             {"update T set b=null where b=1", "2601 23000"},
                             {"create unique index I2 on T (b)", "1505 23000"},
                             {"create index I on T (b)", "1913 42S11"}});
  EXPECT_EQ(Rows(*connection, "select count(*) from T"), "4");
}

TEST_F(EmbeddedSchema, AlteringColumnsKeepsOrConvertsTheirValues) {
  connection->Execute(
      "create table T (a varchar(10), n int, m money)\ninsert T values ('12',3,1.5),('ab',null,2)");
  ExpectErrors(*connection, {{"alter table T alter column a varchar(1) null", "8152 22001"},
                             {"alter table T alter column a int", "245 22018"},
                             {"alter table T alter column n int not null", "515 23000"},
                             {"alter table T alter column n varchar(5)", "ok"},
                             {"alter table T alter column m numeric(9,2) not null", "ok"},
                             {"alter table T alter column a text", "ok"},
                             {"alter table T add z varchar(2) not null default 'zz'", "ok"},
                             {"alter table T add y varchar(2) not null", "515 23000"},
                             {"alter table T drop column z", "5074 42000"},
                             {"alter table T add constraint DF default 7 for n", "ok"},
                             {"insert T (m) values (1)", "ok"},
                             {"alter table T drop constraint df", "ok"},
                             {"insert T (m) values (null)", "515 23000"},
                             {"alter table T drop column a", "ok"}});
  EXPECT_EQ(Rows(*connection, "select * from T"), "3|1.50|zz/NULL|2.00|zz/7|1.00|zz");
}

TEST_F(EmbeddedSchema, IdentityKeysAreNeverUsedAgain) {
  connection->Execute("create table T (NumRegisto numeric(18,0) identity (10,1) not null, a int)");
  connection->Execute("insert T values (1) insert T values (2) delete from T");
  EXPECT_EQ(Rows(*connection, "insert T values (3) select NumRegisto from T"), "12");
  EXPECT_EQ(Rows(*connection, "truncate table T insert T values (3) select NumRegisto from T"), "1");
}

TEST_F(EmbeddedSchema, ChangesAreUndoneWithTheirTransaction) {
  {
    Transaction transaction(*connection);
    connection->Execute("create table T (a int) insert T values (1)");
    EXPECT_EQ(Rows(*connection, "select a from T"), "1");
  }
  EXPECT_EQ(ErrorOf(*connection, "select a from T"), "208 42S02");
  connection->Execute("create table T (b int) insert T values (2)");
  EXPECT_EQ(Rows(*connection, "select * from T"), "2");
}

TEST_F(EmbeddedSchema, AnotherConnectionSeesTheChangeAtOnce) {
  connection->Execute("create table T (a int) insert T values (1)");
  const auto other = Open();
  EXPECT_EQ(Rows(*other, "select * from T"), "1");
  connection->Execute("alter table T add b varchar(3)");
  EXPECT_EQ(Rows(*other, "select * from T"), "1|NULL");
  connection->Execute("drop table T create table T (c varchar(2)) insert T values ('x')");
  EXPECT_EQ(Rows(*other, "select * from T"), "x");
  EXPECT_EQ(ErrorOf(*other, "insert T values ('xyz')"), "8152 22001");
}

TEST_F(EmbeddedSchema, HostileNamesAreNamesOnly) {
  const std::string strange = "a]b\"c'd;--é";
  connection->Execute("create table [x\"'; drop] ([a]]b\"c'd;--é] varchar(5), [select] int)");
  connection->Execute("create unique index [i\"'.] on [x\"'; drop] ([a]]b\"c'd;--é])");
  connection->Execute("insert [x\"'; drop] values ('v',1)");
  {
    const Recordset rows = connection->Query("select * from [x\"'; drop]");
    EXPECT_EQ(rows.Fields()[0].name, strange);
    EXPECT_EQ(rows.Text(strange), "v");
  }
  const std::string endless(5000, 'x');
  for (const std::string& name :
       {std::string("$objects"), std::string("sqlite_x"), endless, std::string("a\0b", 3)}) {
    EXPECT_EQ(ErrorOf(*connection, "create table [" + name + "] (a int)"), "1038 42000");
    EXPECT_EQ(ErrorOf(*connection, "select * from [" + name + "]"), "208 42S02");
  }
}

}  // namespace
}  // namespace korvel::data
