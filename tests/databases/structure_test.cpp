#include "databases/structure.h"

#include <gtest/gtest.h>

#include "databases/canned_connection.h"
#include "databases/config_upgrade.h"
#include "databases/table_columns.h"
#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

/// What a SQL Server tells of a table with one of everything.
std::vector<test::CannedRows> DescribedTable() {
  return {
      {{"Name", "Owner", "Type"}, {{"Cores", "dbo", "user table"}}},
      {{"Column_name", "Type", "Computed", "Length", "Prec", "Scale", "Nullable"},
       {{"Num", "numeric", "no", "9", "18", "0", "no"},
        {"Nome", "varchar", "no", "50", "     ", "     ", "yes"},
        {"Nome2", "nvarchar", "no", "40", "", "", "yes"},
        {"Memo", "nvarchar", "no", "-1", "", "", "yes"},
        {"Guia", "uniqueidentifier", "no", "16", "", "", "no"},
        {"Valor", "money", "no", "8", "19", "4", "yes"}}},
      {{"Identity", "Seed", "Increment", "Not For Replication"}, {{"Num", "1", "1", "0"}}},
      {{"RowGuidCol"}, {{"Guia"}}},
      {{"Data_located_on_filegroup"}, {{"PRIMARY"}}},
      {{"index_name", "index_description", "index_keys"}, {{"PK_X", "nonclustered", "Num"}}},
      {{"constraint_type", "constraint_name", "constraint_keys"},
       {{"DEFAULT on column Nome", "DF_x", "('azul')"}, {"PRIMARY KEY (clustered)", "PK_X", "Num, Nome"}}},
  };
}

TEST(Structure, StatementsComeFromTheServersDescription) {
  test::CannedConnection source;
  test::CannedConnection target;
  source.answers["sp_help Cores"] = DescribedTable();
  DuplicateStructure(source, "Cores", target);
  EXPECT_EQ(
      target.sent,
      (std::vector<std::string>{
          "CREATE TABLE [dbo].[Cores] ( [Num] [numeric] (18,0) IDENTITY (1,1) NOT NULL, "
          "[Nome] [varchar] (50) NULL CONSTRAINT DF_Cores_Nome DEFAULT (('azul')) , "
          "[Nome2] [nvarchar] (20) NULL, [Memo] [nvarchar] (max) NULL, "
          "[Guia] [uniqueidentifier] ROWGUIDCOL NOT NULL, [Valor] [money] NULL )  ON [PRIMARY]",
          "ALTER TABLE [dbo].[Cores] WITH NOCHECK ADD CONSTRAINT [PK_Cores] PRIMARY KEY  NONCLUSTERED ( "
          "[Num],[Nome] )  ON [PRIMARY]"}));
}

TEST(Structure, TableWithoutIdentityOrKeyHasNeither) {
  test::CannedConnection source;
  source.answers["sp_help Cores"] = {
      {{"Column_name", "Type", "Length", "Prec", "Scale", "Nullable"},
       {{"Nome", "char", "3", "", "", "yes"}}},
      {{"Identity", "Seed", "Increment"}, {{"No identity column defined.", "NULL", "NULL"}}},
      {{"RowGuidCol"}, {{"No rowguidcol column defined."}}}};
  EXPECT_EQ(TableStatements(source, "Cores"),
            std::vector<std::string>{"CREATE TABLE [dbo].[Cores] ( [Nome] [char] (3) NULL )  ON [PRIMARY]"});
}

TEST(Structure, ProceduresMoveFromTheirCreateOnAndTheServersOwnStay) {
  test::CannedConnection source;
  test::CannedConnection target;
  source.answers["sp_stored_procedures"] = {
      {{"PROCEDURE_OWNER", "PROCEDURE_NAME"},
       {{"dbo", "InsertLog;1"}, {"dbo", "dt_addtosource;1"}, {"sys", "sp_x;1"}}}};
  source.answers["sp_helptext 'InsertLog'"] = {
      {{"Text"}, {{"-- de fora\r\n"}, {"CREATE PROCEDURE Insert"}, {"Log AS\r\nGO\r\nreturn 0"}}}};
  target.refused.emplace("Drop Procedure [InsertLog]", data::Error(data::Failure::Statement, "não existe"));
  CreateStoredProcedures(source, target);
  EXPECT_EQ(target.sent, (std::vector<std::string>{"Drop Procedure [InsertLog]",
                                                   "CREATE PROCEDURE InsertLog AS\r\n", "return 0"}));
}

