#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

class EmbeddedQuery : public EmbeddedServerTest {
 protected:
  EmbeddedQuery() {
    connection->Execute(
        "create table Contas (NumRegisto numeric(18,0) identity (1,1) not null, ContaSP varchar(30) null, "
        "Titulo varchar(100) null, Tipo varchar(1) null, Saldo money null, Notas text null)\n"
        "create table Mov (NumRegisto numeric(18,0) identity (1,1) not null, ContaSP varchar(30) null, "
        "Valor money null, Sinal smallint null, [References] varchar(20) null)\n"
        "insert into Contas (ContaSP,Titulo,Tipo,Saldo,Notas) values ('11','Caixa','M',1.5,'N1'), "
        "('111','caixa ','M',-2,null),('12','Depósitos','T',null,'x'),('21','Ação','C',0.0001,'')\n"
        "insert into Mov (ContaSP,Valor,Sinal) values ('11',10.25,1),('11',3,-1),('99',7,1)");
  }
};

TEST_F(EmbeddedQuery, SelectsAndFilters) {
  ExpectRows(
      *connection,
      {
          {"select top 2 ContaSP from Contas order by ContaSP desc", "21/12"},
          {"Select *,M=substring(Tipo,1,1) from Contas With (NoLock) where NumRegisto=1",
           "1|11|Caixa|M|1.5|N1|M"},
          {"select c.contasp as x, [tipo] from [dbo].[Contas] c (nolock) where c.[TITULO]='CAIXA'",
           "11|M/111|M"},
          {"select ContaSP from BASE.dbo.Contas where Titulo like 'cai%' and not Tipo in ('T','C') order by "
           "1",
           "11/111"},
          {"select ContaSP from BASE..Contas where Saldo between -2 and '1.5' order by ContaSP", "11/111/21"},
          {"select ContaSP from Contas where Saldo>1 or Saldo is null order by Titulo", "11/12"},
          {"select ContaSP from Contas where NumRegisto>'2' order by NumRegisto", "12/21"},
          {"select distinct Titulo from Contas where Tipo='m'", "Caixa"},
          {"select distinct Tipo as t from Contas order by Tipo", "C/M/T"},
          {"select Titulo from Contas where Titulo like '_[a-b]_x%' -- comment\n order by NumRegisto /* a /* "
           "b */ */",
           "Caixa/caixa "},
          {"select ContaSP from Contas where Titulo like '[^c]%' order by 1", "12/21"},
          {"select ContaSP from Contas where Titulo like 'dep%sitos' or Titulo like 'AÇÃO'", "12/21"},
          {"select ContaSP from Contas where Titulo like 'acao'", ""},
          {"select x='100%' where '100%' like '100!%' escape '!' and not '1000' like '100!%' escape '!'",
           "100%"},
          {"select ContaSP from Contas where substring(ContaSP,1,2) like '11' order by 1", "11/111"},
          {"select 1 where null=null or not null=null", ""},
          {"select ContaSP from Contas where Notas like 'n%' or Notas is null", "11/111"},
      });
}

TEST_F(EmbeddedQuery, JoinsAndSubqueries) {
  ExpectRows(
      *connection,
      {
          {"select m.Valor,Titulo from Mov m inner join Contas on m.ContaSP=Contas.contasp order by "
           "m.NumRegisto",
           "10.25|Caixa/3|Caixa"},
          {"select Mov.Valor,isnull(Titulo,'?') from Mov left outer join Contas on "
           "Mov.ContaSP=Contas.ContaSP order by Valor",
           "3|Caixa/7|?/10.25|Caixa"},
          {"select count(*) from Mov right join Contas on Mov.ContaSP=Contas.ContaSP", "5"},
          {"select count(*) from Mov Full outer Join Contas on Mov.ContaSP=Contas.ContaSP", "6"},
          {"select count(*) from Mov Full outer Join Contas on Mov.ContaSP=Contas.ContaSP where "
           "Mov.NumRegisto>0",
           "3"},
          {"select count(*) from Mov, Contas where Mov.ContaSP=Contas.ContaSP", "2"},
          {"select count(*) from Contas a, Mov b left join Contas c on b.ContaSP=c.ContaSP", "12"},
          {"select ContaSP from Contas c where exists (select * from Mov where Mov.ContaSP=c.ContaSP)", "11"},
          {"select ContaSP from Mov where ContaSP not in (select ContaSP from Contas)", "99"},
          {"select n=(select count(*) from Mov m where m.ContaSP=c.ContaSP) from Contas c order by "
           "c.NumRegisto",
           "2/0/0/0"},
          {"select t.a from (select a=ContaSP,b=1 from Contas union all select '5',2) t where t.b=2 or "
           "t.a='12' order by a",
           "12/5"},
          {"select count(*) from (select x='a' union select 'A ' union select null union select 'á') t", "3"},
          {"select 1 as n union all select 2.5 order by n desc", "2.5/1.0"},
      });
}

