
#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

class EmbeddedPrograms : public EmbeddedServerTest {
 protected:
  std::string CallError(std::string_view procedure, std::vector<ProcedureArgument> arguments) {
    try {
      connection->Call(procedure, arguments);
    } catch (const Error& error) {
      return std::to_string(error.Native());
    }
    return "ok";
  }
};

TEST_F(EmbeddedPrograms, VariablesHaveTheirTypes) {
  connection->Execute("create table T (a int, b varchar(10)) insert T values (1,'um'),(2,'dois')");
  ExpectRows(*connection,
             {
                 {"declare @a int select @a", "NULL"},
                 {"declare @a int, @b varchar(5) set @a = 1+1 set @b='x' select @a, @b+'y'", "2|xy"},
                 {"declare @a int = 3, @b int = 4 select @A*@b", "12"},
                 {"declare @a as money set @a='1.25' select @a+1", "2.25"},
                 {"declare @a varchar(3) set @a='abcdef' select @a, len(@a)", "abc|3"},
                 {"declare @a varchar set @a='abc' select @a", "a"},
                 {"declare @a numeric(5,2) set @a=1.239 select @a", "1.24"},
                 {"declare @d datetime set @d='2024-02-29' select convert(varchar(10),@d,105)", "29-02-2024"},
                 {"declare @a int select @a=a from T order by a select @a", "2"},
                 {"declare @a int set @a=7 select @a=a from T where a>9 select @a", "7"},
                 {"declare @a int, @b varchar(9) select @a=a, @b=b from T where a=1 select @b, @a", "um|1"},
                 {"declare @a int set @a=7 set @a=(select a from T where a>9) select isnull(@a,-1)", "-1"},
                 {"declare @a int set @a=2 select b from T where a=@a", "dois"},
                 {"declare @n int set @n=1 select top (@n) b from T order by a desc", "dois"},
                 {"declare @a int select @a=count(*) from T print @a select @@rowcount", "1"},
                 {"declare @a int set @a=1 insert T values (@a+4, 'c') update T set b='z' where a=@a+4 "
                  "select b from T where a=5 delete from T where a>@a+1 select count(*) from T",
                  "z // 2"},
             });
  ExpectErrors(*connection, {
                                {"set @a=1", "137 42000"},
                                {"select @a", "137 42000"},
                                {"select @a=1", "137 42000"},
                                {"declare @a int declare @A int", "134 42000"},
                                {"declare @a text", "2739 42000"},
                                {"declare @a geometria", "2715 42000"},
                                {"declare @a int set @a='x'", "245 22018"},
                                {"declare @a int set @a=3000000000", "8115 22003"},
                                {"declare @a int select @a=1, 2", "102 42000"},
                                {"declare @a int select @a=1 union select 2", "102 42000"},
                                {"declare @a int select 1 where exists (select @a=1)", "102 42000"},
                                {"declare @a int set @a=count(*)", "147 42000"},
                                {"declare @a int create table Z (x int default @a)", "137 42000"},
                                {"declare a int", "102 42000"},
                                {"select @@nada", "137 42000"},
                            });
}

