#include "data/embedded_fixture.h"

namespace korvel::data {
namespace {

using EmbeddedHelp = EmbeddedServerTest;

/// Names of the columns of every row set, sets apart by "/".
std::string Headings(Connection& connection, std::string_view sql) {
  Recordset rows = connection.Query(sql);
  std::string text;
  do {
    if (rows.Fields().empty()) continue;
    text += text.empty() ? "" : "/";
    for (std::size_t i = 0; i < rows.Fields().size(); ++i)
      text += (i == 0 ? "" : ",") + rows.Fields()[i].name;
  } while (rows.NextRecordset());
  return text;
}

TEST_F(EmbeddedHelp, DescribesATable) {
  connection->Execute(
      "create table T (NumRegisto numeric(18,0) identity (1,1) not null, v varchar(30) not null constraint "
      "DF_v default 'x', m money null default (0), n numeric(9,2), i int, s smallint, d smalldatetime "
      "default getdate(), t text, f float, b bit)");
  connection->Execute(
      "ALTER TABLE [dbo].[T] WITH NOCHECK ADD CONSTRAINT [PK_T] PRIMARY KEY  NONCLUSTERED ( [NumRegisto] ) "
      "ON [PRIMARY]");
  connection->Execute("create unique clustered index IX_vm on T (v, m)");
  connection->Execute("alter table T add constraint UQ_i unique (i)");
  EXPECT_EQ(
      Headings(*connection, "sp_help T"),
      "Name,Owner,Type,Created_datetime/"
      "Column_name,Type,Computed,Length,Prec,Scale,Nullable,TrimTrailingBlanks,FixedLenNullInSource,"
      "Collation/"
      "Identity,Seed,Increment,Not For Replication/RowGuidCol/Data_located_on_filegroup/"
      "index_name,index_description,index_keys/"
      "constraint_type,constraint_name,delete_action,update_action,status_enabled,status_for_replication,"
      "constraint_keys");
  EXPECT_EQ(Rows(*connection, "exec sp_help 'dbo.T'"),
            "T|dbo|user table|NULL // "
            "NumRegisto|numeric|no|9|18   |0    |no|(n/a)|(n/a)|NULL/"
            "v|varchar|no|30|     |     |no|no|no|SQL_Latin1_General_CP1_CI_AS/"
            "m|money|no|8|19   |4    |yes|(n/a)|(n/a)|NULL/"
            "n|numeric|no|5|9    |2    |yes|(n/a)|(n/a)|NULL/"
            "i|int|no|4|10   |0    |yes|(n/a)|(n/a)|NULL/"
            "s|smallint|no|2|5    |0    |yes|(n/a)|(n/a)|NULL/"
            "d|smalldatetime|no|4|     |     |yes|(n/a)|(n/a)|NULL/"
            "t|text|no|16|     |     |yes|(n/a)|(n/a)|SQL_Latin1_General_CP1_CI_AS/"
            "f|float|no|8|53   |     |yes|(n/a)|(n/a)|NULL/"
            "b|bit|no|1|     |     |yes|(n/a)|(n/a)|NULL // "
            "NumRegisto|1|1|0 // No rowguidcol column defined. // PRIMARY // "
            "IX_vm|clustered, unique located on PRIMARY|v, m/"
            "PK_T|nonclustered, unique, primary key located on PRIMARY|NumRegisto/"
            "UQ_i|nonclustered, unique, unique key located on PRIMARY|i // "
            "DEFAULT on column v|DF_v|(n/a)|(n/a)|(n/a)|(n/a)|('x')/"
            "DEFAULT on column m|DF_1_m|(n/a)|(n/a)|(n/a)|(n/a)|(0)/"
            "DEFAULT on column d|DF_1_d|(n/a)|(n/a)|(n/a)|(n/a)|(getdate())/"
            "PRIMARY KEY (non-clustered)|PK_T|(n/a)|(n/a)|(n/a)|(n/a)|NumRegisto/"
            "UNIQUE (non-clustered)|UQ_i|(n/a)|(n/a)|(n/a)|(n/a)|i");
  EXPECT_EQ(Rows(*connection, "sp_helpindex T").substr(0, 6), "IX_vm|");
}

TEST_F(EmbeddedHelp, TellsWhatIsThere) {
  connection->Execute("create table T (a int)");
  connection->Execute("create view V as select a from T");
  connection->Execute("create procedure P as return");
  ExpectRows(*connection,
             {
                 {"sp_help", "V|dbo|view/T|dbo|user table/P|dbo|stored procedure"},
                 {"sp_help P", "P|dbo|stored procedure|NULL"},
                 {"sp_help V",
                  "V|dbo|view|NULL // a|int|no|4|10   |0    |yes|(n/a)|(n/a)|NULL // No identity column "
                  "defined.|NULL|NULL|NULL // No rowguidcol column defined."},
                 {"sp_helpindex T", ""},
             });
  EXPECT_EQ(Rows(*connection, "sp_helpdb BASE").substr(0, 5), "BASE|");
  ExpectErrors(*connection, {
                                {"sp_help Nada", "15009 42000"},
                                {"sp_help 'outro.T'", "15009 42000"},
                                {"sp_help 'T; drop table T'", "102 42000"},
                                {"sp_helpindex Nada", "15009 42000"},
                                {"sp_helpindex", "201 42000"},
                                {"sp_helpdb Nada", "15010 42000"},
                                {"sp_helptext T", "15197 42000"},
                            });
}

}  // namespace
}  // namespace korvel::data