TEST_F(EmbeddedQuery, Aggregates) {
  ExpectRows(
      *connection,
      {
          {"select a=isnull(sum(Valor*Sinal),0) from Mov where ContaSP='11'", "7.25"},
          {"select sum(Valor),sum(Sinal),min(Valor),max(ContaSP),count(*),count(Sinal),count(distinct "
           "ContaSP) from Mov",
           "20.25|1|3|99|3|3|2"},
          {"select sum(Valor) from Mov where 1=2", "NULL"},
          {"select IsNull(Count(*),0) as Contagem from Mov", "3"},
          {"select Tipo,count(*) from Contas group by Tipo having count(*)>1", "M|2"},
          {"select upper(Titulo),sum(Saldo) from Contas where Tipo='M' group by upper(Titulo)", "CAIXA|-0.5"},
          {"select ContaSP+'x',sum(Valor) from Mov group by ContaSP+'x' order by 2", "99x|7/11x|13.25"},
          {"select avg(Sinal),avg(Valor) from Mov", "0|6.75"},
          {"select ContaSP from Mov group by ContaSP order by count(*) desc", "11/99"},
      });
}

TEST_F(EmbeddedQuery, BatchesGiveTheirRowSetsInOrder) {
  ExpectRows(
      *connection,
      {
          {"Select ContaSP from Contas where Tipo='M'\r\nSelect @@RowCount as Contagem", "11/111 // 2"},
          {"update Contas set Tipo='X' where ContaSP like '1%'; select @@ROWCOUNT select 5", "3 // 5"},
          {"insert into Mov (Valor) values (1) select @@IDENTITY, scope_identity()", "4|4"},
          {"insert Mov (Valor) select Valor+1 from Mov where Valor=10.25; select @@rowcount, @@identity",
           "1|5"},
          {"begin tran delete Mov select count(*) from Mov rollback tran select count(*) from Mov", "0 // 5"},
          {"begin transaction begin tran delete from Mov where Sinal is null commit select @@trancount "
           "commit select count(*) from Mov",
           "1 // 3"},
          {"truncate table Mov insert into Mov (Valor) values (9) select NumRegisto,Valor from Mov", "1|9"},
          {"set nocount on set quoted_identifier off SET ANSI_NULLS ON ; ; use BASE select db_name()",
           "BASE"},
      });
  EXPECT_EQ(connection->Execute("update Contas set Saldo=Saldo+1 where Saldo is not null"), 3);
  EXPECT_EQ(Rows(*connection, "select Saldo from Contas order by NumRegisto"), "2.5/-1/NULL/1.0001");
}

