#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

using EmbeddedValues = EmbeddedServerTest;

TEST_F(EmbeddedValues, ExpressionsFollowTheServersTypes) {
  ExpectRows(
      *connection,
      {
          {"select 5/2, -5/2, 5%3, 5/2.0, 1/3.0, 2*1.5, 1+1.25, 7-10",
           "2|-2|2|2.500000|0.333333|3.0|2.25|-3"},
          {"select cast('1.23456' as money), cast('-1.23455' as money), convert(money,'1,234.5')",
           "1.2346|-1.2346|1234.5"},
          {"select cast(2 as money)/3, cast(1.5 as money)*cast(1.5 as money), "
           "convert(money,0.1)+convert(money,0.2)",
           "0.6666|2.25|0.3"},
          {"select convert(int,'03'), convert(int,' 7 '), convert(int,''), convert(int,2.9), "
           "convert(int,cast(2.5 as money))",
           "3|7|0|2|3"},
          {"select '1'+2, 'a'+'b', 'a'+null, 1+null", "3|ab|NULL|NULL"},
          {"select convert(varchar(3),'abcdef'), convert(varchar,cast(1.255 as money)), "
           "convert(varchar(20),-0.5)",
           "abc|1.26|-0.5"},
          {"select convert(varchar,cast(1234567.891 as money),1), convert(varchar,cast(1 as money),2)",
           "1,234,567.89|1.0000"},
          {"select isnull(convert(varchar(2),null),'abcdef'), coalesce(null,null,3), nullif('a','A')",
           "ab|3|NULL"},
          {"select len('ab  '), len(''), len('ação'), datalength('ab  '), substring('ação',2,2), "
           "substring('abc',0,2)",
           "2|0|4|4|çã|a"},
          {"select left('ação',2), right('ação',2), upper('ção'), lower('ÇÃO'), ltrim('  a '), rtrim(' a  ')",
           "aç|ão|ÇÃO|ção|a | a"},
          {"select replace('Abab','AB','x'), charindex('B','abab',3), charindex('z','a'), replicate('ab',2), "
           "space(2)+'.'",
           "xx|4|0|abab|  ."},
          {"select abs(-2.5), round(2.345,2), round(cast(-2.55 as money),1), year('2008-02-01'), "
           "month('20080201')",
           "2.5|2.350|-2.6|2008|2"},
          {"select case when 1=1 then 1 else 2.5 end, case 'B ' when 'a' then 1 when 'b' then 2 end",
           "1.0|2"},
          {"select case when 1=2 then 1 end, convert(bit,5), convert(bit,''), cast(1e2 as int)",
           "NULL|1|0|100"},
          {"select convert(numeric(5,2),'12.345'), convert(decimal(10,0),2.5), 12345678901",
           "12.35|3|12345678901"},
          {"select convert(varchar(10),convert(datetime,'2008-12-31 13:05:09.123'),120), "
           "convert(varchar,convert(datetime,'31-12-2008'),103)",
           "2008-12-31|31/12/2008"},
      });
}

TEST_F(EmbeddedValues, DatesKeepTheirPrecision) {
  ExpectRows(*connection,
             {
                 {"select convert(datetime,'2008-12-31 13:05:09.125')", "2008-12-31 13:05:09.127"},
                 {"select convert(smalldatetime,'2008-12-31 23:59:30')", "2009-01-01 00:00:00.000"},
                 {"select convert(smalldatetime,'2008-12-31 23:59:29.990')", "2008-12-31 23:59:00.000"},
                 {"select convert(datetime,'')", "1900-01-01 00:00:00.000"},
                 {"select convert(datetime,'1753-01-01'),convert(datetime,'9999-12-31')",
                  "1753-01-01 00:00:00.000|9999-12-31 00:00:00.000"},
                 {"select convert(datetime,'2008-02-28')+2, convert(datetime,'2008-03-01')-0.5",
                  "2008-03-01 00:00:00.000|2008-02-29 12:00:00.000"},
                 {"select convert(varchar,convert(datetime,'2008-12-31 13:05:09'))", "Dec 31 2008  1:05PM"},
                 {"select "
                  "convert(varchar(10),convert(datetime,'2008-12-31'),112),convert(varchar,convert(datetime,'"
                  "20081231'),105)",
                  "20081231|31-12-2008"},
                 {"select 1 where convert(datetime,'2008-01-02')>'2008-01-01' and "
                  "convert(smalldatetime,'20080101')='01/01/2008'",
                  "1"},
             });
}