TEST_F(EmbeddedPrograms, BranchesAndLoopsRunAsWritten) {
  connection->Execute("create table T (a int)");
  ExpectRows(
      *connection,
      {
          {"if 1=1 select 1 else select 2", "1"},
          {"if 1=2 select 1 else select 2", "2"},
          {"if 1=2 select 1; else select 2; select 3", "2 // 3"},
          {"if null=1 select 1 else select 2", "2"},
          {"if 1=1 if 1=2 select 1 else select 2", "2"},
          {"if exists (select * from T) select 'há' else begin insert T values (1) select 'pôs' end", "pôs"},
          {"if not exists (select * from T) select 1 select a from T", "1"},
          {"if (select count(*) from T)=1 and 2>1 begin select 1; select 2; end", "1 // 2"},
          {"declare @i int set @i=0 while @i<5 begin set @i=@i+1 if @i=2 continue if @i=4 break insert T "
           "values (@i) end select a from T order by a select @i",
           "1/1/3 // 4"},
          {"declare @i int, @j int, @n int set @i=0 set @n=0 while @i<3 begin set @j=0 while 1=1 begin set "
           "@j=@j+1 if @j>@i break set @n=@n+1 end set @i=@i+1 end select @n",
           "3"},
          {"select 1 return select 2", "1"},
          {"begin select 1 end", "1"},
          {"begin begin tran insert T values (9) rollback end select count(*) from T where a=9", "0"},
          {"update T set a=a where a=99 if @@rowcount=0 insert T values (99) select count(*) from T where "
           "a=99",
           "1"},
      });
  ExpectErrors(*connection, {
                                {"begin end", "102 42000"},
                                {"begin select 1", "102 42000"},
                                {"if 1 select 1", "102 42000"},
                                {"if 1=1", "102 42000"},
                                {"else select 1", "102 42000"},
                                {"break", "135 42000"},
                                {"return 1", "178 42000"},
                            });
  std::string deep;
  for (int i = 0; i < 5000; ++i) deep += "if 1=1 begin ";
  EXPECT_EQ(ErrorOf(*connection, deep), "102 42000");
  EXPECT_EQ(ErrorOf(*Open("BASE", 1), "while 1=1 begin if 1=1 continue end"), "-2 HYT00");
}

TEST_F(EmbeddedPrograms, TellTheErrorOfTheStatementBefore) {
  EXPECT_EQ(ErrorOf(*connection, "select 1/0"), "8134 22012");
  EXPECT_EQ(Rows(*connection, "select @@error select @@error"), "8134 // 0");
  EXPECT_EQ(ErrorOf(*connection, "select * from Nada"), "208 42S02");
  EXPECT_EQ(Rows(*connection, "declare @e int select @e=1 if @@error<>0 select 'erro' else select 'bem'"),
            "bem");
}

TEST_F(EmbeddedPrograms, ProceduresTakeArgumentsByPlaceAndByName) {
  connection->Execute("create procedure P @a int, @b varchar(5) = 'x', @c money = null as select @a, @b, @c");
  connection->Execute(
      "create proc dbo.Duplica(@n int output, @passo int = 1) as set @n = @n*2+@passo return @n");
  connection->Execute("create procedure Nada as return");
  ExpectRows(
      *connection,
      {
          {"P 1", "1|x|NULL"},
          {"exec P 1, 'abcdefg', 2.5", "1|abcde|2.5"},
          {"execute [dbo].[p] @c=3, @A=2", "2|x|3"},
          {"declare @v int set @v=5 exec P @v, @b=default", "5|x|NULL"},
          {"exec P '12'", "12|x|NULL"},
          {"declare @n int, @r int set @n=4 exec @r = Duplica @n output select @n, @r", "9|9"},
          {"declare @n int set @n=4 exec Duplica @n select @n", "4"},
          {"declare @n varchar(9), @r money set @n='4' exec @r=Duplica @passo=2, @n=@n out select @n, @r",
           "10|10"},
          {"declare @r int set @r=7 exec @r=Nada select @r", "0"},
          {"exec sp_stored_procedures 'D%'", "BASE|dbo|Duplica;1|-1|-1|-1|NULL|2"},
          {"select name, xtype from sysobjects where xtype='P' order by name", "Duplica|P/Nada|P/P|P"},
          {"select object_name(object_id('Duplica'))", "Duplica"},
      });
}