TEST(Structure, HostileNamesAreRefusedBeforeAnythingIsSent) {
  test::CannedConnection connection;
  const std::string hostile = "x] drop table Empresas --";
  EXPECT_THROW(TableStatements(connection, hostile), data::Error);
  EXPECT_THROW(CreateFieldList(connection, hostile), data::Error);
  EXPECT_THROW(SQLDropField(connection, hostile, "Empresas"), data::Error);
  EXPECT_THROW(SQLDropField(connection, "Codigo", hostile), data::Error);
  EXPECT_THROW(SQLCheckIndex(connection, hostile, "Empresas"), data::Error);
  EXPECT_EQ(connection.sent, std::vector<std::string>{});
  connection.answers["sp_stored_procedures"] = {{{"PROCEDURE_OWNER", "PROCEDURE_NAME"}, {{"dbo", hostile}}}};
  test::CannedConnection target;
  EXPECT_THROW(CreateStoredProcedures(connection, target), data::Error);
  EXPECT_EQ(target.sent, std::vector<std::string>{});
}

TEST(Structure, TablesAndProceduresOfThisSystemMoveToAnotherDatabase) {
  test::TestServer server;
  ASSERT_TRUE(EnsureConfigDatabase(server.Context()));
  server.Run("master", "create database Copia");
  const auto source = server.Open("KorvelConfig");
  const auto target = server.Open("Copia");
  for (const char* table : {"Empresas", "UserManagement", "LogGeral", "Entidade"}) {
    DuplicateStructure(*source, table, *target);
    EXPECT_EQ(test::TableColumns(*target, table), test::TableColumns(*source, table)) << table;
  }
  target->Execute("insert into Empresas (Codigo,AcessoPrincipal) values ('0007',1)");
  EXPECT_EQ(server.One("Copia", "select count(*) from Empresas where NumRegisto=1 and DataSys is not null"),
            "1");
  for (int time = 0; time < 2; ++time) CreateStoredProcedures(*source, *target);
  data::ProcedureArgument company{"", true};
  target->Call("GetAcessoPrincipal", std::span(&company, 1));
  EXPECT_EQ(data::ToText(company.value), "0007");
}

TEST(Structure, MembersOnATable) {
  test::TestServer server;
  server.UseCompany("0001");
  const auto company = server.Open("Korvel0001");
  company->Execute("create table Cores (NumRegisto int, Cor varchar(10), [Tom Claro] varchar(5))");
  company->Execute("create index IX_Cor on Cores (Cor)");
  EXPECT_TRUE(SQLCheckIndex(*company, "IX_Cor", "Cores"));
  EXPECT_FALSE(SQLCheckIndex(*company, "IX_Tom", "Cores"));
  EXPECT_EQ(CreateFieldList(*company, "Cores"), "[NumRegisto],[Cor],[Tom Claro]");
  SQLDropField(*company, "Tom Claro", "Cores");
  EXPECT_EQ(test::TableColumns(*company, "Cores"), "v10: Cor");
  const session::Context context = server.Context();
  EXPECT_TRUE(ExecutaSQL(context, *company, "insert into Cores (Cor) values ('Azul')"));
  EXPECT_FALSE(ExecutaSQL(context, *company, "insert into Falta (Cor) values ('Azul')"));
  EXPECT_EQ(server.session.gErroNumero, static_cast<std::int32_t>(data::Failure::NoTable));
  EXPECT_FALSE(server.session.gErroDescricao.empty());
}

}  // namespace
}  // namespace korvel::databases
