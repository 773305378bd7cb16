#include <gtest/gtest.h>

#include <chrono>

#include "data/embedded/parser.h"
#include "data/error.h"
#include "support/fuzz.h"

namespace korvel::data {
namespace {

/// Statements of every kind that the dialect knows, whole and as programs write them.
const std::string kStatements[] = {
    "select * from Clientes where Nome='D''Água' and Codigo between 1 and 20 order by Nome desc, 2",
    "select distinct top 10 c.Nome as [Nome do cliente], sum(v.Total) Total from Vendas v inner join "
    "Clientes c on c.Codigo=v.Cliente left join (select 1 as n) x on x.n=v.n group by c.Nome having "
    "count(*)>1",
    "select case when a is null then 'x' else convert(varchar(10), d, 103) end, isnull(m, 0), -1.5e3, $12.5 "
    "from T",
    "select a from T where a in (select b from U) or not exists (select * from V) or a like '%[_]x' escape "
    "'\\'",
    "select 1 union all select 2 union select @@rowcount; select @@identity as \"id\"",
    "insert into [Tabela com nome] (a, b) values (?, default), (null, 'x')",
    "insert T select a, b from U where c=?",
    "update T set a=a+1, b=substring(b, 2, len(b)) where c<>0x1F -- comentário\n",
    "delete from T where a=1 /* um /* dentro */ fora */",
    "create table T (NumRegisto numeric(18,0) identity(1,1) not null primary key, a varchar(20) null default "
    "('x'), m money not null constraint DF_T_m default (0), constraint PK_T unique (a, m))",
    "create unique clustered index I on T (a, b)",
    "alter table T add c int null, d text; alter table T alter column a varchar(30) not null; alter table T "
    "drop column c",
    "create view V (a) as select a from T where b=1",
    "drop table T; drop view V; drop index T.I; truncate table T",
    "begin transaction; commit tran; rollback work; use [master]; set nocount on",
    "exec sp_addlogin 'utilizador', 'senha', @defdb='Base'; execute sp_tables @table_name = 'x', @p = null",
    "create procedure P @a int, @b varchar(20) = 'x', @c money output as begin declare @n int; set @n = @a + "
    "1; if @n > 2 select @c = sum(m) from T where a=@b else begin insert T (a) values (@b) return 1 end "
    "return 0 end",
    "declare @x varchar(10), @y int; select @x='a', @y=count(*) from T; while @y > 0 begin set @y = @y - 1 "
    "end; print @x",
    "create database Base; drop database Base; backup database [Base] to disk = 'x.bak' with init",
};

/// Every text is read or refused, quickly, whatever stands in it.
TEST(ParserFuzz, SpoiltStatementsAreReadOrRefused) {
  test::Fuzz fuzz(20080401);
  int refused = 0;
  while (fuzz.Goes()) {
    const std::string text = fuzz.Chance(10) ? fuzz.Bytes(1 + fuzz.Below(400))
                                             : fuzz.Mutated(fuzz.OneOf(kStatements), fuzz.OneOf(kStatements));
    SCOPED_TRACE(testing::PrintToString(text));
    const auto start = std::chrono::steady_clock::now();
    try {
      embedded::ParseBatch(text);
    } catch (const Error& error) {
      ++refused;
      ASSERT_NE(error.Native(), 0) << error.what();
    }
    ASSERT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  }
  EXPECT_GT(refused, 0);
  EXPECT_LT(refused, fuzz.Rounds()) << "some texts stay whole enough to be read";
}

}  // namespace
}  // namespace korvel::data