TEST_F(EmbeddedValues, ColumnsTakeWhatFitsAndRefuseTheRest) {
  connection->Execute(
      "create table T (b bit, s smallint, i int, g bigint, n numeric(5,2), f float, m money, "
      "d smalldatetime, e datetime, v varchar(4), x text, z varchar(3) not null default 'abc')");
  ExpectRows(*connection,
             {
                 {"insert T (b,s,i,g,n,f,m,d,e,v,x) values "
                  "(7,'12',1.9,'9223372036854775807',1.005,'1.5','0.00005','20080101',0,"
                  "'ação','x') select * from T",
                  "1|12|1|9223372036854775807|1.01|1.5|0.0001|2008-01-01 00:00:00.000|1900-01-01 "
                  "00:00:00.000|ação|x|abc"},
                 {"update T set v='ab      ',n=n*2,m=m+i select v,n,m from T", "ab  |2.02|1.0001"},
                 {"update T set v=default,z=default select v,z from T", "NULL|abc"},
                 {"delete T insert into T default values select v,z from T", "NULL|abc"},
             });
  ExpectErrors(
      *connection,
      {
          {"insert T (v) values ('abcde')", "8152 22001"},
          {"insert T (v) values ('ação!')", "8152 22001"},
          {"update T set v='abc'+z", "8152 22001"},
          {"insert T (z) values (null)", "515 23000"},
          {"update T set z=v", "515 23000"},
          {"insert T (s) values (32768)", "8115 22003"},
          {"insert T (i) values (2147483648)", "8115 22003"},
          {"insert T (n) values (1000)", "8115 22003"},
          {"insert T (i) values ('a')", "245 22018"},
          {"insert T (i) values ('1.5')", "245 22018"},
          {"insert T (n) values ('')", "8114 22018"},
          {"insert T (f) values ('1x')", "8114 22018"},
          {"insert T (e) values ('2008-02-30')", "241 22007"},
          {"insert T (e) values ('1752-12-31')", "242 22007"},
          {"insert T (d) values ('1899-12-31')", "242 22007"},
          {"select 2147483647+1", "8115 22003"},
          {"select convert(money,922337203685477)+convert(money,1)+convert(money,1)", "8115 22003"},
          {"select sum(a) from (select a=convert(money,922337203685477) union all select 5) t", "8115 22003"},
          {"select 1/0", "8134 22012"},
          {"select 1.5%0", "8134 22012"},
      });
  EXPECT_EQ(Rows(*connection, "select count(*) from T"), "1");
}

TEST_F(EmbeddedValues, AFailingRowLeavesNothingOfItsStatement) {
  connection->Execute("create table T (v varchar(3))");
  EXPECT_EQ(ErrorOf(*connection, "insert T values ('a'),('b'),('abcd')"), "8152 22001");
  connection->Execute("insert T values ('a') insert T values ('abc')");
  EXPECT_EQ(ErrorOf(*connection, "insert T select v+v from T"), "8152 22001");
  EXPECT_EQ(Rows(*connection, "select v from T order by v"), "a/abc");
}

TEST_F(EmbeddedValues, SumsOfMoneyAreExact) {
  connection->Execute("create table T (m money)");
  {
    Transaction transaction(*connection);
    const std::vector<std::string_view> columns = {"m"};
    auto batch = connection->OpenBatch("T", columns);
    for (int i = 0; i < 3000; ++i) batch->Add(std::vector<Parameter>{Currency::FromUnits(1)});
    batch->Add(std::vector<Parameter>{"0.7"});
    batch->Add(std::vector<Parameter>{Parameter()});
    batch->Finish();
    batch = nullptr;
    transaction.Commit();
  }
  EXPECT_EQ(Rows(*connection, "select sum(m),count(*) from T"), "1|3002");
}

TEST_F(EmbeddedValues, BatchesFitEveryValueToItsColumn) {
  connection->Execute(
      "create table T (NumRegisto int identity, v varchar(4) not null, i int, d datetime default getdate())");
  const std::vector<std::string_view> columns = {"V", "I"};
  auto batch = connection->OpenBatch("t", columns);
  batch->Add(std::vector<Parameter>{"ação", "12"});
  batch->Add(std::vector<Parameter>{7, Currency::FromUnits(25000)});
  EXPECT_THROW(batch->Add(std::vector<Parameter>{"12345", 1}), Error);
  EXPECT_THROW(batch->Add(std::vector<Parameter>{Parameter(), 1}), Error);
  EXPECT_THROW(batch->Add(std::vector<Parameter>{"a"}), Error);
  batch->Add(std::vector<Parameter>{"", Parameter()});
  batch->Finish();
  batch = nullptr;
  EXPECT_EQ(Rows(*connection, "select NumRegisto,v,i from T where year(d)>2000"), "1|ação|12/2|7|3/3||NULL");
}

}  // namespace
}  // namespace korvel::data