TEST_F(EmbeddedQuery, ParametersKeepTheirValuesWhatsoever) {
  const std::string hostile = "'; drop table Contas -- ] \" \xC3\xA9";
  const std::string nul("a\0b", 3);
  const std::vector<Parameter> row = {hostile, Currency::FromUnits(12345), Parameter()};
  connection->Execute("insert into Contas (Titulo,Saldo,Tipo) values (?,?,?)", row);
  EXPECT_EQ(Rows(*connection, "select Titulo,Saldo,Tipo from Contas where Titulo=?",
                 std::vector<Parameter>{hostile}),
            hostile + "|1.2345|NULL");
  EXPECT_EQ(Rows(*connection, "select ?", std::vector<Parameter>{nul}), nul);
  EXPECT_EQ(Rows(*connection, "select x from (select x='" + nul + "') t"), nul);
  EXPECT_EQ(Rows(*connection, "select '?',? + 1,-?", std::vector<Parameter>{2, 3}), "?|3|-3");
  EXPECT_EQ(Rows(*connection, "select ContaSP from Contas where Saldo=?", std::vector<Parameter>{"1,5"}), "");
  EXPECT_EQ(Rows(*connection, "select ContaSP from Contas where Saldo=?", std::vector<Parameter>{"1.5"}),
            "11");
  EXPECT_EQ(ErrorOf(*connection, "select ?"), "201 42000");
  // The same text again, once with another type and once with Null, must not reuse the first translation.
  const std::string_view same = "select isnull(?, 'nada')";
  EXPECT_EQ(Rows(*connection, same, std::vector<Parameter>{"a"}), "a");
  EXPECT_EQ(Rows(*connection, same, std::vector<Parameter>{Parameter()}), "nada");
}

TEST_F(EmbeddedQuery, DescribesItselfThroughSystemTablesAndProcedures) {
  connection->Execute("create unique index IX on Contas (ContaSP, Tipo)");
  connection->Execute("create view V as select ContaSP from Contas");
  ExpectRows(*connection,
             {
                 {"Select Name from SysDatabases", "master/BASE"},
                 {"select name from master..sysdatabases where name like 'ba%'", "BASE"},
                 {"Select Name from SysDataBases Where upper(Name)='BASE'", "BASE"},
                 {"select name from master.dbo.syslogins where sysadmin=1", "BUILTIN\\Administrators/sa"},
                 {"select a=count(name) from sysobjects where xtype='U'", "2"},
                 {"Select Object_name(Id) as ObjectName, Name from syscolumns where (name like 'tip%')",
                  "Contas|Tipo"},
                 {"sp_tables @table_name = 'CONTAS'", "BASE|dbo|Contas|TABLE|NULL"},
                 {"sp_tables 'v'", "BASE|dbo|V|VIEW|NULL"},
                 {"sp_tables nada", ""},
                 {"exec sp_columns @table_name = 'Contas',@COLUMN_NAME='saldo'",
                  "BASE|dbo|Contas|Saldo|3|money|19|21|4|1|NULL|NULL|5|YES"},
                 {"sp_indexes @table_name = 'Contas' , @index_name= 'IX'",
                  "BASE|dbo|Contas|0|Contas|IX|3|1|ContaSP|A/BASE|dbo|Contas|0|Contas|IX|3|2|Tipo|A"},
                 {"xp_msver 'productversion' ", "2|ProductVersion|NULL|9.00.5000.00"},
                 {"sp_dbcmptlevel BASE, 80 reconfigure with override select 1", "1"},
                 {"exec sp_configure 'show advanced options', 1", ""},
                 {"select SUser_SName(),db_name(),IS_SRVROLEMEMBER ('sysadmin')", "sa|BASE|1"},
                 {"select object_id('contas')-object_id('Mov')", "-1"},
             });
}

TEST_F(EmbeddedQuery, FieldsCarryNamesAndTypes) {
  const Recordset rows = connection->Query(
      "select numregisto, X=Titulo, Saldo*2 as d, 'abc', 1.25, Titulo+Tipo t, getdate(), Notas, Saldo/2.5 "
      "from Contas");
  std::string text;
  for (const Field& field : rows.Fields()) {
    text += field.name + ":" + std::to_string(static_cast<int>(field.type)) + "," +
            std::to_string(field.length) + "," + std::to_string(field.precision) + "," +
            std::to_string(field.scale) + " ";
  }
  EXPECT_EQ(text,
            "numregisto:4,0,18,0 X:9,100,0,0 d:6,0,0,0 :9,3,0,0 :4,0,3,2 t:9,101,0,0 :8,0,0,0 Notas:10,0,0,0 "
            ":4,0,22,6 ");
}

}  // namespace
}  // namespace korvel::data