TEST_F(EmbeddedPrograms, ProceduresRefuseWhatDoesNotFit) {
  connection->Execute("create procedure P @a int, @b int = 2 output as select @a+@b");
  connection->Execute("create procedure Nada as return");
  ExpectErrors(*connection, {
                                {"exec P", "201 42000"},
                                {"exec P default", "201 42000"},
                                {"exec P @b=1", "201 42000"},
                                {"exec P 1,2,3", "8144 42000"},
                                {"exec P @a=1, @c=2", "8145 42000"},
                                {"exec P @a=1, 2", "119 42000"},
                                {"exec P 1, @a=2", "8143 42000"},
                                {"exec P 1, 2 output", "179 42000"},
                                {"declare @x int exec P @x output", "8162 42000"},
                                {"exec Nada 1", "8146 42000"},
                                {"exec P 'x'", "8114 22018"},
                                {"exec P @nada", "137 42000"},
                                {"exec Outro 1", "2812 42000"},
                                {"exec alguem.P 1", "2812 42000"},
                                {"select * from P", "208 42S02"},
                                {"insert P values (1)", "208 42S02"},
                                {"drop table P", "3701 42S02"},
                                {"drop procedure Outro", "3701 42S02"},
                                {"create procedure p as select 1", "2714 42S01"},
                                {"create table P (a int)", "2714 42S01"},
                                {"alter procedure Outro as select 1", "208 42S02"},
                                {"select 1 create procedure Q as select 1", "111 42000"},
                                {"create procedure Q as", "102 42000"},
                                {"create procedure Q as select", "102 42000"},
                                {"create procedure Q as use master", "154 42000"},
                                {"create procedure Q as select ?", "102 42000"},
                                {"create procedure Q as select @a", "137 42000"},
                                {"create procedure Q @a int, @A int as select 1", "134 42000"},
                                {"create procedure Q @a int as declare @a int", "134 42000"},
                                {"create procedure Q @a int = @b as select 1", "137 42000"},
                                {"create procedure Q (@a int as select 1", "102 42000"},
                                {"sp_helptext Outro", "15009 42000"},
                            });
  EXPECT_EQ(Rows(*connection, "select count(*) from sysobjects"), "2");
}

TEST_F(EmbeddedPrograms, NamesInProceduresAreLookedUpWhenTheyRun) {
  connection->Execute("create procedure P as insert T values (1) select count(*) from T");
  EXPECT_EQ(ErrorOf(*connection, "P"), "208 42S02");
  connection->Execute("create table T (a int)");
  EXPECT_EQ(Rows(*connection, "P"), "1");
  connection->Execute("drop table T create table T (a varchar(3), b int default 7)");
  EXPECT_EQ(ErrorOf(*connection, "P"), "213 21S01");
  connection->Execute("alter proc P as insert T (a) values ('x') select b from T");
  EXPECT_EQ(Rows(*Open(), "P"), "7");
  connection->Execute("drop proc dbo.P");
  EXPECT_EQ(ErrorOf(*connection, "exec P"), "2812 42000");
}

TEST_F(EmbeddedPrograms, ProceduresCallEachOther) {
  connection->Execute("create procedure Fim @n int as return @n * 10");
  connection->Execute(
      "create procedure Soma @n int, @t int output as declare @r int exec @r = Fim @n set @t = @t + @r if @n "
      "> 1 begin set @n = @n - 1 exec Soma @n, @t output end");
  EXPECT_EQ(Rows(*connection, "declare @t int set @t = 1 exec Soma 4, @t output select @t"), "101");
  EXPECT_EQ(Rows(*connection, "declare @t int set @t = 0 exec Soma 31, @t output select @t"), "4960");
  EXPECT_EQ(ErrorOf(*connection, "declare @t int set @t = 0 exec Soma 33, @t output"), "217 42000");
  connection->Execute("create procedure Linhas as select 1 exec Fim 1 select 2 select 3");
  EXPECT_EQ(Rows(*connection, "exec Linhas select 4"), "1 // 2 // 3 // 4");
  connection->Execute(
      "create procedure Falha as create table T (a int not null) insert T values (1) insert T "
      "values (null) insert T values (2)");
  EXPECT_EQ(ErrorOf(*connection, "exec Falha"), "515 23000");
  EXPECT_EQ(Rows(*connection, "select count(*) from T"), "1");
}

