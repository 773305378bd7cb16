#include "databases/sql_admin.h"

#include <gtest/gtest.h>

#include "support/scripted_world.h"

namespace korvel::databases {
namespace {

/// A company with a table TabCores.
class SqlAdmin : public testing::Test {
 protected:
  SqlAdmin() {
    server.UseCompany("0001");
    company = server.Open("Korvel0001");
    SQLCreateTable(*company, "TabCores");
    SQLAddField(*company, "varchar(5) NULL", "Cor", "TabCores");
  }

  test::TestServer server;
  std::unique_ptr<data::Connection> company;
};

TEST_F(SqlAdmin, FindsWhatIsThereInAnyCase) {
  EXPECT_TRUE(CheckDatabase(*company, "KORVEL0001"));
  EXPECT_TRUE(CheckDatabase(*company, "korvel0001"));
  EXPECT_FALSE(CheckDatabase(*company, "Korvel000"));
  EXPECT_FALSE(CheckDatabase(*company, "x' or '1'='1"));
  EXPECT_TRUE(SQLCheckTable(*company, "TabCores"));
  EXPECT_FALSE(SQLCheckTable(*company, "TabCore"));
  EXPECT_TRUE(SQLCheckField(*company, "Cor", "TabCores"));
  EXPECT_FALSE(SQLCheckField(*company, "Cores", "TabCores"));
  EXPECT_FALSE(SQLCheckField(*company, "Cor", "TabOutra"));
}

TEST_F(SqlAdmin, CreatesAddsAndChangesWithoutLosingRows) {
  company->Execute("insert into TabCores (Cor) values ('Azul')");
  SQLCreateTable(*company, "TabCores");
  SQLAddField(*company, "varchar(4) NULL", "Cor", "TabCores");
  SQLChangeField(*company, "varchar(20) NULL", "Cor", "TabCores");
  company->Execute("insert into TabCores (Cor) values ('Encarnado')");
  EXPECT_EQ(server.Rows("Korvel0001", "select NumRegisto,Cor from TabCores order by NumRegisto"),
            (std::vector<std::string>{"1\tAzul", "2\tEncarnado"}));
}

TEST_F(SqlAdmin, UniqueIndexRefusesAndPlainOneDoesNot) {
  SQLAddField(*company, "varchar(10) NULL", "Tom", "TabCores");
  SQLCreateIndex(*company, "IX_Cor", "TabCores", "Cor", true);
  SQLCreateIndex(*company, "IX_Tom", "TabCores", "Tom", false);
  company->Execute("insert into TabCores (Cor,Tom) values ('Azul','claro')");
  company->Execute("insert into TabCores (Cor,Tom) values ('Verde','claro')");
  EXPECT_THROW(company->Execute("insert into TabCores (Cor,Tom) values ('AZUL','escuro')"), data::Error);
}

TEST_F(SqlAdmin, ScriptRunsBatchAfterBatchAndStopsAtTheFirstFailure) {
  RunScript(*company,
            "create table T (Texto varchar(20))\r\nGO\r\n"
            "insert into T values ('Let''s GO')\r\n  go  \r\n\r\nGO\r\n"
            "insert into T values ('fim')");
  EXPECT_EQ(server.Rows("Korvel0001", "select Texto from T"), (std::vector<std::string>{"Let's GO", "fim"}));
  EXPECT_THROW(
      RunScript(*company, "delete from T\nGO\ninsert into Falta values (1)\nGO\ninsert into T values ('x')"),
      data::Error);
  EXPECT_EQ(server.One("Korvel0001", "select count(*) from T"), "0");
}

}  // namespace
}  // namespace korvel::databases