TEST_F(EmbeddedPrograms, TextsOfProceduresAreKeptAsWritten) {
  const std::string text =
      "/* nota */ create  procedure P\r\n  @a int -- o número\r\nas\r\nselect 'ção', @a\r\n";
  connection->Execute(text);
  std::string read;
  std::size_t count = 0;
  {
    Recordset lines = connection->Query("sp_helptext 'P'");
    for (; !lines.Eof(); lines.MoveNext(), ++count) read += lines.Text("Text");
  }
  EXPECT_EQ(read, text);
  EXPECT_EQ(count, 4u);
  EXPECT_EQ(Rows(*connection, "select c.text from syscomments c, sysobjects o where o.id=c.id and colid=1"),
            text);
  connection->Execute("alter procedure P as select 2");
  EXPECT_EQ(Rows(*connection, "exec sp_helptext P"), "CREATE procedure P as select 2");
  connection->Execute("create procedure Longa as select '" + std::string(9000, 'x') + "'");
  EXPECT_EQ(
      Rows(*connection, "select max(colid), sum(len(text)) from syscomments where id=object_id('Longa')"),
      "3|9035");
  EXPECT_EQ(Rows(*connection, "exec Longa"), std::string(9000, 'x'));
}

TEST_F(EmbeddedPrograms, AFailedProcedureLeavesOutputsAndTransactionsAlone) {
  connection->Execute("create table T (a int not null)");
  connection->Execute(
      "create procedure P @n int output as set @n = 2 insert T values (@n) insert T values (null)");
  std::vector<ProcedureArgument> arguments = {{Value(1), true}};
  {
    Transaction transaction(*connection);
    EXPECT_THROW(connection->Call("P", arguments), Error);
    EXPECT_EQ(arguments[0].value, Value(1));
    EXPECT_EQ(Rows(*connection, "select a from T select @@trancount, @@error"), "2 // 1|0");
  }
  EXPECT_EQ(Rows(*connection, "select count(*) from T"), "0");
}

TEST_F(EmbeddedPrograms, CallsGiveBackOutputsByTheirTypes) {
  connection->Execute("create procedure Curto @v varchar(4) output as if 1=2 select @v='x'");
  std::vector<ProcedureArgument> cut = {{Value("antes"), true}};
  EXPECT_EQ(connection->Call("[dbo].[curto]", cut), 0);
  EXPECT_EQ(ToText(cut[0].value), "ante");
  connection->Execute(
      "create procedure Tipos @i int output, @m money output, @d datetime output, @n int output as "
      "select 'fica de fora' set @i=@i+1 set @m=@m/3 set @d=convert(datetime,'2020-02-29') set "
      "@n=null");
  std::vector<ProcedureArgument> all = {
      {Value(41), true}, {Value(Currency::FromUnits(10000)), true}, {Value(), true}, {Value(5), true}};
  connection->Call("Tipos", all);
  EXPECT_EQ(all[0].value, Value(42));
  EXPECT_EQ(all[1].value, Value(Currency::FromUnits(3333)));
  EXPECT_EQ(ToText(all[2].value), "Feb 29 2020 12:00AM");
  EXPECT_TRUE(all[3].value.IsNull());
  EXPECT_EQ(CallError("Tipos", {{Value("x"), true}, {}, {}, {}}), "8114");
  EXPECT_EQ(CallError("Tipos", {}), "201");
  EXPECT_EQ(CallError("NaoHa", {}), "2812");
  EXPECT_EQ(CallError("Tipos; drop table Empresas", {}), "102");
  EXPECT_EQ(CallError("sp_tables", {{"Empresas"}}), "ok");
}

TEST_F(EmbeddedPrograms, TwoProcessesMakeOneProcedure) {
  connection.reset();
  EXPECT_EQ(MadeByRacers(4, "BASE",
                         {"create procedure P1 as return 1", "create procedure P2 as return 1",
                          "create procedure P3 as return 1"}),
            3);
  EXPECT_EQ(Rows(*Open(), "declare @r int exec @r=P3 select @r, count(*) from sysobjects"), "1|3");
}

}  // namespace
}  // namespace korvel::data
